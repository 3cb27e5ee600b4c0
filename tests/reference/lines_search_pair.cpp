#include "reference/lines_search_pair.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "components/exports.h"

namespace reference::lines {
namespace {

struct Tables {
  std::array<double, 180> sine{};
  std::array<double, 180> cosine{};
  Tables() {
    for (int t = 0; t < 180; ++t) {
      sine.at(static_cast<std::size_t>(t)) = lines::sine(t);
      cosine.at(static_cast<std::size_t>(t)) = lines::cosine(t);
    }
  }
};

std::vector<typePoint> library_points(const Points& points) {
  std::vector<typePoint> all;
  for (const auto& point : points) all.push_back({point.row, point.col});
  return all;
}

void expect_same_points(const Points& expected, const std::vector<typePoint>& actual) {
  for (std::size_t i = 0; i < expected.size(); ++i) {
    ASSERT_EQ(expected.at(i).row, actual.at(i).row);
    ASSERT_EQ(expected.at(i).col, actual.at(i).col);
  }
}

/** The slots of the four sides before a search: what is not written must stay. */
std::array<Line, 4> untouched() { return {{{9, 8, 7}, {6, 5, 4}, {3, 2, 1}, {-1, -2, -3}}}; }

struct LibraryLines {
  std::array<double, 8> normal{};
  std::array<double, 4> distance{};
  LibraryLines() {
    const std::array<Line, 4> lines = untouched();
    for (std::size_t side = 0; side < 4; ++side) {
      normal.at(2 * side) = lines.at(side).a;
      normal.at(2 * side + 1) = lines.at(side).b;
      distance.at(side) = lines.at(side).c;
    }
  }
  void expect(const std::array<Line, 4>& lines) const {
    for (std::size_t side = 0; side < 4; ++side) {
      ASSERT_EQ(lines.at(side).a, normal.at(2 * side)) << "side " << side;
      ASSERT_EQ(lines.at(side).b, normal.at(2 * side + 1)) << "side " << side;
      ASSERT_EQ(lines.at(side).c, distance.at(side)) << "side " << side;
    }
  }
};

/** A straight line of exactly `count` points, at row (or column) `at`. */
void lay_line(Points& points, int at, int count, int longest, bool horizontal) {
  for (int i = 0; i < std::min(count, longest); ++i) {
    points.push_back({static_cast<float>(horizontal ? at : i), static_cast<float>(horizontal ? i : at)});
  }
}

/** Two exactly level (or upright) lines whose points are as many as a threshold, one more or one less. */
Points lines_at_thresholds(Random& random, int rows, int cols, int side) {
  const bool horizontal = side < 2;
  const int longest = horizontal ? cols : rows;
  const int across = horizontal ? rows : cols;
  const int around = random.pick(-1, 1);
  const std::array<int, 4> counts{longest / 4, longest / 5, 4 * longest / 9, random.pick(longest / 4, longest)};
  const int first_count = counts.at(random.bits() % counts.size()) + (random.chance(50) ? around : 0);
  const int second_count = random.chance(50) ? first_count / 2 + around : longest / 4 + around;
  const int second = random.pick(1, (across - 1) / 2);
  const int first =
      random.chance(50) ? std::min(2 * second + random.pick(0, 1), across - 1) : random.pick(0, across - 1);
  Points points;
  lay_line(points, first, first_count, longest, horizontal);
  lay_line(points, second, std::max(second_count, 0), longest, horizontal);
  while (points.size() < 50) {  // strays, on neither line
    const auto stray = static_cast<float>(random.pick(0, across - 1));
    const auto along = static_cast<float>(random.pick(0, longest - 1));
    if (static_cast<int>(stray) == first || static_cast<int>(stray) == second) continue;
    points.push_back(horizontal ? Point{stray, along} : Point{along, stray});
  }
  return points;
}

/** Levels in blocks of rows and columns, mostly dark, so that the brightness tests fall both ways. */
Picture random_levels(Random& random, int rows, int cols) {
  Picture gray(cols, rows, 8, 0);
  const std::array<int, 3> levels{random.pick(0, 255), random.pick(0, 120), random.pick(150, 255)};
  const int row_step = random.pick(1, rows);
  const int col_step = random.pick(1, cols);
  for (int row = 0; row < rows; ++row) {
    for (int byte = 0; byte < gray.stride(); ++byte) {
      const int block = row / row_step + byte / col_step;
      gray.at(row, byte) = static_cast<unsigned char>(levels.at(static_cast<std::size_t>(block % 3)));
    }
  }
  return gray;
}

/** An edge map that holds the points and some noise. */
Picture edge_of(const Points& points, Random& random, int rows, int cols) {
  Picture edge(cols, rows, 8, 255);
  for (const auto& point : points) edge.at(static_cast<int>(point.row), static_cast<int>(point.col)) = 0;
  for (int stray = random.pick(0, rows * cols / 20); stray > 0 && random.chance(98); --stray) {
    edge.at(random.pick(0, rows - 1), random.pick(0, cols - 1)) = 0;
  }
  return edge;
}

/** A level line over the whole width at the image's rim, and a second one further in, sometimes a little tilted. */
Points rim_and_second(Random& random, int rows, int cols) {
  Points points;
  const bool low = random.chance(50);
  const int from_rim = random.pick(0, 4);
  const bool tilted = random.chance(50);
  const double second = tilted ? random.pick(6, 11) : random.pick(5, 30);
  const double slope = tilted ? std::tan(random.pick(-4, 4) * 0.01745329251994) : 0;
  const auto row_at = [&](double distance) {
    const int row = static_cast<int>(std::lround(distance));
    return static_cast<float>(std::clamp(low ? row : rows - 1 - row, 0, rows - 1));
  };
  for (int col = 0; col < cols; ++col) {
    points.push_back({row_at(from_rim), static_cast<float>(col)});
    if (random.chance(90)) points.push_back({row_at(second + slope * col), static_cast<float>(col)});
  }
  return points;
}

}  // namespace

Points random_points(Random& random, int rows, int cols, bool horizontal) {
  Points points;
  const int longest = horizontal ? cols : rows;
  const int across = horizontal ? rows : cols;
  for (int line = random.pick(0, 3); line > 0; --line) {
    const double start = random.pick(0, across - 1);
    const double slope = random.chance(40) ? 0 : random.real(-0.45, 0.45);
    const int kept = random.pick(20, 100);
    for (int i = 0; i < longest; ++i) {
      const int j = static_cast<int>(start + slope * i);
      if (j < 0 || j >= across || !random.chance(kept)) continue;
      points.push_back({static_cast<float>(horizontal ? j : i), static_cast<float>(horizontal ? i : j)});
    }
  }
  for (int stray = random.pick(0, 20); stray > 0; --stray) {
    points.push_back({static_cast<float>(random.pick(0, rows - 1)), static_cast<float>(random.pick(0, cols - 1))});
  }
  if (random.chance(10)) {
    for (auto& point : points) point.row += 0.5f, point.col += 0.25f;
  }
  return points;
}

Points points_of_any_kind(Random& random, int rows, int cols, int side, int dir_class) {
  const int kind = random.pick(0, 99);
  if (kind < 15 && side < 2) return rim_and_second(random, rows, cols);
  if (kind < 30 && rows > 40 && cols > 40) return lines_at_thresholds(random, rows, cols, side);
  return random_points(random, rows, cols, dir_class == 0);
}

Sight any_sight(Random& random, const Points& points, int rows, int cols) {
  Sight sight{random_levels(random, rows, cols), edge_of(points, random, rows, cols), {}};
  sight.characters = components::by_runs(sight.edge);
  return sight;
}

void compare_search(LibrarySearch library, PlainSearch plain, Sight& sight, components::BlockList& list, Points points,
                    int side, int dir_class, int wb_class) {
  static Tables tables;
  std::vector<typePoint> given = library_points(points);
  std::array<Line, 4> expected = untouched();
  LibraryLines actual;
  const Scene scene{sight.gray, sight.edge, sight.characters, side, dir_class, wb_class};
  const int code =
      library(sight.gray.bytes.data(), list.line(), sight.edge.bytes.data(), actual.normal.data(),
              actual.distance.data(), given.data(), sight.gray.rows, sight.gray.cols, static_cast<int>(given.size()),
              dir_class, tables.sine.data(), tables.cosine.data(), side, static_cast<short>(wb_class));
  ASSERT_EQ(code, plain(scene, points, expected.at(static_cast<std::size_t>(side))));
  actual.expect(expected);
  expect_same_points(points, given);
}

void compare_two_lines(Points points, int rows, int cols, int dir_class) {
  static Tables tables;
  std::vector<typePoint> given = library_points(points);
  std::array<Line, 4> expected = untouched();
  LibraryLines actual;
  const int code =
      Compute_Hough_Angle(actual.normal.data(), actual.distance.data(), given.data(), rows, cols,
                          static_cast<int>(given.size()), dir_class, tables.sine.data(), tables.cosine.data());
  ASSERT_EQ(code, two_lines(points, rows, cols, dir_class, expected));
  actual.expect(expected);
  expect_same_points(points, given);
}

void compare_on_any_points(LibrarySearch library, PlainSearch plain, Random& random) {
  const int rows = random.pick(1, 110);
  const int cols = random.pick(1, 110);
  const int side = random.pick(0, 3);
  const int dir_class = random.chance(3) ? random.pick(0, 4) : (side < 2 ? 0 : 2);
  const Points points = points_of_any_kind(random, rows, cols, side, dir_class);
  Sight sight = any_sight(random, points, rows, cols);
  components::BlockList list;
  Gray2Bin(sight.edge.bytes.data(), *list, rows, cols);
  compare_search(library, plain, sight, list, points, side, dir_class, random.pick(0, 2));
}

}  // namespace reference::lines
