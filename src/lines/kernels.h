/**
 * @file kernels.h
 * @brief The innermost loops of this room, of which there are several forms.
 */
#ifndef VANTREL_LINES_KERNELS_H
#define VANTREL_LINES_KERNELS_H

namespace vantrel::lines {

/** Three neighbouring rows, in memory order. */
struct RowTriple {
  const unsigned char* before;
  const unsigned char* here;
  const unsigned char* after;
};

struct Kernels {
  /** Computes the gradients in columns [from, to) of a row and marks them in its edge and direction rows. */
  void (*mark_row)(const RowTriple& gray, unsigned char* edge, unsigned char* direction, int from, int to);
};

/** The form for this processor. */
extern const Kernels* kernels;

namespace plain {

void mark_row(const RowTriple& gray, unsigned char* edge, unsigned char* direction, int from, int to);

inline constexpr Kernels kKernels{mark_row};

}  // namespace plain
}  // namespace vantrel::lines

#endif
