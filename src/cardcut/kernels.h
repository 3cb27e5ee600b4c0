/**
 * @file kernels.h
 * @brief The innermost loops of this room, of which there are several forms.
 */
#ifndef VANTREL_CARDCUT_KERNELS_H
#define VANTREL_CARDCUT_KERNELS_H

namespace vantrel::cardcut {

/** The bytes that are compared at once, at most: a run of pixels of three bytes. */
inline constexpr int kMostCompared = 192;

struct Kernels {
  /**
   * Whether any three neighbouring bytes, of one pixel or of two, differ by a sum of squares of `least` or more.
   *
   * @param count at most kMostCompared.
   * @param least at most 21609.
   */
  bool (*any_far)(const unsigned char* a, const unsigned char* b, int count, int least);
};

/** The form for this processor. */
extern const Kernels* kernels;

namespace plain {

bool any_far(const unsigned char* a, const unsigned char* b, int count, int least);

inline constexpr Kernels kKernels{any_far};

}  // namespace plain
}  // namespace vantrel::cardcut

#endif
