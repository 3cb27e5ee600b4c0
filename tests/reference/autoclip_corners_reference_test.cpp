/** Corner geometry against the plain one. */
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "autoclip/exports.h"
#include "reference/autoclip_corners.h"
#include "support/random.h"
#include "support/scans.h"
#include "support/tally.h"

namespace {

using reference::autoclip::Judged;
using reference::autoclip::Spot;
using reference::autoclip::Spots;
using reference::lines::Line;
using support::Picture;
using support::Random;
namespace tally = support::tally;

void expect_same(const Spots& expected, const std::array<float, 8>& actual) {
  for (std::size_t i = 0; i < 4; ++i) {
    ASSERT_EQ(expected.at(i).x, actual.at(2 * i)) << "corner " << i;
    ASSERT_EQ(expected.at(i).y, actual.at(2 * i + 1)) << "corner " << i;
  }
}

std::array<float, 8> flat(const Spots& spots) {
  std::array<float, 8> all{};
  for (std::size_t i = 0; i < 4; ++i) {
    all.at(2 * i) = spots.at(i).x;
    all.at(2 * i + 1) = spots.at(i).y;
  }
  return all;
}

TEST(CornersReference, CollectedPoints) {
  Random random(61);
  long found = 0;
  for (int round = 0; round < 2000; ++round) {
    Picture edge(random.pick(0, 20), random.pick(0, 20), 8, 0);
    Picture dir = edge;
    for (unsigned char& byte : edge.bytes) byte = static_cast<unsigned char>(random.chance(50) ? 0 : 255);
    for (unsigned char& byte : dir.bytes) byte = static_cast<unsigned char>(random.pick(0, 4));
    const int row_from = random.pick(0, edge.rows);
    const int row_to = random.pick(row_from - 1, edge.rows);
    const int col_from = random.pick(0, edge.stride());
    const int col_to = random.pick(col_from - 1, edge.stride());
    const int value = random.pick(0, 4);
    const auto expected = reference::autoclip::collect(edge, dir, row_from, row_to, col_from, col_to, value);
    std::vector<typePoint> points(edge.bytes.size());
    int count = -1;
    ASSERT_EQ(CalcPointCenter2(edge.bytes.data(), dir.bytes.data(), points.data(), count, row_from, row_to, col_from,
                               col_to, edge.stride(), value),
              1);
    ASSERT_EQ(count, static_cast<int>(expected.size())) << round;
    for (std::size_t i = 0; i < expected.size(); ++i) {
      ASSERT_EQ(points.at(i).row, expected.at(i).row);
      ASSERT_EQ(points.at(i).col, expected.at(i).col);
    }
    found += count;

    // Without padding the padded columns are columns like all others.
    const auto all = reference::autoclip::collect(edge, dir, 0, edge.rows, 0, edge.stride(), value);
    std::vector<float> floats(2 * edge.bytes.size());
    ASSERT_EQ(
        CalcPointCenter(edge.bytes.data(), dir.bytes.data(), floats.data(), count, edge.rows, edge.stride(), value), 1);
    ASSERT_EQ(count, static_cast<int>(all.size())) << round;
    for (std::size_t i = 0; i < all.size(); ++i) {
      ASSERT_EQ(floats.at(2 * i), all.at(i).row);
      ASSERT_EQ(floats.at(2 * i + 1), all.at(i).col);
    }
  }
  EXPECT_GE(found, 1000);
}

bool same_float(float p, float q) { return p == q || (std::isnan(p) && std::isnan(q)); }

double number_or_zero(Random& random) {
  return random.chance(20) ? (random.chance(50) ? 0.0 : -0.0) : random.real(-3, 3);
}

TEST(CornersReference, TwoUnknowns) {
  Random random(62);
  tally::reset();
  for (int round = 0; round < 5000; ++round) {
    std::array<double, 6> m{};
    for (double& value : m) value = number_or_zero(random);
    const Spot expected = reference::autoclip::solve_two(m[0], m[1], m[2], m[3], m[4], m[5]);
    const typePoint actual = CalcUnknownFun(m[0], m[1], m[2], m[3], m[4], m[5]);
    ASSERT_TRUE(same_float(expected.x, actual.col)) << round << ": " << expected.x << " and " << actual.col;
    ASSERT_TRUE(same_float(expected.y, actual.row)) << round << ": " << expected.y << " and " << actual.row;
  }
  tally::expect("solve two: zero pivot", 500);
}

double single(double value) { return static_cast<double>(static_cast<float>(value)); }

/** Normals as the searches write them: whole degrees in single precision, exact zeros at 90 and 0. */
Line random_line(Random& random, int from, int to) {
  const int t = random.chance(30) ? (from < 90 ? 90 : 0) : random.pick(from, to) % 180;
  Line line{single(reference::lines::cosine(t)), single(reference::lines::sine(t)), single(random.real(-50, 300))};
  if (t == 90) line.a = 0;
  if (t == 0) line.b = 0;
  if (random.chance(2)) (random.chance(50) ? line.a : line.b) = random.chance(50) ? 0.0 : -0.0;
  return line;
}

TEST(CornersReference, Intersections) {
  Random random(63);
  tally::reset();
  for (int round = 0; round < 10000; ++round) {
    SCOPED_TRACE(round);
    const std::array<Line, 4> lines{random_line(random, 75, 104), random_line(random, 75, 104),
                                    random_line(random, 160, 199), random_line(random, 160, 199)};
    std::array<double, 8> normal{};
    std::array<double, 4> distance{};
    for (std::size_t side = 0; side < 4; ++side) {
      normal.at(2 * side) = lines.at(side).a;
      normal.at(2 * side + 1) = lines.at(side).b;
      distance.at(side) = lines.at(side).c;
    }
    std::array<float, 8> corners{};
    const auto expected = reference::autoclip::intersect(lines);
    ASSERT_EQ(CalIntersectPoint(normal.data(), distance.data(), corners.data()), expected.has_value());
    if (expected) expect_same(*expected, corners);
    if (HasFatalFailure()) return;
  }
  for (const char* branch : {"intersect: both slope", "intersect: upright side", "intersect: level side",
                             "intersect: degenerate level", "intersect: degenerate sloping"}) {
    tally::expect(branch, 20);
  }
}

/** Corners about those of the image, in any order, sometimes far off, whole or equal. */
Spots random_corners(Random& random, int rows, int cols) {
  const bool far = random.chance(20);
  const bool whole = random.chance(30);
  Spots spots;
  for (std::size_t i = 0; i < 4; ++i) {
    const double slack = far ? 2.0 : 0.35;
    double x = (i % 2 == 0 ? 0 : cols) + random.real(-slack, slack) * cols;
    double y = (i < 2 ? rows : 0) + random.real(-slack, slack) * rows;
    if (whole) x = std::floor(x / 4) * 4;
    if (whole) y = std::floor(y / 4) * 4;
    spots.at(i) = {static_cast<float>(x), static_cast<float>(y)};
  }
  if (random.chance(30)) std::swap(spots.at(random.bits() % 4), spots.at(random.bits() % 4));
  return spots;
}

/** Upright corners, in whole pixels, of a box of about half the image's sides. */
Spots half_box(Random& random, int rows, int cols) {
  const int left = random.pick(0, cols / 2);
  const int low = random.pick(1, rows / 2 + 1);
  const auto l = static_cast<float>(left);
  const auto r = static_cast<float>(left + cols / 2 - 1 + random.pick(-1, 1));
  const auto b = static_cast<float>(low);
  const auto t = static_cast<float>(low + rows / 2 - 1 + random.pick(-1, 1));
  return {{{l, t}, {r, t}, {l, b}, {r, b}}};
}

/** Whether the sort leaves it open which corners are the upper two. */
bool order_is_open(const Spots& spots) {
  std::array<float, 4> ys{spots.at(0).y, spots.at(1).y, spots.at(2).y, spots.at(3).y};
  std::sort(ys.begin(), ys.end());
  return ys.at(1) == ys.at(2);
}

TEST(CornersReference, JudgedCorners) {
  Random random(64);
  tally::reset();
  for (int round = 0; round < 10000; ++round) {
    SCOPED_TRACE(round);
    const int rows = random.pick(1, 200);
    const int cols = random.pick(1, 200);
    const Spots spots = random.chance(20) ? half_box(random, rows, cols) : random_corners(random, rows, cols);
    if (order_is_open(spots)) continue;
    std::array<float, 8> corners = flat(spots);
    std::array<float, 8> box{};
    const Judged expected = reference::autoclip::judge(spots, rows, cols);
    ASSERT_EQ(VerifyCorrectLoc(corners.data(), box.data(), rows, cols), expected.accepted);
    expect_same(expected.corners, corners);
    expect_same(expected.box, box);

    corners = flat(spots);
    const Judged from_top = reference::autoclip::judge_from_top(spots, rows, cols);
    ASSERT_EQ(VerifyCorrectLoc_M(box.data(), corners.data(), rows, cols), from_top.accepted);
    expect_same(from_top.corners, corners);
    expect_same(from_top.box, box);
    if (HasFatalFailure()) return;
  }
  for (const char* branch : {"judge: equal columns", "judge: left corner higher", "judge: right corner higher",
                             "judge: sum too small", "judge: too narrow", "judge: too low", "judge: accepted"}) {
    tally::expect(branch, 100);
  }
}

TEST(CornersReference, OrderOfRows) {
  constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  for (const float p : {-kInfinity, -2.5f, -0.0f, 0.0f, 1e-30f, 7.0f, kInfinity, kNone}) {
    for (const float q : {-kInfinity, -2.5f, -0.0f, 0.0f, 1e-30f, 7.0f, kInfinity, kNone}) {
      const std::array<float, 2> left{p, kNone};
      const std::array<float, 2> right{q, kNone};
      const int expected = std::isnan(p) || std::isnan(q) ? 1 : p < q ? -1 : p > q ? 1 : 0;
      EXPECT_EQ(comp_ycoord(left.data(), right.data()), expected) << p << " and " << q;
    }
  }
}

}  // namespace
