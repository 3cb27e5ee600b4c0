/**
 * @file reduce.h
 * @brief Copies that are a whole number of times smaller, and in another format.
 */
#ifndef VANTREL_CARDS_REDUCE_H
#define VANTREL_CARDS_REDUCE_H

#include "cards/target.h"
#include "image/work_array.h"

namespace vantrel::cards {

/** By more no image is reduced: the sum of so many squared bytes still has 32 bits. */
inline constexpr int kMostTimes = 4096;

/** Fills the target, `times` times smaller and in the image's format, with truncated means. */
void reduce(const vantrel_image& image, int times, Target& target);

/** Fills the target of the image's size; to bilevel only bilevel images are copied. */
void convert(const vantrel_image& image, Target& target);

/** What lies behind the last pixel of a copy's rows: nothing to be read, or white up to a whole 32-bit word. */
enum class Padding { kNone, kWhite };

/** A scan as a finder takes it: reduced, in the finder's format; the scan itself where that comes to the same. */
class Copy {
 public:
  /**
   * @param scan   read as long as the copy is.
   * @param format bilevel only for the scan itself.
   * @param times  1 for a bilevel scan, and no more than the scan's sides.
   */
  Copy(const vantrel_image& scan, vantrel_format format, int times, Padding padding = Padding::kNone);

  bool ready() const { return pixels_.ready(); }
  /** The picture's bottom row first. */
  image::ConstPixels memory_rows() const { return view_.upside_down(); }
  /** The bytes that may be read of a row. */
  int row_bytes() const { return row_bytes_; }

 private:
  image::WorkArray<unsigned char> pixels_;
  image::ConstPixels view_;
  int row_bytes_;
};

}  // namespace vantrel::cards

#endif
