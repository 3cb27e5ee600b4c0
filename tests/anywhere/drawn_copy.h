/**
 * @file drawn_copy.h
 * @brief Copies and edges that a test writes down, without a scan.
 */
#ifndef VANTREL_TESTS_ANYWHERE_DRAWN_COPY_H
#define VANTREL_TESTS_ANYWHERE_DRAWN_COPY_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "anywhere/copy.h"
#include "anywhere/edges.h"
#include "anywhere/quad.h"

namespace support {

/** A copy of one plane; `level(row, col)` is in sixteenths. */
template <class Level>
vantrel::anywhere::Copy copy_with(int rows, int cols, Level level) {
  vantrel::anywhere::Copy copy;
  copy.rows = rows;
  copy.cols = cols;
  copy.plane_count = 1;
  copy.planes[0] = vantrel::image::WorkArray<std::int16_t>(copy.size());
  for (int row = 0; row < rows; ++row)
    for (int col = 0; col < cols; ++col)
      copy.planes[0][copy.index(row, col)] = static_cast<std::int16_t>(level(row, col));
  return copy;
}

/** Edges at these places, as the finder keeps them. */
inline vantrel::anywhere::Edges edges_at(std::vector<vantrel::anywhere::Edge> places, int threshold) {
  vantrel::anywhere::Edges edges;
  edges.threshold = threshold;
  edges.count = places.size();
  edges.places = vantrel::image::WorkArray<vantrel::anywhere::Edge>(places.size());
  std::stable_sort(places.begin(), places.end(), [](const auto& a, const auto& b) {
    return a.direction != b.direction ? a.direction < b.direction : a.y < b.y;
  });
  std::copy(places.begin(), places.end(), edges.places.get());
  for (std::size_t i = 0; i < edges.starts.size(); ++i) {
    const auto before =
        std::count_if(places.begin(), places.end(), [&](const auto& edge) { return edge.direction < i; });
    edges.starts[i] = static_cast<std::uint32_t>(before);
  }
  return edges;
}

/** From a corner to the one across from it. */
inline vantrel::anywhere::Quad upright(double left, double top, double right, double bottom) {
  using vantrel::anywhere::Point;
  return {{Point{left, top}, {right, top}, {right, bottom}, {left, bottom}}};
}

inline std::vector<std::array<double, 2>> corners_of(const vantrel::anywhere::Quad& quad) {
  std::vector<std::array<double, 2>> corners;
  for (const auto& corner : quad.corners) corners.push_back({corner.x, corner.y});
  return corners;
}

/** How far the farthest corner is from the one of the same number. */
inline double worst_corner(const vantrel::anywhere::Quad& quad, const vantrel::anywhere::Quad& truth) {
  using vantrel::anywhere::operator-;
  double worst = 0.0;
  for (std::size_t i = 0; i < 4; ++i) worst = std::max(worst, vantrel::anywhere::length(quad[i] - truth[i]));
  return worst;
}

}  // namespace support

#endif
