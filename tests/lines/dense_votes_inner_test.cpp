// Many points at once: the same peaks, to the last bit, as when each votes for itself.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "lines/hough.h"
#include "lines/pair_search.h"
#include "support/forms.h"
#include "support/random.h"

namespace {

using namespace vantrel::lines;
using vantrel::geometry::Rect;

/** A gray level for each pixel. */
using Pattern = int (*)(support::Random& random, int x, int y);

constexpr std::array<Pattern, 8> kPatterns = {
    [](support::Random&, int, int y) { return y / 2 % 2 * 255; },
    [](support::Random&, int x, int) { return x / 2 % 2 * 255; },
    [](support::Random&, int x, int y) { return (x / 5 + y / 5) % 2 * 255; },
    [](support::Random&, int x, int y) { return (y / 2 + x / 90) % 2 * 255; },
    [](support::Random&, int x, int y) { return x % 3 != 0 || y % 3 != 0 ? 255 : 0; },
    [](support::Random& random, int, int) { return random.pick(0, 1) * 255; },
    [](support::Random& random, int, int) { return random.pick(0, 255); },
    [](support::Random& random, int x, int y) { return (x + y / 7 + random.pick(0, 9) / 9) % 60 < 30 ? 0 : 255; },
};

/** The edges of a picture, and what owns its pixels. */
struct Edges {
  std::vector<unsigned char> gray;
  EdgeMaps maps;

  Edges(int rows, int cols, Pattern pattern, std::uint32_t seed)
      : gray(drawn(rows, cols, pattern, seed)), maps({gray.data(), rows, cols, cols}) {
    maps.detect({});
  }
  static std::vector<unsigned char> drawn(int rows, int cols, Pattern pattern, std::uint32_t seed) {
    support::Random random(seed);
    std::vector<unsigned char> levels;
    for (int y = 0; y < rows; ++y) {
      for (int x = 0; x < cols; ++x) levels.push_back(static_cast<unsigned char>(pattern(random, x, y)));
    }
    return levels;
  }
};

struct Search {
  Direction direction;
  Angles voted;
  Angles looked_at;
};

constexpr std::array<Search, 4> kSearches = {{
    {Direction::kAcrossRows, {{75, 104}}, {{75, 104}}},
    {Direction::kAcrossRows, {{70, 109}}, {{70, 109}}},
    {Direction::kAlongRows, {{0, 19}, {160, 179}}, {{0, 19}, {161, 179}}},
    {Direction::kAlongRows, {{0, 29}, {150, 179}}, {{0, 29}, {150, 179}}},
}};

bool same(const Peak& a, const Peak& b) { return a.distance == b.distance && a.angle == b.angle && a.votes == b.votes; }

/** The strongest cell, the strongest away from it, and the strongest away from that one. */
std::array<Peak, 3> peaks_of(const EdgeMaps& maps, const Rect& area, const Search& search, bool many) {
  const DegreeTables tables;
  const auto [rows, cols] = std::pair(maps.edge().rows, maps.edge().cols);
  // Once with cells for all of the image, once for those of the area.
  const auto limits = area.rows.size() == rows ? std::nullopt : std::optional(area);
  HoughAccumulator votes(rows, cols, search.voted, tables, limits);
  EXPECT_TRUE(votes.ready());
  vote_band(maps, area, search.direction, many, votes);
  const Peak first = votes.strongest(search.looked_at);
  const Peak second = votes.strongest(search.looked_at, &first);
  return {first, second, votes.strongest(search.looked_at, &second)};
}

class DenseVotesTest : public testing::Test {
 protected:
  /** Puts back the form that was chosen. */
  ~DenseVotesTest() override { kernels = chosen_; }

  template <class Check>
  void by_each_form(Check check) {
    support::for_each_form([&](const auto& form) {
      kernels = &form.lines;
      check();
    });
  }

