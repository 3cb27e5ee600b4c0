/**
 * @file candidates.h
 * @brief Quadrilaterals that may be a card's border, from lines.
 */
#ifndef VANTREL_ANYWHERE_CANDIDATES_H
#define VANTREL_ANYWHERE_CANDIDATES_H

#include <array>
#include <cstddef>
#include <span>

#include "anywhere/lines.h"
#include "anywhere/quad.h"
#include "image/work_array.h"

namespace vantrel::anywhere {

/** No line is under a side of a quadrilateral that did not come from lines. */
inline constexpr int kNoLine = -1;

/** A quadrilateral in the coordinates of the copy. */
struct Candidate {
  Quad quad;
  std::array<int, 4> lines = {kNoLine, kNoLine, kNoLine, kNoLine}; /**< under side i */
  double plausibility = 0.0;                                       /**< what it was chosen by among the many */
};

/** The shortest side of a card, in pixels of the copy. */
inline constexpr double kShortestSide = 8.0;

/** The most quadrilaterals that are taken from the lines of a copy. */
inline constexpr std::size_t kMostLineCandidates = 200;

/** The quadrilaterals that are looked at closely: room for a fixed number, later ones are dropped. */
class Candidates {
 public:
  static constexpr std::size_t kMost = 800;
  /** Without room, and not ready. */
  Candidates() = default;
  explicit Candidates(std::size_t most) : items_(most) {}

  bool ready() const { return items_.ready(); }
  std::size_t count() const { return count_; }
  const Candidate& operator[](std::size_t i) const { return items_[i]; }
  std::span<const Candidate> all() const { return items_.all().first(count_); }
  /** Whether there is one whose corners are as near to these, in pixels of the copy. */
  bool has(const Quad& quad, double same_place) const;
  /** Adds a candidate unless there is one as near, or no room. */
  void add(const Candidate& candidate, double same_place);

 private:
  std::size_t count_ = 0;
  image::WorkArray<Candidate> items_;
};

/** Adds up to `most` quadrilaterals whose sides lie on lines, the most plausible ones that differ. False: no memory. */
bool add_line_candidates(const Lines& lines, int rows, int cols, std::size_t most, Candidates& candidates);

}  // namespace vantrel::anywhere

#endif
