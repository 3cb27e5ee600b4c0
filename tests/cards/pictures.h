/**
 * @file pictures.h
 * @brief Images and pictures of vantrel_cards.h for tests: of every format, with rows in either order and gaps between.
 */
#ifndef VANTREL_TESTS_CARDS_PICTURES_H
#define VANTREL_TESTS_CARDS_PICTURES_H

#include <array>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <vector>

#include "vantrel_cards.h"

namespace pictures {

inline constexpr std::array kFormats = {VANTREL_FORMAT_GRAY, VANTREL_FORMAT_BGR,  VANTREL_FORMAT_RGB,
                                        VANTREL_FORMAT_BGRA, VANTREL_FORMAT_RGBA, VANTREL_FORMAT_BILEVEL};
inline constexpr std::array kByteFormats = {VANTREL_FORMAT_GRAY, VANTREL_FORMAT_BGR, VANTREL_FORMAT_RGB,
                                            VANTREL_FORMAT_BGRA, VANTREL_FORMAT_RGBA};
inline constexpr std::array kColourFormats = {VANTREL_FORMAT_BGR, VANTREL_FORMAT_RGB, VANTREL_FORMAT_BGRA,
                                              VANTREL_FORMAT_RGBA};

/** Any number as an enumerator, as a caller in C may give it. */
template <class Enum>
Enum number(int value) {
  Enum result;
  static_assert(sizeof result == sizeof value);
  std::memcpy(&result, &value, sizeof result);
  return result;
}

struct Colour {
  int blue;
  int green;
  int red;
  int opacity = 255;

  bool operator==(const Colour&) const = default;
};

enum class Rows { kFromTop, kFromBottom };

/** Memory of a picture. Every byte that is no pixel is a guard, which must never change. */
class Memory {
 public:
  static constexpr unsigned char kGuard = 0xA5;

  Memory(int width, int height, vantrel_format format, Rows rows = Rows::kFromTop, int gap = 0)
      : width_(width), height_(height), format_(format) {
    const int pixels = (width * vantrel_format_bits(format) + 7) / 8;
    const int stride = pixels + gap;
    bytes_.assign(static_cast<std::size_t>(stride * height + gap), kGuard);
    stride_ = rows == Rows::kFromTop ? stride : -stride;
    first_ = rows == Rows::kFromTop ? gap : gap + stride * (height - 1);
  }

  vantrel_image image(double dpi = 0) const { return {bytes_.data() + first_, width_, height_, stride_, format_, dpi}; }
  /** As a target of the caller's. */
  vantrel_picture picture() { return {bytes_.data() + first_, width_, height_, stride_, format_, nullptr}; }

  unsigned char* row(int y) { return bytes_.data() + first_ + y * stride_; }
  std::vector<unsigned char>& bytes() { return bytes_; }

  void set(int x, int y, const Colour& colour) {
    unsigned char* pixel = row(y) + x * vantrel_format_bits(format_) / 8;
    const auto [blue, green, red, opacity] = colour;
    switch (format_) {
      case VANTREL_FORMAT_GRAY:
        return write(pixel, {green});
      case VANTREL_FORMAT_BGR:
        return write(pixel, {blue, green, red});
      case VANTREL_FORMAT_RGB:
        return write(pixel, {red, green, blue});
      case VANTREL_FORMAT_BGRA:
        return write(pixel, {blue, green, red, opacity});
      case VANTREL_FORMAT_RGBA:
        return write(pixel, {red, green, blue, opacity});
      default:
        const int bit = 0x80 >> x % 8;
        *pixel = static_cast<unsigned char>(green >= 128 ? *pixel | bit : *pixel & ~bit);
    }
  }

  /** Sets every pixel to `colour_at(x, y)`. */
  template <class ColourAt>
  Memory& draw(ColourAt colour_at) {
    for (int y = 0; y < height_; ++y) {
      for (int x = 0; x < width_; ++x) set(x, y, colour_at(x, y));
    }
    return *this;
  }

 private:
  static void write(unsigned char* pixel, std::initializer_list<int> values) {
    for (const int value : values) *pixel++ = static_cast<unsigned char>(value);
  }

  int width_;
  int height_;
  vantrel_format format_;
  std::ptrdiff_t stride_ = 0;
  std::ptrdiff_t first_ = 0;
  std::vector<unsigned char> bytes_;
};

/** A picture that is released at the end of its scope. */
struct Picture : vantrel_picture {
  Picture() : vantrel_picture{} {}
  explicit Picture(const vantrel_picture& other) : vantrel_picture(other) {}
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;
  ~Picture() { vantrel_picture_release(this); }

  const unsigned char* row(int y) const { return static_cast<const unsigned char*>(data) + y * stride; }

  /** The bytes of the pixels, row after row from the top. */
  std::vector<int> bytes() const {
    std::vector<int> all;
    const int count = (width * vantrel_format_bits(format) + 7) / 8;
    for (int y = 0; y < height; ++y) all.insert(all.end(), row(y), row(y) + count);
    return all;
  }
};

/** What was found, released at the end of its scope. */
class Cards {
 public:
  explicit Cards(const vantrel_image& scan, const vantrel_find_options* options = nullptr) {
    status_ = vantrel_find(&scan, options, &cards_);
  }
  Cards(const Cards&) = delete;
  Cards& operator=(const Cards&) = delete;
  ~Cards() { vantrel_cards_release(cards_); }

  vantrel_status status() const { return status_; }
  const vantrel_cards* get() const { return cards_; }
  std::size_t count() const { return vantrel_cards_count(cards_); }
  vantrel_reason reason(vantrel_method method) const { return vantrel_cards_reason(cards_, method); }
  vantrel_card operator[](std::size_t index) const {
    vantrel_card card = VANTREL_CARD_INIT;
    vantrel_cards_get(cards_, index, &card);
    return card;
  }

 private:
  vantrel_cards* cards_ = nullptr;
  vantrel_status status_;
};

/** Options that try one method. */
struct Only : vantrel_find_options {
  explicit Only(vantrel_method one) : vantrel_find_options VANTREL_FIND_OPTIONS_INIT, method(one) {
    methods = &method;
    method_count = 1;
  }
  Only(const Only&) = delete;
  Only& operator=(const Only&) = delete;

  vantrel_method method;
};

/** x and y of the top left, top right, bottom right and bottom left corner. */
inline std::array<double, 8> coordinates(const vantrel_quad& q) {
  return {q.top_left.x,     q.top_left.y,     q.top_right.x,   q.top_right.y,
          q.bottom_right.x, q.bottom_right.y, q.bottom_left.x, q.bottom_left.y};
}

inline std::array<int, 4> bounds(const vantrel_rect& r) { return {r.left, r.top, r.right, r.bottom}; }

/** The upright quadrilateral with these bounds. */
inline vantrel_quad upright(double left, double top, double right, double bottom) {
  return {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
}

}  // namespace pictures

#endif
