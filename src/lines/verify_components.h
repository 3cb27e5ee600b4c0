/**
 * @file verify_components.h
 * @brief Tests that accept or reject a candidate border line by the components of the edge map around it.
 *
 * L is the candidate's memory row (horizontal) or column (vertical). A component is the box around its pixels. Boxes
 * are added one by one, so that it does not matter how they are kept.
 */
#ifndef VANTREL_LINES_VERIFY_COMPONENTS_H
#define VANTREL_LINES_VERIFY_COMPONENTS_H

#include <cstdint>

#include "geometry/line.h"
#include "geometry/span.h"

namespace vantrel::lines {

/** Horizontal: accepts a band that is clean, or so cluttered that it cannot be background; rejects in between. */
class BandClutter {
 public:
  BandClutter(int L, int rows, int cols, geometry::Side side);
  void add(const geometry::Rect& box);
  bool accepts() const;

 private:
  std::int64_t line_;
  int rows_;
  int cols_;
  int margin_;
  bool top_;
  std::int64_t band_;
  std::int64_t count_ = 0;
  std::int64_t area_ = 0;
};

/** How strict a test for cut components is. */
struct CutRules {
  int width_share; /**< components wider than the width over this are not considered */
  int few;         /**< so many cut components may be wide */
};

inline constexpr CutRules kTiltedCuts{2, 2};
inline constexpr CutRules kLevelCuts{4, 5};

/** Horizontal: rejects a line that cuts through many or wide components. */
class CutComponents {
 public:
  CutComponents(int L, int rows, int cols, const CutRules& rules);
  void add(const geometry::Rect& box);
  bool accepts() const;

 private:
  int rows_;
  int cols_;
  CutRules rules_;
  std::int64_t low_;
  std::int64_t high_;
  int count_ = 0;
  std::int64_t width_ = 0;
};

/** Vertical: rejects a band with moderate clutter, and one covered by few large components. */
class SideClutter {
 public:
  SideClutter(int L, int rows, int cols, geometry::Side side);
  void add(const geometry::Rect& box);
  bool accepts() const;

 private:
  std::int64_t line_;
  int margin_;
  bool left_;
  std::int64_t band_;
  int count_ = 0;
  std::int64_t area_ = 0;
};

}  // namespace vantrel::lines

#endif
