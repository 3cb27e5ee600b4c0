/**
 * @file form.h
 * @brief The forms in which the rooms' kernels come, a table of functions each, and the choice among them.
 *
 * A kernel is the innermost loop of a room, mostly over one row. Its plain form is its definition; the others are made
 * from the room's `kernels_body.h`, which each file of this room compiles for its processor. All give the same bytes.
 */
#ifndef VANTREL_KERNELS_FORM_H
#define VANTREL_KERNELS_FORM_H

#include <span>

#include "autoclip/kernels.h"
#include "cardcut/kernels.h"
#include "components/kernels.h"
#include "image/kernels.h"
#include "lines/edges.h"
#include "lines/kernels.h"
#include "scale/kernels.h"
#include "segment/kernels.h"

namespace vantrel::kernels {

/** The kernels of all rooms in one form. */
struct Form {
  const char* name;
  bool (*runs_here)(); /**< whether this processor has the instructions */
  autoclip::Kernels autoclip;
  cardcut::Kernels cardcut;
  components::Kernels components;
  image::Kernels image;
  lines::Kernels lines;
  scale::Kernels scale;
  segment::Kernels segment;
};

extern const Form kPlain;    /**< the definitions */
extern const Form kBaseline; /**< vectors that every processor of the architecture has: SSE2, NEON */
extern const Form kAvx2;
extern const Form kAvx512;

/** All forms of this architecture, each better than those before it where it runs. */
std::span<const Form* const> forms();

/** The form of that name if there is one that runs here, else (and for a null name) the best one that does. */
const Form& choose(const char* name, std::span<const Form* const> among = forms());

/** What the environment may name a form in: to test all of them on one machine. It is read once, at load. */
inline constexpr char kEnvironmentName[] = "VANTREL_KERNELS";

/** The form that was chosen when the library was loaded. */
const Form& chosen();

}  // namespace vantrel::kernels

#endif
