/**
 * @file scene.h
 * @brief The differences at a pixel of the image being searched.
 */
#ifndef VANTREL_CARDCUT_SCENE_H
#define VANTREL_CARDCUT_SCENE_H

#include <cstddef>
#include <cstdlib>

#include "cardcut/rules.h"
#include "cardcut/vote_table.h"
#include "image/bitmap.h"

namespace vantrel::cardcut {

/** How far the differences across rows and the wide ones across columns reach. */
inline constexpr int kReach = 2;

/** The image and the votes of the present stage. */
template <class Rules>
struct Scene {
  using Pixel = typename Rules::Pixel;

  ConstPixels image;
  VoteTable& votes;

  const unsigned char* pixel(int x, int y) const { return image.row(y) + std::ptrdiff_t{x} * Pixel::kBytes; }

  /** The rows whose differences lie inside the image. */
  Span inner_rows() const { return {kReach, image.rows - kReach}; }

  int across_rows(int x, int y) const { return Pixel::difference(pixel(x, y + kReach), pixel(x, y - kReach)); }
  int across_columns(int x, int y) const { return Pixel::difference(pixel(x + kReach, y), pixel(x - kReach, y)); }

  /** Whether a horizontal border runs through the pixel; never where the difference would reach out of the image. */
  bool border_at(int x, int y) const {
    const auto [first, end] = inner_rows();
    return y >= first && y < end && std::abs(across_rows(x, y)) > Rules::kEdge;
  }
};

}  // namespace vantrel::cardcut

#endif
