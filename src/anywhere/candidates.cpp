#include "anywhere/candidates.h"

#include <algorithm>
#include <cmath>

#include "anywhere/directions.h"

namespace vantrel::anywhere {
namespace {

/** Opposite sides differ by no more than this, and adjacent ones by no less, in bins of 0.7 degrees. */
constexpr int kMostOpposite = 24;
constexpr int kLeastAdjacent = 92;
/** How far outside the frame a corner may lie, of the frame's size. */
constexpr double kOutside = 0.2;
/** The least share of a side that lies on edges, and what a side of the frame counts for. */
constexpr double kLeastShare = 0.18;
constexpr double kFrameShare = 0.35;
constexpr int kMostFrameSides = 2;
/** Corners nearer than this are the same, in pixels of the copy. */
constexpr double kSamePlace = 2.5;
/** So many of one size are kept: the tiles of a pattern must not crowd out the card that lies on it. */
constexpr std::ptrdiff_t kMostAlike = 100;
/** Pairs of lines that are looked at; beyond it the picture is full of lines and the first are the strongest. */
constexpr int kPoolSize = 1024;

/** Where each line crosses each other one, as a place along the first. */
class Crossings {
 public:
  Crossings(const Lines& lines, int rows, int cols)
      : count_(static_cast<std::size_t>(lines.count)), cells_(count_ * count_) {
    if (!cells_.ready()) return;
    const double beside = kOutside * cols, above = kOutside * rows;
    for (std::size_t i = 0; i < count_; ++i) {
      for (std::size_t j = 0; j < count_; ++j) {
        Cell& cell = cells_[i * count_ + j];
        cell.valid = false;
        if (between(lines.lines[i].direction, lines.lines[j].direction) < kLeastAdjacent) continue;
        // As they do so far from parallel.
        Point at{};
        intersect(lines.lines[i].line, lines.lines[j].line, at);
        cell.valid = at.x >= -beside && at.y >= -above && at.x <= cols + beside && at.y <= rows + above;
        cell.at = at;
        cell.place = lines.lines[i].place(at);
      }
    }
  }

  bool ready() const { return cells_.ready(); }
  bool valid(int i, int j) const { return cell(i, j).valid; }
  double place(int along, int other) const { return cell(along, other).place; }
  Point at(int i, int j) const { return cell(std::min(i, j), std::max(i, j)).at; }

 private:
  struct Cell {
    Point at;
    double place;
    bool valid;
  };
  const Cell& cell(int i, int j) const {
    return cells_[static_cast<std::size_t>(i) * count_ + static_cast<std::size_t>(j)];
  }

  std::size_t count_;
  image::WorkArray<Cell> cells_;
};

/** A line that crosses two others, and the share of it between them that lies on edges. */
struct Rung {
  int line;
  double share;
  double overrun;
};

/** The best quadrilaterals so far: a heap, the least plausible first. */
class Pool {
 public:
  explicit Pool(std::size_t size) : items_(size) {}

  bool ready() const { return items_.ready(); }
  /** What is to be added has to be more plausible than this. */
  double least() const { return count_ < items_.size() ? -1e9 : items_[0].plausibility; }
  void add(const Candidate& candidate) {
    if (count_ == items_.size()) {
      std::pop_heap(items_.get(), items_.get() + count_, more_plausible);
      --count_;
    }
    items_[count_++] = candidate;
    std::push_heap(items_.get(), items_.get() + count_, more_plausible);
  }
  std::span<Candidate> sorted() {
    std::sort(items_.get(), items_.get() + count_, more_plausible);
    return items_.all().first(count_);
  }

 private:
  // Lines are numbered by their strength: ties go to the stronger ones, and the order never depends on the sort.
  static bool more_plausible(const Candidate& a, const Candidate& b) {
    if (a.plausibility != b.plausibility) return a.plausibility > b.plausibility;
    return a.lines < b.lines;
  }

  std::size_t count_ = 0;
  image::WorkArray<Candidate> items_;
};

/** Looks through the quadrilaterals of four lines. */
class Search {
 public:
  Search(const Lines& lines, const Crossings& crossings, Pool& pool)
      : lines_(lines), crossings_(crossings), pool_(pool) {}

  void run() {
    for (int first = 0; first < lines_.count; ++first) {
      for (int second = first + 1; second < lines_.count; ++second)
        if (are_opposite(first, second)) look_between(first, second);
    }
  }

 private:
  bool are_opposite(int i, int j) const {
    return between(lines_.lines[static_cast<std::size_t>(i)].direction,
                   lines_.lines[static_cast<std::size_t>(j)].direction) <= kMostOpposite;
  }
  bool is_frame(int i) const { return lines_.lines[static_cast<std::size_t>(i)].is_frame; }

