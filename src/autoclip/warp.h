/**
 * @file warp.h
 * @brief Filling a rectangle of an image by inverse mapping with bilinear sampling.
 */
#ifndef VANTREL_AUTOCLIP_WARP_H
#define VANTREL_AUTOCLIP_WARP_H

#include <cstdint>

#include "autoclip/mapping.h"
#include "image/view.h"

namespace vantrel::autoclip {

/** A sampling position along one axis: the two neighbours, kept inside the image, and the weight of the second. */
struct AxisPosition {
  int first;
  int second;
  float weight;
};

/**
 * Splits a position (pixel centres lie at whole numbers) among `count` pixels. Beyond the last one it repeats that; the
 * weight is taken before clamping, so a position between -1 and 0 extrapolates.
 */
AxisPosition locate(float position, int count);

/** The value between four bytes; at most 255, but not kept from falling below 0. */
int interpolate(int top_left, int top_right, int bottom_left, int bottom_right, float fx, float fy);

/** The value of a one-byte image at a fractional position; white when there is nothing to sample. */
int sample(image::ConstPixels plane, float col, float row);

/** The positions that are mapped, in whole pixels, bounds included; y counts from the top. */
struct WarpArea {
  int x_min;
  int y_min;
  int x_max;
  int y_max;
  std::int64_t width; /**< with fractional bounds not always that of the whole pixels */
  std::int64_t height;

  /** Bounds that need not be whole: these are truncated, and so are the width and height between them. */
  static WarpArea between(double x_min, double y_min, double x_max, double y_max);
};

/** What is sampled less than a pixel before the first row or column. Further out, and behind the last, all repeat. */
enum class Rim {
  kExtrapolated, /**< what the first two pixels lead to, of which a byte keeps the low 8 bits: the given interface's */
  kRepeated      /**< the first pixel */
};

/**
 * Maps every position of the area into the source and writes what is sampled there: x_min to column 0 of the target,
 * y_max (or what the height makes of it) to memory row 0. What would lie outside the target is not written.
 *
 * @param channels bytes of a pixel in both: 1, 3 or 4.
 */
void warp(image::ConstPixels source, image::Pixels target, int channels, const Mapping& mapping, const WarpArea& area,
          Rim rim = Rim::kExtrapolated);

/**
 * Copies the area, without mapping, to the same places in the target. Positions outside the source are passed over.
 *
 * @param upside_down y counts memory rows of the source.
 */
void copy_area(image::ConstPixels source, image::Pixels target, int channels, const WarpArea& area, bool upside_down);

}  // namespace vantrel::autoclip

#endif
