/**
 * @file gray.h
 * @brief Colour to gray, and interleaved colour to planes.
 */
#ifndef VANTREL_IMAGE_GRAY_H
#define VANTREL_IMAGE_GRAY_H

#include <array>

#include "image/view.h"

namespace vantrel::image {

/** The gray level of a colour: (2 blue + 9 green + 5 red) / 16, truncated. */
constexpr unsigned char gray_level(int blue, int green, int red) {
  // The weights are sixteenths, coarser than the usual luminance weights; their sum keeps the level within a byte.
  return static_cast<unsigned char>((2 * blue + 9 * green + 5 * red) / 16);
}

/**
 * Writes the gray levels of `count` pixels of kBytes bytes: blue, green, red from the first on, or the other way round
 * where kBlue is 2. The layout is known to the compiler, which is what makes the loop fast.
 */
template <int kBytes, int kBlue>
void row_to_gray(const unsigned char* pixel, unsigned char* level, int count) {
  static_assert(kBytes >= 3 && (kBlue == 0 || kBlue == 2));
  constexpr int kRed = 2 - kBlue;
  for (int i = 0; i < count; ++i, pixel += kBytes) level[i] = gray_level(pixel[kBlue], pixel[1], pixel[kRed]);
}

/** Writes the gray levels of blue, green and red pixels; both views have the same size. */
void to_gray(ConstPixels colour, Pixels gray);

/** Splits pixels of three bytes into three planes of one stride. */
void split_planes(ConstPixels colour, const std::array<unsigned char*, 3>& planes, std::ptrdiff_t plane_stride);

}  // namespace vantrel::image

#endif
