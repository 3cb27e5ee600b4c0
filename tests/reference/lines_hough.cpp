#include "reference/lines_hough.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "reference/lines_sobel.h"
#include "support/tally.h"

namespace reference::lines {

namespace {

/** One value for each whole degree. */
std::array<double, 180> table_of(double (*function)(double)) {
  std::array<double, 180> table{};
  for (int t = 0; t < 180; ++t) table.at(static_cast<std::size_t>(t)) = function(t * 0.01745329251994);
  return table;
}

}  // namespace

double sine(int degrees) {
  static const std::array<double, 180> table = table_of(std::sin);
  return table.at(static_cast<std::size_t>(degrees));
}

double cosine(int degrees) {
  static const std::array<double, 180> table = table_of(std::cos);
  return table.at(static_cast<std::size_t>(degrees));
}

namespace {

using Accumulator = std::vector<std::array<double, 180>>;

std::vector<int> degrees(int from, int to) {
  std::vector<int> all;
  for (int t = from; t <= to; ++t) all.push_back(t);
  return all;
}

std::vector<int> degrees(int from, int to, int then_from, int then_to) {
  std::vector<int> all = degrees(from, to);
  for (const int t : degrees(then_from, then_to)) all.push_back(t);
  return all;
}

void centre(Points& points, int rows, int cols) {
  for (Point& point : points) {
    point.row -= static_cast<float>(rows / 2);
    point.col -= static_cast<float>(cols / 2);
  }
}

Accumulator vote(const Points& points, int longest, const std::vector<int>& angles) {
  Accumulator cells(static_cast<std::size_t>(2 * longest), std::array<double, 180>{});
  const auto add = [&cells](int k, int t, double share) {
    if (k < 0 || k >= static_cast<int>(cells.size())) return;
    cells.at(static_cast<std::size_t>(k)).at(static_cast<std::size_t>(t)) += share;
  };
  for (const Point& point : points) {
    const int r = static_cast<int>(point.row);
    const int c = static_cast<int>(point.col);
    for (const int t : angles) {
      const double rho = c * cosine(t) + r * sine(t);
      const double f = std::floor(rho);
      const int k = static_cast<int>(f) + longest;
      add(k, t, f + 1 - rho);
      add(k + 1, t, rho - f);
    }
  }
  return cells;
}

struct Peak {
  double score = 0;
  int k = 0;
  int t = 0;
};

bool near(const Peak& peak, int k, int t) {
  return peak.k - 10 < k && k < peak.k + 10 && peak.t - 2 < t && t < peak.t + 2;
}

/** The strongest cell over the angles, the first of equals; with `apart`, outside the neighbourhood of that peak. */
Peak strongest(const Accumulator& cells, const std::vector<int>& angles, const Peak* apart) {
  Peak best;
  for (int k = 0; k < static_cast<int>(cells.size()); ++k) {
    for (const int t : angles) {
      if (apart != nullptr && near(*apart, k, t)) continue;
      const double score = cells.at(static_cast<std::size_t>(k)).at(static_cast<std::size_t>(t));
      if (score > best.score) best = {score, k, t};
    }
  }
  return best;
}

double distance_of(const Peak& peak, int rows, int cols) {
  return (peak.k - std::max(rows, cols)) + (rows / 2) * sine(peak.t) + (cols / 2) * cosine(peak.t);
}

int position_of(double distance) { return std::abs(static_cast<int>(distance)); }

double as_single(double value) { return static_cast<double>(static_cast<float>(value)); }

void write_normal(const Peak& peak, Line& line) {
  line.a = peak.t == 90 ? 0.0 : as_single(cosine(peak.t));
  line.b = peak.t == 0 ? 0.0 : as_single(sine(peak.t));
}

void write_distance(const Peak& peak, int rows, int cols, Line& line) {
  line.c = as_single(distance_of(peak, rows, cols));
}

Line line_of(const Peak& peak, int rows, int cols) {
  Line line;
  write_normal(peak, line);
  write_distance(peak, rows, cols, line);
  return line;
}

int longest_side(const Picture& picture) { return std::max(picture.rows, picture.cols); }

}  // namespace

int two_lines(Points& points, int rows, int cols, int dir_class, std::array<Line, 4>& lines) {
  if (points.size() < 2) return 0;
  centre(points, rows, cols);
  if (dir_class != 0 && dir_class != 2) return 1;
  const bool horizontal = dir_class == 0;
  const Accumulator cells =
      vote(points, std::max(rows, cols), horizontal ? degrees(70, 109) : degrees(150, 179, 0, 29));
  const Peak first = strongest(cells, horizontal ? degrees(70, 109) : degrees(150, 179), nullptr);
  const Peak second = strongest(cells, horizontal ? degrees(70, 109) : degrees(0, 29), &first);
  if (second.score < (horizontal ? cols / 4 : rows / 5)) {
    support::tally::count(horizontal ? "two lines: too few horizontal" : "two lines: too few vertical");
    return 0;
  }
  support::tally::count(horizontal ? "two lines: horizontal" : "two lines: vertical");
  if (!horizontal && first.score < second.score) support::tally::count("two lines: weaker first vertical");
  lines.at(horizontal ? 0 : 2) = line_of(first, rows, cols);
  lines.at(horizontal ? 1 : 3) = line_of(second, rows, cols);
  return 1;
}

namespace {

std::string on_side(const Scene& scene, const std::string& what) {
  return what + " on side " + std::to_string(scene.side);
}

bool passes_brightness(const Scene& scene, int at) {
  if (scene.wb_class == 0) return true;
  int found = 0;
  if (scene.side == 0)
    found = brightness(scene.gray, at, scene.gray.rows, 0, scene.gray.cols);
  else if (scene.side == 1)
    found = brightness(scene.gray, 0, at, 0, scene.gray.cols);
  else
    return true;
  support::tally::count(on_side(scene, found != scene.wb_class ? "brightness passes" : "brightness fails"));
  return found != scene.wb_class;
}

bool told_darkness(const Scene& scene, bool passes) {
  support::tally::count(on_side(scene, passes ? "darkness passes" : "darkness fails"));
  return passes;
}

/** For horizontal lines: the rows beyond. */
bool passes_darkness(const Scene& scene, int at) {
  const int rows = scene.gray.rows;
  const int cols = scene.gray.cols;
  if (scene.side == 1 && at > 0) return told_darkness(scene, dark(scene.gray, 0, at, 0, cols));
  if (scene.side == 0 && at < rows - 1) return told_darkness(scene, dark(scene.gray, at, rows, 0, cols));
  support::tally::count(on_side(scene, "darkness not asked"));
  return true;
}

/** For vertical lines: the columns beyond. */
bool passes_column_darkness(const Scene& scene, int at) {
  const int rows = scene.gray.rows;
  const int cols = scene.gray.cols;
  if (scene.side == 2 && at > 0) return told_darkness(scene, dark(scene.gray, 0, rows, 0, at));
  if (scene.side == 3 && at < cols - 1) return told_darkness(scene, dark(scene.gray, 0, rows, at, cols));
  support::tally::count(on_side(scene, "darkness not asked"));
  return true;
}

bool passes_components(const Scene& scene, int at) {
  const int rows = scene.gray.rows;
  const int cols = scene.gray.cols;
  return verify_v2(scene.characters, at, rows, cols, scene.side) && verify_v3(scene.characters, at, rows, cols);
}

bool hugs_edge(const Peak& first, int first_at, int second_at, int rows, int cols) {
  if (first.t != 90 || !(first.score * 100 > cols * 95)) return false;
  return (first_at <= 3 && second_at > 8) || (first_at > rows - 4 && second_at < rows - 8);
}

int horizontal_line(const Scene& scene, const Accumulator& cells, Line& line) {
  const int rows = scene.gray.rows;
  const int cols = scene.gray.cols;
  const Peak first = strongest(cells, degrees(75, 104), nullptr);
  const Peak second = strongest(cells, degrees(75, 104), &first);
  if (cols / 4 > first.score) return 0;
  const int first_at = position_of(distance_of(first, rows, cols));
  if (cols / 4 > second.score) {
    support::tally::count(on_side(scene, "one clear line"));
    write_normal(first, line);
    if (!passes_brightness(scene, first_at) || !passes_darkness(scene, first_at)) return 0;
    if (!passes_components(scene, first_at)) return 0;
    write_distance(first, rows, cols, line);
    return 1;
  }
  const int second_at = position_of(distance_of(second, rows, cols));
  const bool border = hugs_edge(first, first_at, second_at, rows, cols);
  if (border) support::tally::count(on_side(scene, "border flag"));
  if (2 * second.score > first.score && (border || verify_v0(scene.edge, first_at, second_at, scene.side))) {
    support::tally::count(on_side(scene, "runner-up taken"));
    line = line_of(second, rows, cols);
    const int at = position_of(line.c);
    return passes_darkness(scene, at) && passes_components(scene, at) ? 2 : 0;
  }
  support::tally::count(on_side(scene, "strongest of two taken"));
  if (!passes_brightness(scene, first_at) || !passes_darkness(scene, first_at)) return 0;
  if (!passes_components(scene, first_at)) return 0;
  line = line_of(first, rows, cols);
  return 2;
}

int vertical_line(const Scene& scene, const Accumulator& cells, Line& line) {
  const int rows = scene.gray.rows;
  const int cols = scene.gray.cols;
  const Peak first = strongest(cells, degrees(0, 19, 161, 179), nullptr);
  if (rows * 4 > first.score * 9) return 0;
  const int at = position_of(distance_of(first, rows, cols));
  if (!verify_h0(scene.characters, at, rows, cols, scene.side)) return 0;
  if (!passes_column_darkness(scene, at)) return 0;
  line = line_of(first, rows, cols);
  return 2;
}

/** Level lines: the distance is that of the tilted peak. */
Line level_line_of(const Peak& peak, int rows, int cols) {
  return {0.0, 1.0, as_single(distance_of(peak, rows, cols))};
}

bool passes_level_tests(const Scene& scene, int at) {
  return passes_darkness(scene, at) && verify_v3_orva(scene.characters, at, scene.gray.rows, scene.gray.cols);
}

bool takes_level_runner_up(const Scene& scene, const Peak& first, const Peak& second) {
  const int rows = scene.gray.rows;
  const int cols = scene.gray.cols;
  const int first_at = position_of(distance_of(first, rows, cols));
  const int second_at = position_of(distance_of(second, rows, cols));
  if (!(2 * second.score > first.score)) return false;
  if (first_at <= 9) {
    support::tally::count("level: runner-up, first within 9");
    return true;
  }
  if (scene.side == 1 && first_at > 2 * second_at) {
    support::tally::count("level: runner-up at less than half");
    return true;
  }
  if (hugs_edge(first, first_at, second_at, rows, cols)) {
    support::tally::count("level: runner-up, first hugs the edge");
    return true;
  }
  return verify_v0(scene.edge, first_at, second_at, scene.side);
}

int level_horizontal_line(const Scene& scene, const Accumulator& cells, Line& line) {
  const int rows = scene.gray.rows;
  const int cols = scene.gray.cols;
  const int least = scene.side == 0 ? cols / 4 : cols / 5;
  const Peak first = strongest(cells, degrees(75, 104), nullptr);
  const Peak second = strongest(cells, degrees(75, 104), &first);
  if (least > first.score) return 0;
  const int first_at = position_of(distance_of(first, rows, cols));
  if (least > second.score) {
    line.a = 0.0;
    line.b = 1.0;
    if (!passes_level_tests(scene, first_at)) return 0;
    line.c = as_single(distance_of(first, rows, cols));
    return 1;
  }
  if (takes_level_runner_up(scene, first, second)) {
    support::tally::count(on_side(scene, "level: runner-up taken"));
    line = level_line_of(second, rows, cols);
    return passes_level_tests(scene, position_of(line.c)) ? 2 : 0;
  }
  support::tally::count(on_side(scene, "level: strongest of two taken"));
  if (!passes_level_tests(scene, first_at)) return 0;
  line = level_line_of(first, rows, cols);
  return 2;
}

using Acceptance = int (*)(const Scene&, const Accumulator&, Line&);

int search(const Scene& scene, Points& points, Line& line, const char* name, Acceptance horizontal) {
  if (points.size() < 50) return 0;
  centre(points, scene.gray.rows, scene.gray.cols);
  if (scene.dir_class != 0 && scene.dir_class != 2) return 2;
  const int longest = longest_side(scene.gray);
  int result = 0;
  if (scene.dir_class == 0) {
    result = horizontal(scene, vote(points, longest, degrees(75, 104)), line);
  } else {
    result = vertical_line(scene, vote(points, longest, degrees(160, 179, 0, 19)), line);
  }
  support::tally::count(on_side(scene, name + (" gives " + std::to_string(result))));
  return result;
}

}  // namespace

int side_line(const Scene& scene, Points& points, Line& line) {
  return search(scene, points, line, "search", horizontal_line);
}

int level_side_line(const Scene& scene, Points& points, Line& line) {
  return search(scene, points, line, "level search", level_horizontal_line);
}

}  // namespace reference::lines
