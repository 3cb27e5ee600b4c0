/**
 * @file scene.h
 * @brief The differences at a pixel of the image being searched.
 */
#ifndef VANTREL_CARDCUT_SCENE_H
#define VANTREL_CARDCUT_SCENE_H

#include <cstddef>
#include <cstdlib>

#include "cardcut/hough.h"
#include "cardcut/rules.h"
#include "image/view.h"

namespace vantrel::cardcut {

/** How far the differences across rows and the wide ones across columns reach. */
inline constexpr int kReach = 2;

/** The rows of an image whose differences lie inside it. */
constexpr Span inner_rows(ConstPixels image) { return {kReach, image.rows - kReach}; }

/** The columns of an image that have a neighbour on each side. */
constexpr Span inner_columns(ConstPixels image) { return {1, image.cols - 1}; }

/** The image and the votes of the present stage. */
template <class Rules>
struct Scene {
  using Pixel = typename Rules::Pixel;

  ConstPixels image;
  HoughAccumulator votes;

  const unsigned char* pixel(int x, int y) const { return image.row(y) + std::ptrdiff_t{x} * Pixel::kBytes; }

  int across_rows(int x, int y) const { return Pixel::difference(pixel(x, y + kReach), pixel(x, y - kReach)); }
  int across_columns(int x, int y) const { return Pixel::difference(pixel(x + kReach, y), pixel(x - kReach, y)); }

  /** Whether a horizontal border runs through the pixel; never where the difference would reach out of the image. */
  bool border_at(int x, int y) const {
    return inner_rows(image).contains(y) && std::abs(across_rows(x, y)) > Rules::kEdge;
  }
};

}  // namespace vantrel::cardcut

#endif
