#include "anywhere/lines.h"

#include <cmath>

#include "anywhere/axis.h"
#include "anywhere/directions.h"
#include "anywhere/vote.h"

namespace vantrel::anywhere {
namespace {

/** How far an edge may lie from a line that it supports, in pixels of the copy, first and once the line is fitted. */
constexpr double kRoughReach = 2.0;
constexpr double kFineReach = 1.5;
/** And how far its direction may be from the line's, in bins of 0.7 degrees. */
constexpr int kTurn = 16;

/** A line that fewer pixels of edges support is not worth a candidate. */
constexpr int kLeastSupport = 8;
/** Gaps in a line's support that are closed, and runs that are dropped, in pixels. */
constexpr int kClosedGap = 3;
constexpr int kLeastRun = 6;

SupportedLine supported(const NormalLine& line) {
  // The normal points down, so that places along the line count from -rows on; a level one points to the right already.
  const bool up = line.normal.y < 0.0;
  SupportedLine result;
  result.line = up ? NormalLine{line.normal * -1.0, -line.offset} : line;
  result.way = {result.line.normal.y, -result.line.normal.x};
  result.direction = direction_of(line.normal.x, line.normal.y);
  return result;
}

bool lies_on(const Edge& edge, const SupportedLine& line, double reach) {
  return std::abs(line.line.distance({edge.x, edge.y})) <= reach;
}

/** The line fitted again to the edges that support it. */
bool refit(const Edges& edges, double reach, SupportedLine& line) {
  Moments moments;
  edges.for_each_near(line.direction, kTurn, [&](const Edge& edge) {
    if (lies_on(edge, line, reach)) moments.add({edge.x, edge.y});
  });
  NormalLine fitted;
  if (!principal_axis(moments, fitted)) return false;
  const int votes = line.votes;
  line = supported(fitted);
  line.votes = votes;
  return true;
}

/** Closes the short gaps of a line of marks, then drops what is left of short runs. */
void tidy_runs(std::span<std::uint16_t> marks) {
  const auto change_runs = [&](std::uint16_t value, std::size_t shorter_than, bool at_ends) {
    std::size_t start = 0;
    for (std::size_t i = 0; i <= marks.size(); ++i) {
      if (i < marks.size() && marks[i] == value) continue;
      const bool inside = start > 0 && i < marks.size();
      if (i - start < shorter_than && (inside || at_ends)) {
        std::fill(marks.begin() + static_cast<std::ptrdiff_t>(start), marks.begin() + static_cast<std::ptrdiff_t>(i),
                  static_cast<std::uint16_t>(1 - value));
      }
      start = i + 1;
    }
  };
  change_runs(0, kClosedGap + 1, false);
  change_runs(1, kLeastRun, true);
}

/** Marks where a line lies on edges, and leaves the running sums of the marks. */
void measure_support(const Edges& edges, const SupportedLine& line, int number, Support& support) {
  const std::span<std::uint16_t> marks = support.of(number);
  std::fill(marks.begin(), marks.end(), std::uint16_t{0});
  edges.for_each_near(line.direction, kTurn, [&](const Edge& edge) {
    if (lies_on(edge, line, kFineReach))
      marks[static_cast<std::size_t>(support.cell(line.place({edge.x, edge.y})))] = 1;
  });
  tidy_runs(marks);
  std::uint16_t sum = 0;
  for (std::uint16_t& mark : marks) mark = sum = static_cast<std::uint16_t>(sum + mark);
}

/** Which edges have been taken by a line: their votes count no more. */
class Taken {
 public:
  explicit Taken(const Edges& edges) : edges_(edges), marks_(edges.count, image::Fill::kZero) {}

  bool ready() const { return marks_.ready(); }
  /** Takes the edges on a line. */
  void take(const SupportedLine& line, double reach, Vote& vote) {
    edges_.for_each_near(line.direction, kTurn, [&](const Edge& edge) {
      bool& mark = marks_[static_cast<std::size_t>(&edge - edges_.places.get())];
      if (mark || !lies_on(edge, line, reach)) return;
      mark = true;
      vote.remove(edge, edges_.threshold);
    });
  }

 private:
  const Edges& edges_;
  image::WorkArray<bool> marks_;
};

void add_frame(int rows, int cols, Lines& lines) {
  const std::array<NormalLine, 4> sides = {NormalLine{{0.0, 1.0}, 0.0}, NormalLine{{1.0, 0.0}, double(cols)},
                                           NormalLine{{0.0, 1.0}, double(rows)}, NormalLine{{1.0, 0.0}, 0.0}};
  for (const NormalLine& side : sides) {
    SupportedLine& line = lines.lines[static_cast<std::size_t>(lines.count)];
    line = supported(side);
    line.is_frame = true;
    // No edge is seen on the frame: its sums stay 0, and who asks decides what a frame is worth.
    const std::span<std::uint16_t> sums = lines.support.of(lines.count);
    std::fill(sums.begin(), sums.end(), std::uint16_t{0});
    ++lines.count;
  }
}

}  // namespace

Support::Support(int rows, int cols)
    : first_(std::max(rows, cols) + 2),
      length_(first_ + static_cast<int>(std::sqrt(double(rows) * rows + double(cols) * cols)) + 4),
      sums_(static_cast<std::size_t>(kMostLines) * static_cast<std::size_t>(length_)) {}

Lines find_lines(const Edges& edges, int rows, int cols) {
  Lines lines(rows, cols);
  Vote vote(rows, cols);
  Taken taken(edges);
  if (!lines.support.ready() || !vote.ready() || !taken.ready()) return lines;
  for (const Edge& edge : edges.all()) vote.add(edge, edges.threshold);
  // A peak takes its voters with it, two at least, so this ends; the bound is for pictures full of noise.
  for (int tries = 0; lines.count < kMostEdgeLines && tries < 2 * kMostEdgeLines; ++tries) {
    const geometry::Peak<int> peak = vote.peak();
    if (peak.votes < kLeastSupport * 2 * Vote::kReach) break;
    SupportedLine voted = supported({kNormals[static_cast<std::size_t>(peak.angle)], vote.distance(peak.distance)});
    voted.votes = peak.votes;
    SupportedLine line = voted;
    if (!refit(edges, kRoughReach, line) || !refit(edges, kFineReach, line)) line = voted;
    // Also what voted for the peak and is not near the fitted line: it would only vote for the same again.
    taken.take(line, kFineReach, vote);
    taken.take(voted, 1.0, vote);
    lines.lines[static_cast<std::size_t>(lines.count)] = line;
    measure_support(edges, line, lines.count, lines.support);
    if (lines.support.of(lines.count).back() >= kLeastSupport) ++lines.count;
  }
  add_frame(rows, cols, lines);
  lines.done = true;
  return lines;
}

}  // namespace vantrel::anywhere
