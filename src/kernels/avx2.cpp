#include "kernels/form.h"
#include "kernels/target.h"

#if defined(VANTREL_HAS_X86_FORMS)
#include <immintrin.h>

VANTREL_BEGIN_TARGET("avx2")
#define VANTREL_FORM_AVX2 1
#define VANTREL_VECTOR_BYTES 32
#include "kernels/bodies.h"
VANTREL_END_TARGET

namespace vantrel::kernels {

constexpr Form kAvx2 = form_of_bodies("avx2", [] { return __builtin_cpu_supports("avx2") != 0; });

}  // namespace vantrel::kernels
#endif
