/**
 * @file copy.h
 * @brief The small, smooth copy of a scan on which cards are looked for.
 */
#ifndef VANTREL_ANYWHERE_COPY_H
#define VANTREL_ANYWHERE_COPY_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "anywhere/scan.h"
#include "image/work_array.h"

namespace vantrel::anywhere {

/** The longer side that a copy comes near to, in pixels. */
inline constexpr int kCopySide = 500;

/** Levels of a copy are kept as sixteenths: a mean of many pixels tells more than one. */
inline constexpr int kLevel = 16;

/** The planes of a copy: a card may differ from its ground in lightness, or in colour alone. */
enum Plane : std::size_t {
  kLight = 0,      /**< (B + 2 G + R) / 4 */
  kRedGreen = 1,   /**< (R - G) / 2 */
  kBlueYellow = 2, /**< (2 B - R - G) / 4 */
  kPlanes = 3
};

/** The planes of a colour, or of a sum of colours, each times its kPlaneParts. */
struct PlaneSums {
  int light = 0;
  int red_green = 0;
  int blue_yellow = 0;
};

inline constexpr std::array<int, kPlanes> kPlaneParts = {4, 2, 4};

constexpr PlaneSums plane_sums(int blue, int green, int red) {
  return {blue + 2 * green + red, red - green, 2 * blue - red - green};
}

/** Means of `factor` x `factor` pixels, smoothed by [1 2 1] / 4 both ways; what is left over is dropped. */
struct Copy {
  int factor = 1;
  int rows = 0;
  int cols = 0;
  std::size_t plane_count = kPlanes; /**< 1 where the scan has no colour: the others are empty then */
  std::array<image::WorkArray<std::int16_t>, kPlanes> planes;

  bool ready() const {
    const auto end = planes.begin() + static_cast<std::ptrdiff_t>(plane_count);
    return std::all_of(planes.begin(), end, [](const auto& plane) { return plane.ready(); });
  }
  std::size_t size() const { return static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols); }
  std::size_t index(int row, int col) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(cols) + static_cast<std::size_t>(col);
  }
  int at(std::size_t plane, int row, int col) const { return planes[plane][index(row, col)]; }
};

/** The whole number by which a scan is reduced. */
int reduction_factor(int rows, int cols);

/** Reduces a scan. Not ready where there was no memory. */
Copy reduce(const Scan& scan);

/** A copy of half the size, smoothed once more: noise and texture fade on it, a long faint border does not. */
Copy halved(const Copy& copy);

}  // namespace vantrel::anywhere

#endif
