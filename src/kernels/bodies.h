// Every room's kernels in the form that the including file says. No guard: a file of this room includes this once.
#include "kernels/words.h"
// The rooms' kernels stand on the above.
#include "autoclip/kernels_body.h"
#include "cardcut/kernels_body.h"
#include "components/kernels_body.h"
#include "image/kernels_body.h"
#include "lines/dense_kernels_body.h"
#include "lines/kernels_body.h"
#include "scale/kernels_body.h"
#include "segment/kernels_body.h"

namespace vantrel::kernels {
// NOLINTBEGIN(misc-definitions-in-headers): unnamed, and included once by each form.
namespace {

/** The form that the including file makes. */
constexpr Form form_of_bodies(const char* name, bool (*runs_here)()) {
  return {name,
          runs_here,
          autoclip::form::kKernels,
          cardcut::form::kKernels,
          components::form::kKernels,
          image::form::kKernels,
          lines::form::kKernels,
          scale::form::kKernels,
          segment::form::kKernels};
}

}  // namespace
// NOLINTEND(misc-definitions-in-headers)
}  // namespace vantrel::kernels
