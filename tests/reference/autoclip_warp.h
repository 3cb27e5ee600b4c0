/**
 * @file autoclip_warp.h
 * @brief The projective solve and the warps, plainly.
 */
#ifndef VANTREL_TESTS_REFERENCE_AUTOCLIP_WARP_H
#define VANTREL_TESTS_REFERENCE_AUTOCLIP_WARP_H

#include <array>

#include "reference/autoclip_corners.h"

namespace reference::autoclip {

using Coefficients = std::array<double, 8>;

/** x-min, y-min, x-max, y-max. */
using Rect = std::array<double, 4>;

/** The mapping of four places onto four others. */
Coefficients solve_eight(const Spots& from, const Spots& to);

/** One coordinate of the mapping. */
float coordinate(double a, double b, double c, double d, int x, int y);

/** A byte of an 8-bit picture at a fractional place. */
int sample(float col, float row, const Picture& plane);

/** Which variant of the warp: into an image of the source's width, or into one of the rectangle's width. */
enum class Frame { kSource, kRect };

void warp(const Picture& source, Picture& target, const Coefficients& coeffs, const Rect& rect, Frame frame);

/** The variant without mapping: a copy, upside down for 8 bits. */
void copy_rect(const Picture& source, Picture& target, const Rect& rect);

}  // namespace reference::autoclip

#endif
