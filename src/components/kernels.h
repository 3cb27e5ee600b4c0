/**
 * @file kernels.h
 * @brief The innermost loops of this room, of which there are several forms.
 */
#ifndef VANTREL_COMPONENTS_KERNELS_H
#define VANTREL_COMPONENTS_KERNELS_H

#include <cstdint>

namespace vantrel::components {

struct Kernels {
  /** Sets a bit for every byte that is 0, 64 a word, the lowest first; the last word's bits behind the bytes are 0. */
  void (*find_foreground)(const unsigned char* bytes, int count, std::uint64_t* foreground);
};

/** The form for this processor. */
extern const Kernels* kernels;

namespace plain {

void find_foreground(const unsigned char* bytes, int count, std::uint64_t* foreground);

inline constexpr Kernels kKernels{find_foreground};

}  // namespace plain
}  // namespace vantrel::components

#endif
