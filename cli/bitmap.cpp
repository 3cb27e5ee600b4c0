#include "bitmap.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace tool {
namespace {

/** Where the pixels of an upright picture come from: of which place, and how far along for the next column and row. */
struct Walk {
  int x, y;
  int right_x, right_y;
  int down_x, down_y;
};

/** Indexed by EXIF's numbers; whether width and height change places follows from `right_y`. */
Walk walk_for(int orientation, int width, int height) {
  const int r = width - 1;
  const int b = height - 1;
  const std::array<Walk, 9> walks = {{{0, 0, 1, 0, 0, 1},
                                      {0, 0, 1, 0, 0, 1},
                                      {r, 0, -1, 0, 0, 1},
                                      {r, b, -1, 0, 0, -1},
                                      {0, b, 1, 0, 0, -1},
                                      {0, 0, 0, 1, 1, 0},
                                      {0, b, 0, -1, 1, 0},
                                      {r, b, 0, -1, -1, 0},
                                      {r, 0, 0, 1, -1, 0}}};
  return walks[static_cast<std::size_t>(orientation)];
}

bool bit(const unsigned char* row, int x) { return (row[x / 8] >> (7 - x % 8) & 1) != 0; }

void set_bit(unsigned char* row, int x) { row[x / 8] |= static_cast<unsigned char>(0x80 >> x % 8); }

void walk_bits(const Bitmap& from, const Walk& walk, Bitmap& to) {
  for (int y = 0; y < to.height(); ++y) {
    unsigned char* const row = to.row(y);
    for (int x = 0; x < to.width(); ++x) {
      const int source_x = walk.x + x * walk.right_x + y * walk.down_x;
      if (bit(from.row(walk.y + x * walk.right_y + y * walk.down_y), source_x)) set_bit(row, x);
    }
  }
}

template <int kBytes>
void walk_bytes(const Bitmap& from, const Walk& walk, Bitmap& to) {
  const std::ptrdiff_t right = walk.right_x * kBytes + walk.right_y * from.stride();
  for (int y = 0; y < to.height(); ++y) {
    const unsigned char* source =
        from.row(walk.y + y * walk.down_y) + std::ptrdiff_t{kBytes} * (walk.x + y * walk.down_x);
    unsigned char* const row = to.row(y);
    for (int x = 0; x < to.width(); ++x, source += right) std::memcpy(row + std::ptrdiff_t{kBytes} * x, source, kBytes);
  }
}

}  // namespace

Bitmap::Bitmap(int width, int height, vantrel_format format, Resolution resolution)
    : width_(width), height_(height), format_(format) {
  stride_ = (std::ptrdiff_t{width} * vantrel_format_bits(format) + 31) / 32 * 4;
  const auto bytes = static_cast<std::size_t>(stride_) * static_cast<std::size_t>(height);
  const bool zeros = format == VANTREL_FORMAT_BILEVEL;
  pixels_.reset(static_cast<unsigned char*>(zeros ? std::calloc(bytes, 1) : std::malloc(bytes)));
  if (!pixels_) throw std::bad_alloc();
  // Nothing old is to come out behind the last pixel of a row.
  if (!zeros) {
    for (int y = 0; y < height; ++y) std::memset(row(y) + stride_ - 4, 0, 4);
  }
  set_resolution(resolution);
}

void Bitmap::set_resolution(Resolution resolution) {
  // Some files say less than nothing, and twice of what others say would be no number.
  const auto plausible = [](int value) { return std::clamp(value, 0, std::numeric_limits<int>::max() / 2); };
  resolution_ = {plausible(resolution.x), plausible(resolution.y)};
}

vantrel_image Bitmap::view() const {
  return {pixels_.get(), width_,  height_,
          stride_,       format_, static_cast<double>(std::min(resolution_.x, resolution_.y))};
}

vantrel_picture Bitmap::target() { return {pixels_.get(), width_, height_, stride_, format_, nullptr}; }

Bitmap bilevel_of(const Bitmap& gray) {
  constexpr int kHalf = 128;
  Bitmap result(gray.width(), gray.height(), VANTREL_FORMAT_BILEVEL, gray.resolution());
  for (int y = 0; y < gray.height(); ++y) {
    const unsigned char* const from = gray.row(y);
    unsigned char* const to = result.row(y);
    for (int x = 0; x < gray.width(); ++x) {
      if (from[x] >= kHalf) set_bit(to, x);
    }
  }
  return result;
}

Bitmap upright(Bitmap picture, int orientation) {
  if (orientation <= 1 || orientation > 8) return picture;
  const Walk walk = walk_for(orientation, picture.width(), picture.height());
  const bool across = walk.right_y != 0;
  const auto [x, y] = picture.resolution();
  Bitmap result(across ? picture.height() : picture.width(), across ? picture.width() : picture.height(),
                picture.format(), across ? Resolution{y, x} : Resolution{x, y});
  switch (picture.depth()) {
    case 1:
      walk_bits(picture, walk, result);
      break;
    case 8:
      walk_bytes<1>(picture, walk, result);
      break;
    default:
      walk_bytes<3>(picture, walk, result);
      break;
  }
  return result;
}

Bitmap turned(Bitmap picture, int quarters) {
  constexpr std::array kOrientations = {1, 6, 3, 8};
  return upright(std::move(picture), kOrientations[static_cast<std::size_t>(quarters)]);
}

}  // namespace tool
