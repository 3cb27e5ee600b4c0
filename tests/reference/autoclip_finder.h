/**
 * @file autoclip_finder.h
 * @brief The corner finders and the whole operation, plainly.
 */
#ifndef VANTREL_TESTS_REFERENCE_AUTOCLIP_FINDER_H
#define VANTREL_TESTS_REFERENCE_AUTOCLIP_FINDER_H

#include <optional>

#include "reference/autoclip_corners.h"

namespace reference::autoclip {

/** How a search ended. */
enum class Verdict { kFound, kTooSmall, kDegenerate, kNoEdges };

/** What a corner finder saw; filled as far as it came. */
struct Search {
  Verdict verdict = Verdict::kNoEdges;
  std::array<Line, 4> lines;
  std::array<bool, 4> found{};
  Spots corners;
  Spots box;
};

/** The search in the four bands of a gray picture. */
Search find_corners(const Picture& gray);

/** The search in the frame of a gray picture by gradient alone; nothing when it found no four corners at all. */
std::optional<Judged> detect_by_gradient(const Picture& gray);

/** The result code of the whole operation and its picture. */
struct Clipped {
  int code = -1;
  std::optional<Picture> picture;
};
Clipped clip(const Picture& analysed, const Picture& cut, int scale);

}  // namespace reference::autoclip

#endif
