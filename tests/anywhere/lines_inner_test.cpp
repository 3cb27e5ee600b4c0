// The vote for lines, the lines that win it, and how much of each lies on edges.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "anywhere/drawn_copy.h"
#include "anywhere/lines.h"
#include "anywhere/slanted_card.h"
#include "anywhere/vote.h"
#include "support/random.h"

namespace {

using namespace vantrel::anywhere;
using support::edges_at;

constexpr int kThreshold = 100;

Edge edge_at(double x, double y, int direction, int magnitude = 150) {
  return {static_cast<float>(x), static_cast<float>(y), static_cast<std::uint16_t>(magnitude),
          static_cast<std::uint8_t>(direction)};
}

TEST(Vote, OfOneEdgeIsMostForItsOwnLine) {
  for (const int direction : {0, 30, 128, 200, 255}) {
    Vote vote(60, 80);
    ASSERT_TRUE(vote.ready());
    const Edge edge = edge_at(79.9, 0.1, direction);
    vote.add(edge, kThreshold);
    const auto peak = vote.peak();
    EXPECT_EQ(peak.angle, direction);
    EXPECT_EQ(peak.votes, 14);
    const Point& normal = kNormals[static_cast<std::size_t>(direction)];
    EXPECT_NEAR(vote.distance(peak.distance), normal.x * 79.9 + normal.y * 0.1, 0.51);
  }
}

TEST(Vote, WeighsAnEdgeByItsMagnitude) {
  for (const auto& [magnitude, weight] : {std::pair{100, 1}, {199, 1}, {200, 2}, {400, 3}, {600, 4}, {60000, 4}}) {
    Vote vote(60, 80);
    vote.add(edge_at(20, 30, 77, magnitude), kThreshold);
    EXPECT_EQ(vote.peak().votes, 14 * weight) << magnitude;
  }
}

TEST(Vote, CountsLessTheFartherAnEdgeIsTurned) {
  // 5 bins apart, on one line of either direction: 14 - 5 more there.
  Vote vote(60, 80);
  vote.add(edge_at(0.2, 0.2, 100, 450), kThreshold);
  vote.add(edge_at(0.2, 0.2, 105, 150), kThreshold);
  EXPECT_EQ(vote.peak().angle, 100);
  EXPECT_EQ(vote.peak().votes, 3 * 14 + 9);
  // 14 apart they share nothing but what both see in the middle.
  Vote apart(60, 80);
  apart.add(edge_at(0.2, 0.2, 100), kThreshold);
  apart.add(edge_at(0.2, 0.2, 115), kThreshold);
  EXPECT_EQ(apart.peak().votes, 14);
}

TEST(Vote, GivesOfEqualLinesTheFirst) {
  Vote vote(60, 80);
  vote.add(edge_at(40.5, 7, 0), kThreshold);
  vote.add(edge_at(20.5, 7, 0), kThreshold);
  EXPECT_EQ(vote.peak().angle, 0);
  EXPECT_EQ(vote.distance(vote.peak().distance), 20.5);
}

TEST(Vote, IsTakenBack) {
  Vote vote(60, 80);
  const Edge strong = edge_at(20.5, 7, 3, 500), weak = edge_at(50.5, 9, 250);
  vote.add(strong, kThreshold);
  vote.add(weak, kThreshold);
  EXPECT_EQ(vote.peak().angle, 3);
  vote.remove(strong, kThreshold);
  EXPECT_EQ(vote.peak().angle, 250);
  EXPECT_EQ(vote.peak().votes, 14);
  vote.remove(weak, kThreshold);
  EXPECT_EQ(vote.peak().votes, 0);
}

TEST(Vote, HoldsEveryEdgeOfTheCopy) {
  support::Random random(3);
  Vote vote(33, 57);
  for (int i = 0; i < 4000; ++i) {
    const double x = random.chance(20) ? 56.99 * random.pick(0, 1) : random.real(0, 57);
    const double y = random.chance(20) ? 32.99 * random.pick(0, 1) : random.real(0, 33);
    const Edge edge = edge_at(x, y, random.pick(0, 255));
    vote.add(edge, kThreshold);
    ASSERT_EQ(vote.peak().votes, 14);
    vote.remove(edge, kThreshold);
  }
}

Lines lines_of(const support::SlantedCard& card) {
  const support::DrawnCard drawn(card);
  const Copy copy = reduce(drawn.scan());
  const auto gradients = find_gradients(copy);
  return find_lines(find_edges(copy, gradients.all()), copy.rows, copy.cols);
}

TEST(Lines, AreTheFourOfADrawnCard) {
  for (const double slope : {0.0, 0.1, -0.37}) {
    support::SlantedCard card;
    card.slope = slope;
    card.half_width = 180;
    const Lines lines = lines_of(card);
    ASSERT_TRUE(lines.done);
    ASSERT_EQ(lines.edge_lines(), 4) << slope;
    for (std::size_t side = 0; side < 4; ++side) {
      const NormalLine truth = line_through(card.quad()[side], card.quad()[side + 1]);
      const Point middle = (card.quad()[side] + card.quad()[side + 1]) * 0.5;
      int found = 0;
      for (std::size_t i = 0; i < 4; ++i) {
        const NormalLine& line = lines.lines[i].line;
        const double sine = std::abs(cross(truth.normal, line.normal));
        found += std::abs(line.distance(middle)) < 0.3 && sine < 0.0087;  // 0.5 degrees
      }
      EXPECT_EQ(found, 1) << "slope " << slope << ", side " << side;
    }
  }
}

TEST(Lines, ComeTheMostVotedFirst) {
  support::SlantedCard card;
  const Lines lines = lines_of(card);
  ASSERT_EQ(lines.edge_lines(), 4);
  for (std::size_t i = 1; i < 4; ++i) EXPECT_GE(lines.lines[i - 1].votes, lines.lines[i].votes);
}

TEST(Lines, LieOnEdgesBetweenTheCornersAndNotBeyond) {
  support::SlantedCard card;
  const Lines lines = lines_of(card);
  ASSERT_EQ(lines.edge_lines(), 4);
  for (int i = 0; i < 4; ++i) {
    const SupportedLine& line = lines.lines[static_cast<std::size_t>(i)];
    std::vector<double> places;
    for (const Point& corner : card.quad().corners)
      if (std::abs(line.line.distance(corner)) < 1) places.push_back(line.place(corner));
    ASSERT_EQ(places.size(), 2u);
    const double low = std::min(places[0], places[1]), high = std::max(places[0], places[1]);
    EXPECT_NEAR(lines.support.share(i, low, high), 1.0, 0.03);
    EXPECT_EQ(lines.support.share(i, low - 30, low - 3), 0.0);
    EXPECT_EQ(lines.support.share(i, high + 3, high + 30), 0.0);
  }
}

TEST(Lines, EndWithTheFrame) {
  const Lines lines = find_lines(edges_at({}, kThreshold), 60, 80);
  ASSERT_TRUE(lines.done);
  ASSERT_EQ(lines.count, 4);
  const std::array<std::array<double, 3>, 4> expected = {{{0, 1, 0}, {1, 0, 80}, {0, 1, 60}, {1, 0, 0}}};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_TRUE(lines.lines[i].is_frame);
    EXPECT_EQ(lines.lines[i].line.normal.x, expected[i][0]);
    EXPECT_EQ(lines.lines[i].line.normal.y, expected[i][1]);
    EXPECT_EQ(lines.lines[i].line.offset, expected[i][2]);
    EXPECT_EQ(lines.support.count(static_cast<int>(i), 0, 60), 0);
  }
}

