#include "reference/autoclip_finder.h"

#include "reference/autoclip_warp.h"
#include "reference/components_flood.h"
#include "reference/image_convert.h"
#include "reference/lines_sobel.h"
#include "support/tally.h"

namespace reference::autoclip {

namespace {

struct Band {
  int row_from;
  int row_to;
  int col_from;
  int col_to;
  int direction;
  Line instead;
};

/** Where the line of each side is looked for, and the line that stands in for it. */
std::array<Band, 4> bands_of(const Picture& gray) {
  const int rows = gray.rows;
  const int cols = gray.cols;
  return {{{7 * rows / 8, rows, 0, cols, 0, {0, 1, static_cast<double>(rows - 2)}},
           {0, rows / 8, 0, cols, 0, {0, 1, 1}},
           {0, rows, 0, cols / 5, 2, {1, 0, 0}},
           {0, rows, 4 * cols / 5, gray.stride(), 2, {1, 0, static_cast<double>(cols - 2)}}}};
}

MYRECT interior_of(const Picture& gray) {
  return {static_cast<short>(gray.cols / 5), static_cast<short>(gray.rows / 8), static_cast<short>(4 * gray.cols / 5),
          static_cast<short>(7 * gray.rows / 8), 0};
}

void find_lines(const Picture& gray, const lines::EdgeMaps& maps, const lines::Characters& characters, Search& search) {
  const int wb_class = lines::brightness(gray, 0, gray.rows, 0, gray.cols);
  const std::array<Band, 4> bands = bands_of(gray);
  for (int side = 0; side < 4; ++side) {
    const auto at = static_cast<std::size_t>(side);
    const Band& band = bands.at(at);
    Points points =
        collect(maps.edge, maps.dir, band.row_from, band.row_to, band.col_from, band.col_to, band.direction);
    const lines::Scene scene{gray, maps.edge, characters, side, band.direction, wb_class};
    search.found.at(at) = lines::side_line(scene, points, search.lines.at(at)) != 0;
    if (!search.found.at(at)) search.lines.at(at) = band.instead;
    support::tally::count("finder: side " + std::to_string(side) + (search.found.at(at) ? " found" : " defaulted"));
  }
}

}  // namespace

Search find_corners(const Picture& gray) {
  Search search;
  lines::EdgeMaps maps = lines::blank_maps(gray);
  lines::sobel(gray, interior_of(gray), maps);
  const lines::Characters characters = components::by_runs(maps.edge);
  if (characters.empty()) {
    support::tally::count("finder: no edges");
    return search;
  }
  find_lines(gray, maps, characters, search);
  const std::optional<Spots> spots = intersect(search.lines);
  if (!spots) {
    support::tally::count("finder: degenerate");
    search.verdict = Verdict::kDegenerate;
    return search;
  }
  const Judged judged = judge(*spots, gray.rows, gray.cols);
  search.corners = judged.corners;
  search.box = judged.box;
  search.verdict = judged.accepted ? Verdict::kFound : Verdict::kTooSmall;
  support::tally::count(judged.accepted ? "finder: accepted" : "finder: too small");
  return search;
}

std::optional<Judged> detect_by_gradient(const Picture& gray) {
  lines::EdgeMaps maps = lines::blank_maps(gray);
  const MYRECT whole{0, 0, static_cast<short>(gray.cols), static_cast<short>(gray.rows), 0};
  lines::sobel(gray, whole, maps);
  std::array<Line, 4> found;
  for (const int direction : {0, 2}) {
    Points points = collect(maps.edge, maps.dir, 0, gray.rows, 0, gray.stride(), direction);
    if (lines::two_lines(points, gray.rows, gray.cols, direction, found) == 0) {
      support::tally::count("gradient: no lines");
      return std::nullopt;
    }
  }
  const std::optional<Spots> spots = intersect(found);
  if (!spots) return std::nullopt;
  const Judged judged = judge(*spots, gray.rows, gray.cols);
  support::tally::count(judged.accepted ? "gradient: accepted" : "gradient: rejected");
  return judged;
}

namespace {

Picture warped(const Picture& analysed, const Picture& cut, Spots corners, int scale) {
  for (Spot& corner : corners) {
    corner.x *= static_cast<float>(scale);
    corner.y *= static_cast<float>(scale);
  }
  const auto right = static_cast<float>(cut.cols - 2);
  const auto bottom = static_cast<float>(cut.rows - 2);
  const Coefficients coeffs = solve_eight({{{1, 1}, {right, 1}, {1, bottom}, {right, bottom}}}, corners);
  Picture target(cut.cols, cut.rows, analysed.bits, 255);
  target.x_resolution = cut.x_resolution;
  target.y_resolution = cut.y_resolution;
  const Rect rect{1.0, 1.0, static_cast<double>(cut.cols - 2), static_cast<double>(cut.rows - 2)};
  warp(cut, target, coeffs, rect, Frame::kSource);
  return target;
}

}  // namespace

Clipped clip(const Picture& analysed, const Picture& cut, int scale) {
  const Picture& taken = scale == 1 ? analysed : cut;
  if (analysed.bits == 1) {
    support::tally::count("clip: bilevel copied");
    return {0, taken};
  }
  if (analysed.bits != 8 && analysed.bits != 24) {
    support::tally::count("clip: other depth");
    return {};
  }
  const Search search = find_corners(analysed.bits == 24 ? image::gray_of(analysed) : analysed);
  if (search.verdict != Verdict::kFound) {
    support::tally::count("clip: copied");
    return {0, analysed};
  }
  if (taken.bits != analysed.bits) {
    support::tally::count("clip: differing depths");
    return {};
  }
  support::tally::count(analysed.bits == 8 ? "clip: gray warped" : "clip: colour warped");
  return {1, warped(analysed, taken, search.corners, scale)};
}

}  // namespace reference::autoclip
