/**
 * @file kernels.h
 * @brief The innermost loops of this room, of which there are several forms.
 */
#ifndef VANTREL_IMAGE_KERNELS_H
#define VANTREL_IMAGE_KERNELS_H

namespace vantrel::image {

struct Kernels {
  /** Writes the gray levels of `count` pixels of blue, green and red. */
  void (*gray_row)(const unsigned char* pixels, unsigned char* levels, int count);
};

/** The form for this processor. */
extern const Kernels* kernels;

namespace plain {

void gray_row(const unsigned char* pixels, unsigned char* levels, int count);

inline constexpr Kernels kKernels{gray_row};

}  // namespace plain
}  // namespace vantrel::image

#endif
