/**
 * @file candidates.h
 * @brief Quadrilaterals that may be a card's border, from lines.
 */
#ifndef VANTREL_ANYWHERE_CANDIDATES_H
#define VANTREL_ANYWHERE_CANDIDATES_H

#include <array>
#include <span>

#include "anywhere/lines.h"
#include "anywhere/quad.h"

namespace vantrel::anywhere {

/** No line is under a side of a quadrilateral that did not come from lines. */
inline constexpr int kNoLine = -1;

/** A quadrilateral in the coordinates of the copy. */
struct Candidate {
  Quad quad;
  std::array<int, 4> lines = {kNoLine, kNoLine, kNoLine, kNoLine}; /**< under side i */
  double plausibility = 0.0;                                       /**< what it was chosen by among the many */
};

/** The most quadrilaterals that are looked at closely. */
inline constexpr int kMostLineCandidates = 200;

/** The most plausible quadrilaterals, the best first. */
struct Candidates {
  static constexpr int kMost = kMostLineCandidates + 128;
  int count = 0;
  std::array<Candidate, kMost> items{};

  std::span<const Candidate> all() const { return {items.data(), static_cast<std::size_t>(count)}; }
};

/** Adds the most plausible quadrilaterals whose sides lie on lines; near duplicates are left out. False: no memory. */
bool add_line_candidates(const Lines& lines, int rows, int cols, Candidates& candidates);

}  // namespace vantrel::anywhere

#endif
