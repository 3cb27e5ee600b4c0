#include <cstdlib>
#include <cstring>
#include <iterator>

#include "kernels/form.h"
#include "kernels/target.h"

namespace vantrel::kernels {
namespace {

constexpr const Form* kForms[] = {
    &kPlain,
#if defined(VANTREL_HAS_VECTORS)
    &kBaseline,
#endif
#if defined(VANTREL_HAS_X86_FORMS)
    &kAvx2,
    &kAvx512,
#endif
};

/** What other code that runs at load finds if it comes first: what runs everywhere. */
constinit const Form* current = &kPlain;

}  // namespace
}  // namespace vantrel::kernels

// The rooms' tables. They are set once, before anything but other code at load can run, and never again.
constinit const vantrel::autoclip::Kernels* vantrel::autoclip::kernels = &vantrel::kernels::kPlain.autoclip;
constinit const vantrel::cardcut::Kernels* vantrel::cardcut::kernels = &vantrel::kernels::kPlain.cardcut;
constinit const vantrel::components::Kernels* vantrel::components::kernels = &vantrel::kernels::kPlain.components;
constinit const vantrel::image::Kernels* vantrel::image::kernels = &vantrel::kernels::kPlain.image;
constinit const vantrel::lines::Kernels* vantrel::lines::kernels = &vantrel::kernels::kPlain.lines;
constinit const vantrel::scale::Kernels* vantrel::scale::kernels = &vantrel::kernels::kPlain.scale;
constinit const vantrel::segment::Kernels* vantrel::segment::kernels = &vantrel::kernels::kPlain.segment;

namespace vantrel::kernels {
namespace {

/** Learns what the processor has: the compiler's own code for that may be yet to run. */
void ask_processor() {
#if defined(VANTREL_HAS_X86_FORMS)
  __builtin_cpu_init();
#endif
}

void use(const Form& form) {
  current = &form;
  autoclip::kernels = &form.autoclip;
  cardcut::kernels = &form.cardcut;
  components::kernels = &form.components;
  image::kernels = &form.image;
  lines::kernels = &form.lines;
  scale::kernels = &form.scale;
  segment::kernels = &form.segment;
}

#if defined(__GNUC__)
[[gnu::constructor]] void at_load() {
  ask_processor();
  use(choose(std::getenv(kEnvironmentName)));
}
#else
[[maybe_unused]] const bool chosen_at_load = (use(choose(std::getenv(kEnvironmentName))), true);
#endif

}  // namespace

std::span<const Form* const> forms() { return kForms; }

const Form& choose(const char* name, std::span<const Form* const> among) {
  const Form* best = &kPlain;
  for (const Form* form : among) {
    if (!form->runs_here()) continue;
    best = form;
    if (name != nullptr && std::strcmp(name, form->name) == 0) break;
  }
  return *best;
}

const Form& chosen() { return *current; }

}  // namespace vantrel::kernels
