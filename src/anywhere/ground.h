/**
 * @file ground.h
 * @brief The colours of what cards lie on, taken from the frame of a copy.
 */
#ifndef VANTREL_ANYWHERE_GROUND_H
#define VANTREL_ANYWHERE_GROUND_H

#include <array>
#include <cstddef>

#include "anywhere/copy.h"

namespace vantrel::anywhere {

/** A colour of a copy, in kLevel-ths; 0 in the planes that a copy lacks. */
using Colour = std::array<int, kPlanes>;

/** The most colours that a ground has: its own, its shadow, a second material. */
inline constexpr std::size_t kMostGroundColours = 3;

/** The dominant colours of the frame, the most frequent first; at least one. */
struct Ground {
  std::size_t count = 0;
  std::array<Colour, kMostGroundColours> colours{};
};

/** How many pixels the frame of a copy has, and where the i-th of them lies, clockwise from the top left corner. */
int frame_length(const Copy& copy);
std::size_t frame_index(const Copy& copy, int i);

Colour colour_at(const Copy& copy, std::size_t index);

/** The largest difference in a plane. */
int difference(const Colour& a, const Colour& b);

/** Finds the dominant colours of a copy with at least 2 x 2 pixels. */
Ground find_ground(const Copy& copy);

/** Finds the dominant colours of the whole copy but for the ground's first: of a sheet that cards may lie on. */
Ground find_sheets(const Copy& copy, const Ground& ground);

/** Whether a colour is one of the ground's. */
bool belongs_to(const Ground& ground, const Colour& colour);

}  // namespace vantrel::anywhere

#endif
