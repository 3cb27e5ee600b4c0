/**
 * @file autoclip_verdict.h
 * @brief How the library calls what a search of the second implementation ended with.
 */
#ifndef VANTREL_TESTS_REFERENCE_AUTOCLIP_VERDICT_H
#define VANTREL_TESTS_REFERENCE_AUTOCLIP_VERDICT_H

#include <vantrel.h>

#include "reference/autoclip_finder.h"

namespace reference::autoclip {

inline int verdict_of(Verdict verdict) {
  switch (verdict) {
    case Verdict::kFound:
      return VANTREL_CORNERS_FOUND;
    case Verdict::kTooSmall:
      return VANTREL_CORNERS_TOO_SMALL;
    case Verdict::kDegenerate:
      return VANTREL_LINES_DEGENERATE;
    default:
      return VANTREL_NO_EDGES;
  }
}

}  // namespace reference::autoclip

#endif
