#include "autoclip/gradient_corners.h"

#include <algorithm>
#include <cstdint>

#include "lines/edge_maps.h"
#include "lines/pair_search.h"

namespace vantrel::autoclip {
namespace {

using geometry::Rect;
using lines::Direction;

/** The cells of a search take so many bytes for a pixel at most, save where that is next to nothing. */
constexpr std::int64_t kMostBytesPerPixel = 8;
constexpr std::int64_t kBytesForAny = 1 << 20;

/** One in so many pixels lies in the frame that edges are looked for in: 1 - (1 - 2 / 15) (1 - 2 / 25) of them. */
constexpr int kFrameShare = 5;

/** For how many angles there is memory at a time. */
int angles_at_a_time(const image::ConstPixels& pixels) {
  const std::int64_t most = std::max(kBytesForAny, kMostBytesPerPixel * pixels.stride * pixels.rows);
  const std::int64_t bytes = lines::bytes_per_angle(pixels.rows, pixels.cols);
  return static_cast<int>(std::clamp<std::int64_t>(most / bytes, 1, 180));
}

/** Two opposite borders by the edge pixels of one direction. */
lines::BorderPair find_pair(const lines::EdgeMaps& maps, const Rect& area, Direction direction,
                            const lines::AngleTables& tables, bool& complete) {
  const std::int64_t points = maps.count_points(area, direction);
  if (points < lines::kLeastPairPoints) return {};
  const bool many = lines::are_many(points, area, std::int64_t{area.rows.size()} * area.cols.size() / kFrameShare);
  const bool horizontal = direction == Direction::kAcrossRows;
  const int angles = angles_at_a_time(maps.edge());
  if (angles < lines::PairRules::of(area.rows.end, area.cols.end, horizontal).voted.size()) {
    const lines::SlicedPairSearch search(area.rows.end, area.cols.end, horizontal, tables, angles,
                                         [&](auto& votes) { vote_band(maps, area, direction, false, votes); });
    bool ready = false;
    const lines::BorderPair pair = search.find(ready);
    complete = complete && ready;  // Never: without memory the first pair is not found, and no other looked for.
    return pair;
  }
  lines::PairSearch search(area.rows.end, area.cols.end, horizontal, tables);
  complete = complete && search.ready();  // Never: likewise.
  if (!search.ready()) return {};
  vote_band(maps, area, direction, many, search);
  return search.find();
}

}  // namespace

GradientSearch find_gradient_corners(image::ConstPixels gray) {
  GradientSearch search;
  if (gray.empty()) return search;
  lines::EdgeMaps maps(gray);
  search.complete = maps.ready();
  if (!maps.ready()) return search;
  // The whole image as interior leaves the operator's margins: a frame of 1/15 of the rows and 1/25 of the columns.
  // Its sides are kept in 16 bits: of a longer one nothing, or another part, is passed over.
  const Rect whole{{0, gray.rows}, {0, gray.cols}};
  maps.detect({{0, static_cast<std::int16_t>(gray.rows)}, {0, static_cast<std::int16_t>(gray.cols)}});

  const lines::DegreeTables tables;
  const lines::BorderPair level = find_pair(maps, whole, Direction::kAcrossRows, tables, search.complete);
  if (!level.found) return search;
  const lines::BorderPair upright = find_pair(maps, whole, Direction::kAlongRows, tables, search.complete);
  if (!upright.found) return search;
  search.has_lines = true;
  search.corners = intersect({{level.first, level.second, upright.first, upright.second}});
  return search;
}

}  // namespace vantrel::autoclip
