/**
 * @file stripes.h
 * @brief Takes a scanner's stripes out of a copy: what whole rows, or whole columns, differ by from their neighbours.
 */
#ifndef VANTREL_ANYWHERE_STRIPES_H
#define VANTREL_ANYWHERE_STRIPES_H

#include <cstdint>
#include <span>

namespace vantrel::anywhere {

/** A plane of a copy: `lines` lines of `places` values; a step leads from line to line, or from place to place. */
struct Lattice {
  std::int16_t* data;
  int lines;
  int places;
  int line_step;
  int place_step;

  std::int16_t& at(int line, int place) const { return data[line * line_step + place * place_step]; }
};

/**
 * Subtracts from each line what it differs by from those around it, where most of the line agrees on that; a lamp that
 * flickers and a sensor with uneven cells leave such stripes, and on white they hide the border of a white card.
 *
 * @param offsets work memory for a value of each line.
 * A plane without stripes stays as it is: a border that is as long as the plane is wide looks like one stripe.
 */
void remove_stripes(const Lattice& plane, std::span<std::int16_t> offsets);

}  // namespace vantrel::anywhere

#endif
