#include <cstdint>
#include <cstdlib>

#include "lines/border_line.h"
#include "lines/verify.h"

namespace vantrel {
namespace {

/** The extent of a component; sides wrap to 16 bits as rectangles do. */
struct Extent {
  int w;
  int h;
  std::int64_t area;
};

Extent extent_of(const MYRECT& rect) {
  const auto w = static_cast<std::int16_t>(rect.right - rect.left + 1);
  const auto h = static_cast<std::int16_t>(std::abs(rect.top - rect.bottom) + 1);
  return {w, h, std::int64_t{w} * h};
}

/** Calls `visit` with the rectangle and extent of every component. */
template <class Visit>
void for_each_component(const _BNODE* line, Visit visit) {
  for (const _BNODE* node = line->child; node != nullptr; node = node->next) visit(node->rect, extent_of(node->rect));
}

/** Clutter that may be background: neither a speck, nor a large piece, nor a thin long one. */
bool is_clutter(const Extent& e, std::int64_t band, int rows, int cols) {
  if (e.area < 5 || e.area > band / 4) return false;
  if (e.w > cols / 2 || e.h > rows / 2) return false;
  if (e.h > 10 * e.w || (e.w <= 2 && e.h > 8 * e.w)) return false;
  return e.w <= 7 * e.h && !(e.h <= 2 && e.w > 5 * e.h);
}

/** The same beside a vertical line, where an upright, moderately narrow piece counts up to half the band. */
bool is_side_clutter(const Extent& e, std::int64_t band) {
  if (e.area <= 4) return false;
  if (e.area <= band / 4 && e.h <= 10 * e.w && e.w <= 10 * e.h) return true;
  return e.area < band / 2 && e.w < e.h && 5 * e.w > 2 * e.h;
}

/** How the two tests for cut components differ. */
struct CutRules {
  int width_share; /**< components wider than the width over this are not considered */
  int few;         /**< so many cut components may be wide */
};

bool cuts_little(const _BNODE* line, int L, int rows, int cols, const CutRules& rules) {
  const int margin = rows / 70;
  const std::int64_t high = std::int64_t{L} + margin > rows ? rows - 1 : std::int64_t{L} + margin;
  // Not 0 when the margin leaves the image: a component that starts in row 0 still counts as cut.
  const std::int64_t low = std::int64_t{L} - margin >= 0 ? std::int64_t{L} - margin : 1;
  int count = 0;
  std::int64_t width = 0;
  for_each_component(line, [&](const MYRECT& rect, const Extent& e) {
    if (e.h > rows / 3 || e.w > cols / rules.width_share) return;
    if ((rect.bottom < low && low < rect.top) || (rect.bottom < high && high < rect.top)) {
      ++count;
      width += e.w;
    }
  });
  return !(count > 6 && cols < 3 * width) && !(count > rules.few && 5 * width > std::int64_t{4} * cols);
}

}  // namespace
}  // namespace vantrel

using vantrel::Extent;

bool VerifyCorrectLineV_2(_BNODE* line, int L, int rows, int cols, int side, short /*wbClass*/) {
  const int margin = rows / 40;
  const bool top = side == vantrel::kTop;
  const std::int64_t band = (top ? std::int64_t{rows} - L + margin : std::int64_t{L} + margin + 1) * cols;
  std::int64_t count = 0;
  std::int64_t area = 0;
  vantrel::for_each_component(line, [&](const MYRECT& rect, const Extent& e) {
    const bool beyond = top ? rect.bottom > std::int64_t{L} - margin : rect.top < std::int64_t{L} + margin;
    if (!beyond || !vantrel::is_clutter(e, band, rows, cols)) return;
    ++count;
    area += e.area;
  });
  // Moderate clutter, between 1/50 and 3/10 of the band, speaks against the line; less is a clean band, and more (in
  // many pieces or very much of it) cannot be the scanner's background.
  if (band >= 50 * area) return true;
  if (10 * area < 3 * band) return false;
  return count >= cols / 20 || band <= 2 * area;
}

bool VerifyCorrectLineV_3(_BNODE* line, int L, int rows, int cols, int /*side*/, short /*wbClass*/) {
  return vantrel::cuts_little(line, L, rows, cols, {2, 2});
}

bool VerifyCorrectLineV_3_ORVA(_BNODE* line, int L, int rows, int cols, int /*side*/, short /*wbClass*/) {
  return vantrel::cuts_little(line, L, rows, cols, {4, 5});
}

bool VerifyCorrectLineH_0(_BNODE* line, int L, int rows, int cols, int side, short /*wbClass*/) {
  const int margin = cols / 70;
  const bool left = side == vantrel::kLeft;
  const std::int64_t band = (left ? std::int64_t{L} + margin + 1 : std::int64_t{cols} - L + margin) * rows;
  int count = 0;
  std::int64_t area = 0;
  vantrel::for_each_component(line, [&](const MYRECT& rect, const Extent& e) {
    const bool beyond = left ? rect.right < std::int64_t{L} + margin : rect.left > std::int64_t{L} - margin;
    if (!beyond || !vantrel::is_side_clutter(e, band)) return;
    ++count;
    area += e.area;
  });
  if (band < 50 * area && band > 2 * area && count > 2) return false;
  return !(band < 2 * area && count <= 14);
}
