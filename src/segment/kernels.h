/**
 * @file kernels.h
 * @brief The innermost loops of this room, of which there are several forms.
 */
#ifndef VANTREL_SEGMENT_KERNELS_H
#define VANTREL_SEGMENT_KERNELS_H

namespace vantrel::segment {

struct Kernels {
  /** Makes the levels of a row black (0) where they are below 27/32 of the average of two means, else white (255). */
  void (*mark_dark)(unsigned char* row, const int* sums, const int* before, int count);
};

/** The form for this processor. */
extern const Kernels* kernels;

namespace plain {

void mark_dark(unsigned char* row, const int* sums, const int* before, int count);

inline constexpr Kernels kKernels{mark_dark};

}  // namespace plain
}  // namespace vantrel::segment

#endif
