/**
 * @file kernels.h
 * @brief The innermost loops of this room, of which there are several forms.
 */
#ifndef VANTREL_SEGMENT_KERNELS_H
#define VANTREL_SEGMENT_KERNELS_H

#include <cstdint>

namespace vantrel::segment {

/** So many rows are walked along at once. */
inline constexpr int kLines = 32;

/** 256 times a mean over about the last 256 pixels, after one more. Grows with `sum`, and stays in 0..65280. */
constexpr std::uint16_t next_sum(int sum, int level) { return static_cast<std::uint16_t>(sum + level - (sum >> 8)); }

/**
 * Whether a level is below 27/32 of the average of two means, each of which is 27 * sum >> 13: here the sums are added.
 */
constexpr bool is_dark(int level, int sum, int sum_before) { return level < (27 * (sum + sum_before)) >> 14; }

/** Rows that are walked along in step, a sum each. */
struct Lines {
  unsigned char* levels[kLines];
  int cols;
  bool backwards;
};

/** The sums of as many lines, one beside the other. */
using LineSums = std::uint16_t[kLines];

struct Kernels {
  /** Walks along lines with two sums each. */
  void (*follow)(const Lines& lines, LineSums& first, LineSums& second);

  /** Walks along lines and notes the sums at every column, those of a column side by side. */
  void (*note)(const Lines& lines, LineSums& sums, std::uint16_t* noted);

  /** Likewise, and makes pixels black (0) that are dark by the sums there and those noted before, else white (255). */
  void (*mark)(const Lines& lines, LineSums& sums, std::uint16_t* noted);
};

/** The form for this processor. */
extern const Kernels* kernels;

namespace plain {

void follow(const Lines& lines, LineSums& first, LineSums& second);
void note(const Lines& lines, LineSums& sums, std::uint16_t* noted);
void mark(const Lines& lines, LineSums& sums, std::uint16_t* noted);

inline constexpr Kernels kKernels{follow, note, mark};

}  // namespace plain
}  // namespace vantrel::segment

#endif
