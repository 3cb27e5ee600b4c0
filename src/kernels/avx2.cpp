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

constexpr Form kAvx2 = {"avx2",
                        [] { return __builtin_cpu_supports("avx2") != 0; },
                        autoclip::form::kKernels,
                        cardcut::form::kKernels,
                        components::form::kKernels,
                        image::form::kKernels,
                        lines::form::kKernels,
                        segment::form::kKernels};

}  // namespace vantrel::kernels
#endif
