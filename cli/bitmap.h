/**
 * @file bitmap.h
 * @brief A picture in memory as the library takes it.
 */
#ifndef VANTREL_CLI_BITMAP_H
#define VANTREL_CLI_BITMAP_H

#include <vantrel_cards.h>

#include <cstddef>
#include <cstdlib>
#include <memory>

namespace tool {

/** Dots per inch; 0: not known. */
struct Resolution {
  int x = 0;
  int y = 0;
};

/** A bilevel, gray or RGB picture with rows from the top, each of which begins at a word. */
class Bitmap {
 public:
  /** An empty one. */
  Bitmap() = default;

  /** A picture to be written through row() or target(), each pixel of it unless it is bilevel. @throws std::bad_alloc
   */
  Bitmap(int width, int height, vantrel_format format, Resolution resolution = {});

  bool empty() const { return pixels_ == nullptr; }
  int width() const { return width_; }
  int height() const { return height_; }
  int depth() const { return vantrel_format_bits(format_); }
  vantrel_format format() const { return format_; }
  std::ptrdiff_t stride() const { return stride_; }

  unsigned char* row(int y) { return pixels_.get() + stride_ * y; }
  const unsigned char* row(int y) const { return pixels_.get() + stride_ * y; }

  Resolution resolution() const { return resolution_; }
  void set_resolution(Resolution resolution);

  vantrel_image view() const;
  vantrel_picture target();

 private:
  struct Release {
    void operator()(unsigned char* pixels) const { std::free(pixels); }
  };

  std::unique_ptr<unsigned char, Release> pixels_;
  int width_ = 0;
  int height_ = 0;
  vantrel_format format_ = VANTREL_FORMAT_GRAY;
  std::ptrdiff_t stride_ = 0;
  Resolution resolution_;
};

/** Of a picture in gray: white from half of the levels on. @throws std::bad_alloc */
Bitmap bilevel_of(const Bitmap& gray);

/**
 * Brings a picture upright that is stored as one of the eight numbers of EXIF's orientation says; another number leaves
 * it as it is.
 *
 * @throws std::bad_alloc
 */
Bitmap upright(Bitmap picture, int orientation);

/** Turned clockwise by so many quarters, 0 to 3. @throws std::bad_alloc */
Bitmap turned(Bitmap picture, int quarters);

}  // namespace tool

#endif
