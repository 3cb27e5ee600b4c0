/**
 * @file kernels.h
 * @brief The innermost loops of this room, of which there are several forms.
 */
#ifndef VANTREL_LINES_KERNELS_H
#define VANTREL_LINES_KERNELS_H

#include <cstddef>
#include <cstdint>

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

/** So many cells of neighbouring distances are bounded at once, and so many are summed. */
inline constexpr int kBoundCells = 64;
inline constexpr int kSumCells = 16;

/** Votes are bounded in parts of them, for points at 2^kPositionBits positions between two bytes. */
inline constexpr int kVoteParts = 64;
inline constexpr int kPositionBits = 6;

/** Where that is prepared, distances are whole numbers of so many to a pixel. */
inline constexpr int kFine = 1024;

/** Points between two distances from the first of kBoundCells cells, and how much further on they lie for each cell. */
struct WeighedCells {
  short from;
  short to;
  const short* drifts; /**< truncated */
};

/**
 * Lines are first bounded loosely, all together that pass the first slice between two bytes. They pass each other slice
 * within a byte and one of kPieces pieces of it. What a slice gives it at most depends on the piece it
 * begins in, and has its own row for each: in parts of a vote, so that a byte holds what kLooseSlices slices give.
 */
inline constexpr int kPieces = 2;
inline constexpr int kLooseParts = 11;
inline constexpr int kLooseSlices = 16;

/** The first byte that counts for a line that passes behind byte 0, and how many do. */
inline constexpr int kFirstLoose = -1;
inline constexpr int kLooseBytes = 5;

/** Bytes lie at least so far apart, in distances: no angle leans by more than 30 degrees. */
inline constexpr double kLeastAcross = 0.866;

/** A whole number of parts that is no less. */
constexpr int loose_parts(double votes) {
  const double parts = votes * kLooseParts;
  return static_cast<int>(parts) + (static_cast<int>(parts) < parts ? 1 : 0);
}

/** What a point of a byte gives the lines that begin in a piece at most: a vote less its distance. */
constexpr unsigned char loose_weight(int piece, int byte) {
  const double first = piece / double{kPieces}, last = first + 1 + 1 / double{kPieces};
  const double away = byte < first ? first - byte : byte > last ? byte - last : 0;
  const double vote = 1 - away * kLeastAcross;
  return static_cast<unsigned char>(vote > 0 ? loose_parts(vote) : 0);
}

/**
 * What all bytes of a slice together give a line at most: as much as when it passes through one of them, whose
 * neighbours then count for the rest.
 */
inline constexpr unsigned char kMostLooseParts = loose_parts(1 + 2 * (1 - kLeastAcross));

/** Sums stay there; strong lines need not be told from stronger ones. */
inline constexpr int kMostLooseSum = 65535;

/** They are counted so many bytes at a time. */
inline constexpr int kLooseStep = 64;

/** A row of each of some slices, from where the line that passes slice 0 behind byte 0 passes it. */
struct LooseRows {
  const unsigned char* bytes;
  int offsets[kLooseSlices]; /**< of the rows, in bytes */
  int slices;
};

/** So many slices are counted at once, and give a cell no more parts of a vote each than fit a word together. */
inline constexpr int kMostSlices = 32;
inline constexpr int kMostPartsASlice = 127;

/**
 * Slices of a map of points (see point_map.h) and what their points give kBoundCells cells at most. In each slice
 * `taps` neighbouring bytes may count for the first cell, for the next one those that lie one further, and so on.
 */
struct BoundedSlices {
  const unsigned char* slice; /**< the first one */
  std::ptrdiff_t stride;
  int count;             /**< kMostSlices at most */
  std::int64_t position; /**< in the first slice: behind its whole part begin the bytes that count, in 2^-32 bytes */
  std::int64_t slope;    /**< how much further it lies in the next one */
  const unsigned char*
      weights; /**< for each position between two bytes, tap and cell; of a cell, kMostPartsASlice at most together */
  int taps;
};

/** A map of points, and the first of kSumCells neighbouring cells: distance = across * byte + along * slice. */
struct SummedCells {
  const unsigned char* first; /**< byte 0 of slice 0 */
  std::ptrdiff_t stride;
  double first_across; /**< what byte 0 and slice 0 are counted as */
  double first_along;
  double across;
  double along;
  double distance; /**< of the first cell; that of the next one is 1 more */
  bool runs_along; /**< whether runs go from slice to slice, or from byte to byte */
};

/** Bytes of a map that are looked at one after the other for the first cell; for the next one, those one further. */
struct ByteRun {
  int byte;
  int slice;
  int count;
};

struct Kernels {
  /** Computes the gradients in columns [from, to) of a row and marks them in its edge and direction rows. */
  void (*mark_row)(const RowTriple& gray, unsigned char* edge, unsigned char* direction, int from, int to);

  /**
   * Gives every point one vote per angle, split between the two distances next to it. All votes fall on the sheet; only
   * the plain form takes points whose votes do not.
   */
  void (*vote)(const VoteSheet& sheet, const EdgePoint* points, int count);

  /** What a point gives each cell at most: a vote less its distance, in parts. */
  void (*weigh)(const WeighedCells& cells, unsigned char* weights);

  /** Adds to each sum what the slices' points give its cell at most, in parts of a vote. */
  void (*bound_cells)(const BoundedSlices& slices, unsigned* sums);

  /** Writes what a slice gives the lines behind each byte at most, a row for each piece; steps of kLooseStep bytes. */
  void (*spread)(const unsigned char* points, int steps, unsigned char* const* rows);

  /** Adds to each sum the bytes of its place, from one place on, in steps of kLooseStep places; up to kMostLooseSum. */
  void (*add_rows)(const LooseRows& rows, int from, int steps, std::uint16_t* sums);

  /** Adds to each sum the votes for its cell in the order of the runs, as `vote` adds them in the points' order. */
  void (*sum_cells)(const SummedCells& cells, const ByteRun* runs, int count, double* sums);

  /** The largest of some numbers, or 0 when none is larger. */
  double (*largest)(const double* values, int count);

  /** How many bytes are below a level. */
  int (*count_below)(const unsigned char* bytes, int count, unsigned char level);

  /** Whether many points are sooner bounded and summed than voted: only with vectors does that take less time. */
  bool bounds_many;
};

/** The form for this processor. */
extern const Kernels* kernels;

namespace plain {

void mark_row(const RowTriple& gray, unsigned char* edge, unsigned char* direction, int from, int to);

void vote(const VoteSheet& sheet, const EdgePoint* points, int count);
void weigh(const WeighedCells& cells, unsigned char* weights);
void bound_cells(const BoundedSlices& slices, unsigned* sums);
void spread(const unsigned char* points, int steps, unsigned char* const* rows);
void add_rows(const LooseRows& rows, int from, int steps, std::uint16_t* sums);
void sum_cells(const SummedCells& cells, const ByteRun* runs, int count, double* sums);
double largest(const double* values, int count);
int count_below(const unsigned char* bytes, int count, unsigned char level);

inline constexpr Kernels kKernels{mark_row, vote,      weigh,   bound_cells, spread,
                                  add_rows, sum_cells, largest, count_below, false};

}  // namespace plain
}  // namespace vantrel::lines

#endif
