#include "kernels/form.h"

namespace vantrel::kernels {

constexpr Form kPlain = {"plain",
                         [] { return true; },
                         autoclip::plain::kKernels,
                         cardcut::plain::kKernels,
                         components::plain::kKernels,
                         image::plain::kKernels,
                         lines::plain::kKernels,
                         scale::plain::kKernels,
                         segment::plain::kKernels};

}  // namespace vantrel::kernels