  /** Whether two lines meet each other between two others, which they cross: the corners would make a bow. */
  bool cross_between(int one, int other, int from, int to) const {
    const Point ways[] = {lines_.lines[static_cast<std::size_t>(one)].way,
                          lines_.lines[static_cast<std::size_t>(other)].way};
    const double a = crossings_.place(one, to) - crossings_.place(one, from);
    const double b = crossings_.place(other, to) - crossings_.place(other, from);
    return (a > 0) != (dot(ways[0], ways[1]) > 0 ? b > 0 : b < 0);
  }

  /** What a line's stretch between two others is worth. */
  Rung measure(int line, int from, int to) const {
    const double a = crossings_.place(line, from), b = crossings_.place(line, to);
    const double low = std::min(a, b), high = std::max(a, b), size = high - low;
    if (size < kShortestSide) return {line, -1.0, 0.0};
    if (is_frame(line)) return {line, kFrameShare, 0.0};
    // A border ends at its corners; what runs on beyond them is a line of text or a table's edge.
    const double beyond = std::min(size / 4, 20.0);
    const double overrun =
        lines_.support.share(line, low - beyond, low - 2) + lines_.support.share(line, high + 2, high + beyond);
    return {line, lines_.support.share(line, low, high), overrun / 2};
  }

  void look_between(int first, int second) {
    int count = 0;
    for (int line = 0; line < lines_.count; ++line) {
      // Each quadrilateral is met twice, once with either pair: kept is the one whose first line is the strongest.
      if (line <= first || !crossings_.valid(line, first) || !crossings_.valid(line, second)) continue;
      const Rung rung = measure(line, first, second);
      if (rung.share >= kLeastShare) rungs_[static_cast<std::size_t>(count++)] = rung;
    }
    for (int i = 0; i < count; ++i) {
      for (int j = i + 1; j < count; ++j)
        weigh(first, second, rungs_[static_cast<std::size_t>(i)], rungs_[static_cast<std::size_t>(j)]);
    }
  }

  void weigh(int first, int second, const Rung& third, const Rung& fourth) {
    if (!are_opposite(third.line, fourth.line)) return;
    if (is_frame(first) + is_frame(second) + is_frame(third.line) + is_frame(fourth.line) > kMostFrameSides) return;
    if (cross_between(first, second, third.line, fourth.line)) return;
    if (cross_between(third.line, fourth.line, first, second)) return;
    const Rung one = measure(first, third.line, fourth.line);
    if (one.share < kLeastShare) return;
    const Rung two = measure(second, third.line, fourth.line);
    if (two.share < kLeastShare) return;
    const double mean = (one.share + two.share + third.share + fourth.share) / 4;
    const double least = std::min({one.share, two.share, third.share, fourth.share});
    const double overrun = (one.overrun + two.overrun + third.overrun + fourth.overrun) / 4;
    const double plausibility = mean + 0.5 * least - 0.5 * overrun;
    if (plausibility <= pool_.least()) return;
    keep(first, third.line, second, fourth.line, plausibility);
  }

  void keep(int a, int b, int c, int d, double plausibility) {
    Candidate candidate;
    candidate.quad.corners = {crossings_.at(a, b), crossings_.at(b, c), crossings_.at(c, d), crossings_.at(d, a)};
    // Side i runs from corner i on.
    candidate.lines = {b, c, d, a};
    if (area(candidate.quad) < 0) {
      std::swap(candidate.quad.corners[1], candidate.quad.corners[3]);
      std::reverse(candidate.lines.begin(), candidate.lines.end());
    }
    candidate.plausibility = plausibility;
    pool_.add(candidate);
  }

  const Lines& lines_;
  const Crossings& crossings_;
  Pool& pool_;
  std::array<Rung, kMostLines> rungs_{};
};

}  // namespace

bool Candidates::has(const Quad& quad, double same_place) const {
  const auto same = [&](const Candidate& other) { return nearly_same(quad, other.quad, same_place); };
  const auto before = all();
  return std::any_of(before.begin(), before.end(), same);
}

void Candidates::add(const Candidate& candidate, double same_place) {
  if (count_ < items_.size() && !has(candidate.quad, same_place)) items_[count_++] = candidate;
}

bool add_line_candidates(const Lines& lines, int rows, int cols, std::size_t most, Candidates& candidates) {
  const Crossings crossings(lines, rows, cols);
  Pool pool(kPoolSize);
  if (!crossings.ready() || !pool.ready()) return false;
  Search(lines, crossings, pool).run();
  for (const Candidate& candidate : pool.sorted()) {
    if (candidates.count() == most) break;
    const auto alike = [&](const Candidate& other) { return alike_in_size(candidate.quad, other.quad); };
    const auto before = candidates.all();
    if (std::count_if(before.begin(), before.end(), alike) < kMostAlike) candidates.add(candidate, kSamePlace);
  }
  return true;
}

}  // namespace vantrel::anywhere
