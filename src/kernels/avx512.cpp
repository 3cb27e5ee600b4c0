#include <algorithm>
#include <array>

#include "kernels/form.h"
#include "kernels/target.h"

#if defined(VANTREL_HAS_X86_FORMS)
#include <immintrin.h>

VANTREL_BEGIN_TARGET("avx2,avx512f,avx512bw,avx512dq,avx512vl")
#define VANTREL_FORM_AVX2 1
#define VANTREL_FORM_AVX512 1
#define VANTREL_VECTOR_BYTES 64
#include "kernels/bodies.h"
VANTREL_END_TARGET

namespace vantrel::kernels {
namespace {

bool runs_here() {
  const std::array<bool, 5> has = {__builtin_cpu_supports("avx2") != 0, __builtin_cpu_supports("avx512f") != 0,
                                   __builtin_cpu_supports("avx512bw") != 0, __builtin_cpu_supports("avx512dq") != 0,
                                   __builtin_cpu_supports("avx512vl") != 0};
  return std::find(has.begin(), has.end(), false) == has.end();
}

}  // namespace

constexpr Form kAvx512 = form_of_bodies("avx512", runs_here);

}  // namespace vantrel::kernels
#endif
