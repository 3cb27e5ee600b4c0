/**
 * @file kernels.h
 * @brief The innermost loops of this room, of which there are several forms.
 */
#ifndef VANTREL_CARDCUT_KERNELS_H
#define VANTREL_CARDCUT_KERNELS_H

namespace vantrel::cardcut {

/** The bytes that are compared at once, at most: a run of pixels of three bytes. */
inline constexpr int kMostCompared = 192;

/** The columns of a run that are counted at once, and the distances that they have at one angle, at most. */
inline constexpr int kMostCounted = 64;
inline constexpr int kMostDistances = 8;

/** The number below a half: what a distance is rounded by before it is truncated. */
inline constexpr float kBelowHalf = 0x1.fffffep-2f;

/** Columns of a row, and how their distances at one angle are computed: across * cosine + row_part. */
struct CountedColumns {
  const float* across; /**< kMostCounted of them */
  float cosine;
  float row_part;
  int first; /**< the distance that is counted in the first place */
  int step;  /**< from place to place, 1 or -1 */
};

struct Kernels {
  /**
   * Whether any three neighbouring bytes, of one pixel or of two, differ by a sum of squares of `least` or more.
   *
   * @param count at most kMostCompared.
   * @param least at most 21609.
   */
  bool (*any_far)(const unsigned char* a, const unsigned char* b, int count, int least);

  /** Counts how many columns have each of the first `places` distances, at most kMostDistances. */
  void (*count_distances)(const CountedColumns& columns, int places, int* counts);
};

/** The form for this processor. */
extern const Kernels* kernels;

namespace plain {

bool any_far(const unsigned char* a, const unsigned char* b, int count, int least);
void count_distances(const CountedColumns& columns, int places, int* counts);

inline constexpr Kernels kKernels{any_far, count_distances};

}  // namespace plain
}  // namespace vantrel::cardcut

#endif