/** Edges at the marks of a row that runs to the right at y = 50.5. */
Edges edges_along(const std::string& marks) {
  std::vector<Edge> places;
  for (std::size_t i = 0; i < marks.size(); ++i)
    if (marks[i] == '#') places.push_back(edge_at(static_cast<double>(i) + 0.5, 50.5, 128));
  return edges_at(places, kThreshold);
}

std::string run(int count, char mark) { return std::string(static_cast<std::size_t>(count), mark); }

TEST(Support, ClosesGapsOfThreeAndDropsRunsOfFive) {
  const std::string marks = run(20, '.') + run(20, '#') + run(3, '.') + run(17, '#') + run(4, '.') + run(16, '#') +
                            run(10, '.') + run(5, '#') + run(15, '.') + run(6, '#');
  const Lines lines = find_lines(edges_along(marks), 100, 140);
  ASSERT_EQ(lines.edge_lines(), 1);
  EXPECT_EQ(lines.support.count(0, 30, 50), 20);  // over the gap of 3
  EXPECT_EQ(lines.support.share(0, 30, 50), 1.0);
  EXPECT_EQ(lines.support.share(0, 50, 70), 16 / 20.0);  // over the gap of 4
  EXPECT_EQ(lines.support.share(0, 80, 105), 0.0);       // the run of 5
  EXPECT_EQ(lines.support.share(0, 100, 120), 6 / 20.0);
  EXPECT_EQ(lines.support.count(0, -90, 139), 40 + 16 + 6);
}

TEST(Support, OfLessThanAPixelIsNone) {
  const Lines lines = find_lines(edges_along(run(60, '#')), 100, 140);
  ASSERT_EQ(lines.edge_lines(), 1);
  EXPECT_EQ(lines.support.share(0, 30, 30.99), 0.0);
  EXPECT_EQ(lines.support.share(0, 30, 31), 1.0);
  EXPECT_EQ(lines.support.share(0, 31, 30), 0.0);
}

TEST(Support, IsAskedForAnywhere) {
  const Lines lines = find_lines(edges_along(run(60, '#')), 100, 140);
  ASSERT_EQ(lines.edge_lines(), 1);
  EXPECT_EQ(lines.support.count(0, -1e6, 1e6), 60);
  EXPECT_EQ(lines.support.count(0, 5000, 6000), 0);
  EXPECT_EQ(lines.support.count(0, -6000, -5000), 0);
}

