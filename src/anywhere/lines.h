/**
 * @file lines.h
 * @brief Straight lines through the edges of a copy, and how much of each lies on edges.
 */
#ifndef VANTREL_ANYWHERE_LINES_H
#define VANTREL_ANYWHERE_LINES_H

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "anywhere/edges.h"
#include "anywhere/quad.h"
#include "image/work_array.h"

namespace vantrel::anywhere {

/** Lines through edges, and with the sides of the frame. */
inline constexpr int kMostEdgeLines = 130;
inline constexpr int kMostLines = kMostEdgeLines + 4;

/** A line with the support that it has along itself. */
struct SupportedLine {
  NormalLine line;
  Point way;         /**< along the line, of length 1: the normal turned by a quarter clockwise */
  int direction = 0; /**< of the normal, as a bin of directions.h */
  bool is_frame = false;
  int votes = 0;

  /** Where along the line a point beside it lies. */
  double place(Point p) const { return dot(way, p); }
};

/**
 * For each line, how many whole pixels along it up to a place lie on edges. Places are counted from `first`, the least
 * that a point of the copy has.
 */
class Support {
 public:
  Support() = default;
  Support(int rows, int cols);

  bool ready() const { return sums_.ready(); }
  std::span<std::uint16_t> of(int line) {
    return sums_.all().subspan(static_cast<std::size_t>(line) * static_cast<std::size_t>(length_),
                               static_cast<std::size_t>(length_));
  }
  int length() const { return length_; }
  int cell(double place) const { return std::clamp(static_cast<int>(place) + first_, 0, length_ - 1); }
  /** How many of the pixels from one place to another, the lesser first, lie on edges. */
  int count(int line, double from, double to) const {
    const std::uint16_t* sums = sums_.get() + static_cast<std::size_t>(line) * static_cast<std::size_t>(length_);
    return sums[cell(to)] - sums[cell(from)];
  }
  /** The share of them, 0 to 1. */
  double share(int line, double from, double to) const {
    return to - from < 1.0 ? 0.0 : std::min(1.0, count(line, from, to) / (to - from));
  }

 private:
  int first_ = 0;
  int length_ = 0;
  image::WorkArray<std::uint16_t> sums_;
};

/** The lines of a copy, the most voted first; the last four are the sides of the frame: top, right, bottom, left. */
struct Lines {
  Lines() = default;
  Lines(int rows, int cols) : support(rows, cols) {}

  bool done = false; /**< false: there was no memory */
  int count = 0;
  std::array<SupportedLine, kMostLines> lines{};
  Support support;

  std::span<const SupportedLine> all() const { return {lines.data(), static_cast<std::size_t>(count)}; }
  int edge_lines() const { return count - 4; }
};

/** Takes the most voted lines one after another, each with the edges that lie on it. */
Lines find_lines(const Edges& edges, int rows, int cols);

}  // namespace vantrel::anywhere

#endif
