/**
 * @file mapping.h
 * @brief The plane projective mapping through four point pairs.
 */
#ifndef VANTREL_AUTOCLIP_MAPPING_H
#define VANTREL_AUTOCLIP_MAPPING_H

#include <array>
#include <span>

#include "geometry/line.h"

namespace vantrel::autoclip {

/**
 * The coefficients of u = (c0 x + c1 y + c2) / D, v = (c3 x + c4 y + c5) / D, D = c6 x + c7 y + 1 (see G. Wolberg,
 * "Digital Image Warping", 1990, on inferring projective mappings).
 */
using Mapping = std::array<double, 8>;

/**
 * Solves the coefficients from point pairs (x, y) -> (u, v), as two lists of coordinates in turn.
 *
 * A singular system gives large coefficients. All three have the same size, 8 at most: with fewer only so many
 * equations and results count.
 */
void solve_mapping(std::span<const float> from, std::span<const float> to, std::span<double> coefficients);

/** The mapping that takes the corners of one quadrilateral to those of another. */
Mapping solve_mapping(const geometry::Quadrilateral<float>& from, const geometry::Quadrilateral<float>& to);

/** One coordinate of the mapping with its half pixel: (float)((x a + y b + c) / d) + 0.5. */
inline float map_coordinate(double a, double b, double c, double d, int x, int y) {
  return static_cast<float>((x * a + y * b + c) / d) + 0.5f;
}

}  // namespace vantrel::autoclip

#endif