TEST(Support, OfFewPixelsMakesNoLine) {
  EXPECT_EQ(find_lines(edges_along(run(30, '.') + run(7, '#')), 100, 140).edge_lines(), 0);
  EXPECT_EQ(find_lines(edges_along(run(30, '.') + run(12, '#')), 100, 140).edge_lines(), 1);
}

TEST(Support, BeginsAndEndsWithTheEdgesThemselvesAtTheFrameToo) {
  // All the way down a column: the three cells before its first pixel are no gap to be closed.
  std::vector<Edge> places;
  for (int row = 0; row < 60; ++row) places.push_back(edge_at(20.5, row + 0.5, 0));
  const Lines lines = find_lines(edges_at(places, kThreshold), 60, 40);
  ASSERT_EQ(lines.edge_lines(), 1);
  EXPECT_EQ(lines.support.count(0, -1e4, 1e4), 60);
}

/** The marks with gaps of up to 3 closed and then runs of up to 5 dropped. */
std::string tidied(std::string marks) {
  for (const auto& [mark, most] : {std::pair{'.', 3}, {'#', 5}}) {
    const char other = mark == '.' ? '#' : '.';
    for (int count = 1; count <= most; ++count) {
      const std::string from = other + run(count, mark) + other, to = run(count + 2, other);
      for (std::size_t at = 0; (at = marks.find(from, at)) != std::string::npos;) marks.replace(at, from.size(), to);
    }
  }
  return marks;
}

TEST(Support, IsWhatOneCounts) {
  support::Random random(5);
  for (int round = 0; round < 60; ++round) {
    std::string marks = run(10, '.') + run(12, '#');
    while (marks.size() < 180) marks += run(random.pick(1, 9), random.one_in(2) ? '#' : '.');
    marks += run(10, '.');
    const Lines lines = find_lines(edges_along(marks), 60, 200);
    ASSERT_EQ(lines.edge_lines(), 1);
    const std::string tidy = tidied(marks);
    for (std::size_t from = 0; from < tidy.size(); from += 7) {
      for (std::size_t to = from + 1; to < tidy.size(); to += 5) {
        const auto count = std::count(tidy.begin() + static_cast<std::ptrdiff_t>(from) + 1,
                                      tidy.begin() + static_cast<std::ptrdiff_t>(to) + 1, '#');
        ASSERT_EQ(lines.support.count(0, static_cast<double>(from), static_cast<double>(to)), count) << marks;
      }
    }
  }
}

TEST(Lines, OfNothingButNoiseComeToAnEnd) {
  support::SlantedCard card;
  card.card = card.ground = {128, 128, 128};
  card.noise = 127;
  const Lines lines = lines_of(card);
  ASSERT_TRUE(lines.done);
  EXPECT_LE(lines.edge_lines(), kMostEdgeLines);
  for (std::size_t i = 0; i < static_cast<std::size_t>(lines.edge_lines()); ++i) {
    EXPECT_GE(lines.support.count(static_cast<int>(i), -1e4, 1e4), 8);
    EXPECT_NEAR(length(lines.lines[i].line.normal), 1.0, 1e-9);
    EXPECT_GE(lines.lines[i].line.normal.y, 0.0);
  }
}

TEST(Lines, AreNoneWhereEdgesLieAtOnePlace) {
  const Edge edge = edge_at(20.25, 30.5, 77, 600);
  EXPECT_EQ(find_lines(edges_at({edge, edge, edge}, kThreshold), 60, 80).edge_lines(), 0);
}

/** A line of 20 weak edges among heaps of 8 strong ones, each of which has more votes and makes no line. */
Edges line_among_heaps(int heaps) {
  support::Random random(11);
  std::vector<Edge> places;
  for (int i = 0; i < 20; ++i) places.push_back(edge_at(i + 0.5, 0.5, 128));
  for (int i = 0; i < heaps; ++i) {
    const double x = random.real(20, 480);
    const double y = random.real(20, 380);
    places.insert(places.end(), 8, edge_at(x, y, random.pick(0, 255), 600));
  }
  return edges_at(places, kThreshold);
}

TEST(Lines, AreLookedForTwoHundredAndSixtyTimes) {
  EXPECT_EQ(find_lines(line_among_heaps(200), 400, 500).edge_lines(), 1);
  // Heaps that lie on a line with others are looked at together; of many more some make a line.
  EXPECT_EQ(find_lines(line_among_heaps(500), 400, 500).edge_lines(), 0);
}

TEST(Lines, NeverComeTwice) {
  support::SlantedCard card;
  card.frame_inset = 30;
  card.writing = true;
  const Lines lines = lines_of(card);
  ASSERT_GE(lines.edge_lines(), 8);
  for (std::size_t i = 0; i < static_cast<std::size_t>(lines.edge_lines()); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      const bool twins = between(lines.lines[i].direction, lines.lines[j].direction) <= 1 &&
                         std::abs(lines.lines[i].line.offset - lines.lines[j].line.offset) < 0.5;
      EXPECT_FALSE(twins) << i << " and " << j;
    }
  }
}

}  // namespace
