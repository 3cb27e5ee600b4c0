/**
 * @file reliefs.h
 * @brief Maps of a copy whose high regions may be cards, beside the barrier map.
 */
#ifndef VANTREL_ANYWHERE_RELIEFS_H
#define VANTREL_ANYWHERE_RELIEFS_H

#include <cstdint>
#include <span>

#include "anywhere/copy.h"
#include "anywhere/ground.h"

namespace vantrel::anywhere {

/** The flatness of what has no slope at all. */
inline constexpr int kFlattest = 4095;

/** How far each pixel lies from a colour, in kLevel-ths: high also where the way to the frame is barred twice. */
void write_difference(const Copy& copy, const Colour& colour, std::span<std::uint16_t> relief);

/** kFlattest minus the slope: high within what borders enclose, however many of them lie around it. */
void write_flatness(const Copy& copy, std::span<std::uint16_t> relief);

}  // namespace vantrel::anywhere

#endif
