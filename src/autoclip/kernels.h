/**
 * @file kernels.h
 * @brief The innermost loops of this room, of which there are several forms.
 */
#ifndef VANTREL_AUTOCLIP_KERNELS_H
#define VANTREL_AUTOCLIP_KERNELS_H

#include "image/view.h"

namespace vantrel::autoclip {

/** Where a warp samples. */
struct WarpSource {
  image::ConstPixels pixels; /**< not empty */
  float first_position;      /**< positions before it are sampled there: 0, or minus infinity */
};

/** Positions (x, y) to (x + count - 1, y), which are mapped by eight coefficients, and the pixels for what they show.
 */
struct WarpStretch {
  const double* mapping;
  int x;
  int y;
  int count;
  unsigned char* target;
};

struct Kernels {
  /** Maps and samples a stretch of pixels of one byte, of three, of four. */
  void (*warp_1)(const WarpSource& source, const WarpStretch& stretch);
  void (*warp_3)(const WarpSource& source, const WarpStretch& stretch);
  void (*warp_4)(const WarpSource& source, const WarpStretch& stretch);
};

/** The form for this processor. */
extern const Kernels* kernels;

namespace plain {

template <int kChannels>
void warp_stretch(const WarpSource& source, const WarpStretch& stretch);
extern template void warp_stretch<1>(const WarpSource&, const WarpStretch&);
extern template void warp_stretch<3>(const WarpSource&, const WarpStretch&);
extern template void warp_stretch<4>(const WarpSource&, const WarpStretch&);

inline constexpr Kernels kKernels{warp_stretch<1>, warp_stretch<3>, warp_stretch<4>};

}  // namespace plain
}  // namespace vantrel::autoclip

#endif
