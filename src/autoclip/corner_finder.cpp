#include "autoclip/corner_finder.h"

#include "lines/border_search.h"
#include "lines/edge_maps.h"

namespace vantrel::autoclip {
namespace {

using geometry::Rect;
using geometry::Side;
using lines::Direction;

/** What lies within all four bands. */
Rect interior_of(int rows, int cols) { return {{rows / 8, 7 * rows / 8}, {cols / 5, 4 * cols / 5}}; }

/** Finds the four border lines; a side without one gets the image's frame. */
void find_borders(const lines::Levels& gray, const lines::EdgeMaps& maps, std::span<const Rect> components,
                  CornerSearch& search) {
  const auto [rows, cols] = std::pair(gray.pixels.rows, gray.pixels.cols);
  const lines::Brightness brightness = brightness_of(gray, {{0, rows}, {0, cols}});
  const lines::DegreeTables tables;
  for (const Side side : geometry::kSides) {
    const auto [area, direction, frame_line] = side_band(side, rows, cols);
    const lines::BorderScene scene{gray, maps.edge(), components, side, brightness};
    const lines::Border border = find_border(scene, maps, area, direction, tables);
    const bool found = border.acceptance != lines::Acceptance::kNone;
    search.sides[side] = found ? FoundSide{border.line, true, border.votes} : FoundSide{frame_line, false, 0};
    search.complete = search.complete && border.complete;
  }
}

PerSide<Line> lines_of(const CornerSearch& search) {
  PerSide<Line> lines;
  for (const Side side : geometry::kSides) lines[side] = search.sides[side].line;
  return lines;
}

Verdict run(const lines::Levels& gray, CornerSearch& search) {
  const auto [rows, cols] = std::pair(gray.pixels.rows, gray.pixels.cols);
  if (rows < 0 || cols < 0 || rows > kLongestSide || cols > kLongestSide) return Verdict::kSideTooLong;

  lines::EdgeMaps maps(gray.pixels);
  if (!maps.ready()) return Verdict::kNoMemory;
  maps.detect(interior_of(rows, cols));
  const components::ComponentBoxes components(maps.edge());
  if (!components.ready()) return Verdict::kNoMemory;
  if (components.all().empty()) return Verdict::kNoEdges;

  find_borders(gray, maps, components.all(), search);
  const Intersections found = intersect(lines_of(search));
  // Never: borders lie within 15 degrees of level or 20 of upright, as the frame does, and so meet.
  if (!found.complete()) return Verdict::kDegenerate;
  search.corners = placed_in_image(found.corners, rows, cols);
  search.box = bounding_box(search.corners);
  // Never: a line that is found runs within its band along four ninths of the rows or a quarter of the columns, and
  // leans by 20 or 15 degrees at most, so that opposite ones keep more than half of the image between their ends.
  return search.box.covers_half(rows, cols) ? Verdict::kFound : Verdict::kTooSmall;
}

}  // namespace

SideBand side_band(Side side, int rows, int cols) {
  const Rect interior = interior_of(rows, cols);
  switch (side) {
    case Side::kTop:
      return {{{interior.rows.end, rows}, {0, cols}}, Direction::kAcrossRows, {0.0, 1.0, rows - 2.0}};
    case Side::kBottom:
      return {{{0, interior.rows.first}, {0, cols}}, Direction::kAcrossRows, {0.0, 1.0, 1.0}};
    case Side::kLeft:
      return {{{0, rows}, {0, interior.cols.first}}, Direction::kAlongRows, {1.0, 0.0, 0.0}};
    default:
      return {{{0, rows}, {interior.cols.end, cols}}, Direction::kAlongRows, {1.0, 0.0, cols - 2.0}};
  }
}

CornerSearch find_corners(const lines::Levels& gray) {
  CornerSearch search;
  search.verdict = run(gray, search);
  return search;
}

}  // namespace vantrel::autoclip
