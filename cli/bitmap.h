/**
 * @file bitmap.h
 * @brief A picture in memory as the library takes it, held in one of Leptonica's, and the way between the two.
 */
#ifndef VANTREL_CLI_BITMAP_H
#define VANTREL_CLI_BITMAP_H

#include <allheaders.h>
#include <vantrel_cards.h>

#include <memory>

namespace tool {

struct PixRelease {
  void operator()(PIX* pix) const { pixDestroy(&pix); }
};
using PixPtr = std::unique_ptr<PIX, PixRelease>;

/** Takes what a Leptonica function returned; a null pointer is its way to say that memory ran out. */
PixPtr checked(PIX* pix);

/** What a decoded picture does not say of itself. */
struct PixNature {
  bool gray = false;          /**< its colours are all gray */
  bool premultiplied = false; /**< its colours are multiplied with their opacity already */
};

/**
 * Brings a picture to 1 bit, 8 bits of gray or 32 bits of colour: palettes and transparency are resolved on white,
 * 2 and 4 bits become 8, 16 bits keep their high byte.
 */
PixPtr to_plain_depth(PixPtr pix, const PixNature& nature);

/** Dots per inch; 0: not known. */
struct Resolution {
  int x;
  int y;
};

/**
 * A bilevel, gray or RGB picture with rows from the top. Its bytes lie in a PIX, but in the library's order: Leptonica
 * itself keeps gray and bilevel pixels in words of the machine and a set bit for black.
 */
class Bitmap {
 public:
  /** An empty one. */
  Bitmap() = default;
  /** A picture to be written through target(). @throws std::bad_alloc */
  Bitmap(int width, int height, vantrel_format format, Resolution resolution);
  /** @param pix 1, 8 (without palette) or 32 bits. @throws std::bad_alloc */
  explicit Bitmap(PixPtr pix);

  /** A copy as Leptonica has it: 1, 8 or 32 bits. @throws std::bad_alloc */
  PixPtr to_pix() const;

  bool empty() const { return pix_ == nullptr; }
  int width() const { return pixGetWidth(pix_.get()); }
  int height() const { return pixGetHeight(pix_.get()); }
  int depth() const { return pixGetDepth(pix_.get()); }
  vantrel_format format() const;
  Resolution resolution() const { return {pixGetXRes(pix_.get()), pixGetYRes(pix_.get())}; }
  void set_resolution(Resolution resolution);

  vantrel_image view() const;
  vantrel_picture target();

 private:
  std::ptrdiff_t stride() const { return std::ptrdiff_t{4} * pixGetWpl(pix_.get()); }

  PixPtr pix_;
};

/** Of a picture in gray: white from half of the levels on. @throws std::bad_alloc */
Bitmap bilevel_of(const Bitmap& gray);

/** Turned clockwise by so many quarters, 0 to 3. @throws std::bad_alloc */
Bitmap turned(const Bitmap& picture, int quarters);

}  // namespace tool

#endif
