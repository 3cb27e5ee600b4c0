#include "kernels/form.h"
#include "kernels/target.h"

#if defined(VANTREL_HAS_VECTORS)
#if defined(__SSE2__)
#include <emmintrin.h>
#define VANTREL_FORM_SSE2 1
#elif defined(__ARM_NEON) && defined(__aarch64__)
#include <arm_neon.h>
#define VANTREL_FORM_NEON 1
#endif
#define VANTREL_VECTOR_BYTES 16
#include "kernels/bodies.h"

namespace vantrel::kernels {

constexpr Form kBaseline = form_of_bodies("baseline", [] { return true; });

}  // namespace vantrel::kernels
#endif