 private:
  const Kernels* chosen_ = kernels;
};

TEST_F(DenseVotesTest, HaveThePeaksOfSingleVotesInEveryForm) {
  constexpr std::array<std::pair<int, int>, 2> kSizes = {{{97, 210}, {131, 70}}};
  for (std::size_t i = 0; i < kPatterns.size(); ++i) {
    for (const auto& [rows, cols] : kSizes) {
      const Edges edges(rows, cols, kPatterns[i], static_cast<std::uint32_t>(i));
      for (const Rect& area : {Rect{{0, rows}, {0, cols}}, Rect{{rows / 5, rows}, {cols / 3, cols - 7}}}) {
        for (const Search& search : kSearches) {
          const std::array<Peak, 3> wanted = peaks_of(edges.maps, area, search, false);
          by_each_form([&] {
            const std::array<Peak, 3> found = peaks_of(edges.maps, area, search, true);
            ASSERT_TRUE(std::equal(found.begin(), found.end(), wanted.begin(), same)) << i;
          });
        }
      }
    }
  }
}

TEST_F(DenseVotesTest, AreNoMoreThanTheirBounds) {
  const DegreeTables tables;
  constexpr int kRows = 130, kCols = 150;
  for (const Pattern pattern : kPatterns) {
    const Edges edges(kRows, kCols, pattern, 7);
    by_each_form([&] {
      for (int t = 0; t < 180; t += 3) {
        const bool level = t >= 60 && t <= 120;
        if (!level && t > 30 && t < 150) continue;
        const Slant slant = level ? Slant{tables.sin[t], tables.cos[t]} : Slant{tables.cos[t], tables.sin[t]};
        PointMap points(edges.maps, {{0, kRows}, {0, kCols}}, level ? Direction::kAcrossRows : Direction::kAlongRows);
        DenseVotes votes(std::move(points), kRows / 2, kCols / 2, std::span(&slant, 1), -kCols, 2 * kCols);
        ASSERT_TRUE(votes.ready());
        std::vector<int> loose;
        for (int group = 0; group < votes.groups(); ++group) {
          ASSERT_TRUE(votes.is_loose(0, group));
          loose.push_back(votes.bound_of(0, group));
        }
        votes.bound(0, 0);
        for (int group = 0; group < votes.groups(); ++group) {
          std::array<double, kSumCells> sums;
          const int bound = votes.bound_of(0, group);
          votes.sum(0, group, sums.data());
          const double most = *std::max_element(sums.begin(), sums.end());
          ASSERT_LE(most, bound) << t;
          ASSERT_LE(bound, loose[static_cast<std::size_t>(group)]) << t;
          // And the bounds are of use.
          ASSERT_GE(1.1 * most + 3, bound) << t;
        }
      }
    });
  }
}

TEST_F(DenseVotesTest, AreLooselyBoundedByThreeTimesTheMost) {
  const DegreeTables tables;
  constexpr int kRows = 130, kCols = 150;
  for (const Pattern pattern : kPatterns) {
    const Edges edges(kRows, kCols, pattern, 8);
    PointMap points(edges.maps, {{0, kRows}, {0, kCols}}, Direction::kAcrossRows);
    const Slant slant{tables.sin[79], tables.cos[79]};
    DenseVotes votes(std::move(points), kRows / 2, kCols / 2, std::span(&slant, 1), -kCols, 2 * kCols);
    ASSERT_TRUE(votes.ready());
    int loose = 0;
    double most = 0;
    for (int group = 0; group < votes.groups(); ++group) {
      loose = std::max(loose, votes.bound_of(0, group));
      std::array<double, kSumCells> sums;
      votes.sum(0, group, sums.data());
      most = std::max(most, *std::max_element(sums.begin(), sums.end()));
    }
    EXPECT_GE(3 * most + 3, loose);
  }
}

TEST_F(DenseVotesTest, NeedNotTellOfTooFew) {
  const DegreeTables tables;
  constexpr int kRows = 131, kCols = 170;
  const Search& search = kSearches[1];
  for (const Pattern pattern : kPatterns) {
    const Edges edges(kRows, kCols, pattern, 11);
    HoughAccumulator all(kRows, kCols, search.voted, tables);
    vote_band(edges.maps, {{0, kRows}, {0, kCols}}, search.direction, false, all);
    const Peak wanted = all.strongest(search.voted);
    by_each_form([&] {
      for (const int more : {-1, 0, 1}) {
        HoughAccumulator votes(kRows, kCols, search.voted, tables);
        vote_band(edges.maps, {{0, kRows}, {0, kCols}}, search.direction, true, votes);
        const int least = static_cast<int>(wanted.votes) + more;
        const Peak found = votes.strongest(search.voted, nullptr, least);
        if (more <= 0) {
          ASSERT_TRUE(same(found, wanted)) << least;
        } else {
          ASSERT_LT(found.votes, least);
        }
      }
    });
  }
}

TEST_F(DenseVotesTest, MakeTheSamePair) {
  const DegreeTables tables;
  constexpr int kRows = 200, kCols = 240;
  int found = 0;
  for (const Pattern pattern : kPatterns) {
    const Edges edges(kRows, kCols, pattern, 9);
    for (const bool horizontal : {true, false}) {
      const Direction direction = horizontal ? Direction::kAcrossRows : Direction::kAlongRows;
      PairSearch one(kRows, kCols, horizontal, tables), all(kRows, kCols, horizontal, tables);
      vote_band(edges.maps, {{0, kRows}, {0, kCols}}, direction, false, one);
      vote_band(edges.maps, {{0, kRows}, {0, kCols}}, direction, true, all);
      const BorderPair wanted = one.find(), pair = all.find();
      ASSERT_EQ(pair.found, wanted.found);
      found += pair.found ? 1 : 0;
      EXPECT_EQ(pair.first.c, wanted.first.c);
      EXPECT_EQ(pair.second.c, wanted.second.c);
    }
  }
  EXPECT_GE(found, 4);
}

TEST(ArePointsMany, FromOneInThirtyTwoPixelsOn) {
  constexpr Rect kArea{{0, 256}, {0, 256}};
  EXPECT_FALSE(are_many(4095, kArea, 4095));
  EXPECT_EQ(are_many(4096, kArea, 131072), kernels->bounds_many);
  EXPECT_FALSE(are_many(4096, kArea, 131104));
}

TEST(ArePointsMany, NeverOnNarrowAreas) {
  EXPECT_EQ(are_many(4096, {{0, 64}, {0, 64}}, 4096), kernels->bounds_many);
  EXPECT_FALSE(are_many(6300, {{0, 63}, {0, 100}}, 6300));
  EXPECT_FALSE(are_many(6300, {{0, 100}, {0, 63}}, 6300));
}

}  // namespace
