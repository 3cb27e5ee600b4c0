/**
 * @file kernels.h
 * @brief The innermost loops of this room, of which there are several forms.
 */
#ifndef VANTREL_LINES_KERNELS_H
#define VANTREL_LINES_KERNELS_H

#include <cstddef>

#include "lines/edge_maps.h"

namespace vantrel::lines {

/** Three neighbouring rows, in memory order. */
struct RowTriple {
  const unsigned char* before;
  const unsigned char* here;
  const unsigned char* after;
};

/** The cells of a Hough vote and what they stand for: a column of distances for each angle. */
struct VoteSheet {
  double* cells;
  std::ptrdiff_t stride; /**< cells from one angle's column to the next */
  int distances;         /**< cells of a column */
  int zero;              /**< the cell of the distance 0 */
  const double* cos;     /**< of each angle */
  const double* sin;
  int angles;
};

/** So many angles have a column at most: every degree of half a turn. */
inline constexpr int kMostAngles = 180;

struct Kernels {
  /** Computes the gradients in columns [from, to) of a row and marks them in its edge and direction rows. */
  void (*mark_row)(const RowTriple& gray, unsigned char* edge, unsigned char* direction, int from, int to);

  /**
   * Gives every point one vote per angle, split between the two distances next to it. All votes fall on the sheet; only
   * the plain form takes points whose votes do not.
   */
  void (*vote)(const VoteSheet& sheet, const EdgePoint* points, int count);

  /** The largest of some numbers, or 0 when none is larger. */
  double (*largest)(const double* values, int count);

  /** How many bytes are below a level. */
  int (*count_below)(const unsigned char* bytes, int count, unsigned char level);
};

/** The form for this processor. */
extern const Kernels* kernels;

namespace plain {

void mark_row(const RowTriple& gray, unsigned char* edge, unsigned char* direction, int from, int to);

void vote(const VoteSheet& sheet, const EdgePoint* points, int count);
double largest(const double* values, int count);
int count_below(const unsigned char* bytes, int count, unsigned char level);

inline constexpr Kernels kKernels{mark_row, vote, largest, count_below};

}  // namespace plain
}  // namespace vantrel::lines

#endif
