#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "lines/hough.h"
#include "lines/kernels.h"
#include "support/forms.h"
#include "support/random.h"

namespace {

using vantrel::lines::Angles;
using vantrel::lines::DegreeTables;
using vantrel::lines::EdgePoint;
using vantrel::lines::HoughAccumulator;
using vantrel::lines::kMostAngles;
using vantrel::lines::Peak;
using vantrel::lines::VoteSheet;

/** Cells for images of a side, whose points may lie half a side from the centre. */
struct Sheet {
  static constexpr int kSide = 90;
  static constexpr int kDistances = 2 * kSide;
  static constexpr int kStride = kDistances + 3;
  std::vector<double> cells = std::vector<double>(kMostAngles * kStride, 0.0);
  std::vector<double> cos, sin;

  Sheet(int first_angle, int angles) {
    const DegreeTables tables;
    cos.assign(tables.cos + first_angle, tables.cos + first_angle + angles);
    sin.assign(tables.sin + first_angle, tables.sin + first_angle + angles);
  }
  VoteSheet view() {
    return {cells.data(), kStride, kDistances, kSide, cos.data(), sin.data(), static_cast<int>(cos.size())};
  }
};

TEST(VoteForms, GiveEveryCellTheSameSum) {
  support::Random random(11);
  for (int run = 0; run < 300; ++run) {
    const int angles = random.pick(1, kMostAngles);
    const int first_angle = random.pick(0, 180 - angles);
    std::vector<EdgePoint> points;
    for (int i = random.pick(0, 300); i > 0; --i) {
      points.push_back({static_cast<float>(random.pick(-90, 90)) / 2, static_cast<float>(random.pick(-90, 90)) / 2});
    }
    const auto vote = [&](const auto& kernels) {
      Sheet sheet(first_angle, angles);
      kernels.vote(sheet.view(), points.data(), static_cast<int>(points.size()));
      return sheet.cells;
    };
    const std::vector<double> wanted = vote(vantrel::lines::plain::kKernels);
    support::for_each_form([&](const auto& form) { ASSERT_EQ(vote(form.lines), wanted); });
  }
}

TEST(VoteForms, FindTheLargestWhereverItLies) {
  for (int count = 0; count < 40; ++count) {
    std::vector<double> values(static_cast<std::size_t>(count), 0.25);
    support::for_each_form([&](const auto& form) {
      EXPECT_EQ(form.lines.largest(values.data(), count), count == 0 ? 0 : 0.25);
      for (double& value : values) {
        value = 7.5;
        EXPECT_EQ(form.lines.largest(values.data(), count), 7.5) << count;
        value = 0.25;
      }
    });
  }
}

TEST(VoteForms, NothingLargerThanNothingIsNothing) {
  const std::vector<double> values(20, 0.0);
  support::for_each_form([&](const auto& form) { EXPECT_EQ(form.lines.largest(values.data(), 20), 0.0); });
}

TEST(CountBelow, IsTheSameInEveryFormForEveryLevelAndLength) {
  support::Random random(5);
  std::vector<unsigned char> bytes(40'000);
  for (auto& byte : bytes) byte = static_cast<unsigned char>(random.pick(0, 255));
  for (int level = 0; level < 256; ++level) {
    const int count = level * 3 / 2;
    const auto wanted =
        static_cast<int>(std::count_if(bytes.begin(), bytes.begin() + count, [&](int b) { return b < level; }));
    support::for_each_form([&](const auto& form) {
      ASSERT_EQ(form.lines.count_below(bytes.data(), count, static_cast<unsigned char>(level)), wanted) << level;
    });
  }
}

TEST(CountBelow, CountsMoreThanALaneHolds) {
  const std::vector<unsigned char> bytes(40'000, 7);
  support::for_each_form([&](const auto& form) {
    EXPECT_EQ(form.lines.count_below(bytes.data(), 40'000, 8), 40'000);
    EXPECT_EQ(form.lines.count_below(bytes.data(), 40'000, 7), 0);
  });
}

/** Points at whole columns of one row give it whole votes at 90 degrees. */
void vote_for_row(HoughAccumulator& votes, float row, int count) {
  std::vector<EdgePoint> points;
  for (int i = 0; i < count; ++i) points.push_back({row, static_cast<float>(i - count / 2)});
  votes.vote(points);
}

TEST(HoughPeaks, OfEquallyStrongRowsTheFirstIsTheStrongest) {
  const DegreeTables tables;
  const Angles level{{90, 90}};
  HoughAccumulator votes(100, 100, level, tables);
  vote_for_row(votes, 30, 20);
  vote_for_row(votes, -12, 20);
  vote_for_row(votes, 2, 20);
  const Peak first = votes.strongest(level);
  EXPECT_EQ(first.distance, 88);
  // 19.99..: the cosine of 90 degrees in a table is not quite 0.
  EXPECT_NEAR(first.votes, 20, 1e-6);
  const Peak second = votes.strongest(level, &first);
  EXPECT_EQ(second.distance, 102);
}

TEST(HoughPeaks, RowsNineAwayFromAPeakAreItsOwnAndTenAwayAreNot) {
  const DegreeTables tables;
  const Angles level{{90, 90}};
  for (const int away : {-10, -9, 9, 10}) {
    HoughAccumulator votes(100, 100, level, tables);
    vote_for_row(votes, 0, 40);
    vote_for_row(votes, static_cast<float>(away), 20);
    const Peak first = votes.strongest(level);
    const Peak second = votes.strongest(level, &first);
    EXPECT_EQ(first.distance, 100);
    EXPECT_EQ(second.votes > 10, away == -10 || away == 10) << away << " " << second.votes;
  }
}

TEST(HoughPeaks, PointsOutsideTheImageVoteAsFarAsTheSheetReaches) {
  const DegreeTables tables;
  const Angles level{{90, 90}};
  HoughAccumulator votes(100, 100, level, tables);
  vote_for_row(votes, 500, 30);   // behind the last distance
  vote_for_row(votes, -100, 10);  // on the first
  const Peak first = votes.strongest(level);
  EXPECT_EQ(first.distance, 0);
  EXPECT_NEAR(first.votes, 10, 1e-6);
}

}  // namespace
