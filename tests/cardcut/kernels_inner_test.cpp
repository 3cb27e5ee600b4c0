#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <optional>
#include <vector>

#include "cardcut/difference.h"
#include "cardcut/hough.h"
#include "cardcut/kernels.h"
#include "support/forms.h"
#include "support/random.h"

namespace {

using namespace vantrel::cardcut;
using Bytes = std::vector<unsigned char>;

TEST(AnyFar, SeesThreeNeighboursAtEveryLimitInEveryForm) {
  for (int d = 0; d < 256; ++d) {
    Bytes a(192, 200), b(192, 200);
    // Both ways round: one byte up, two down.
    a[100] = static_cast<unsigned char>(d);
    b[100] = 0;
    a[101] = a[102] = 0;
    b[101] = b[102] = static_cast<unsigned char>(d);
    const int sum = 3 * d * d;
    for (const int least : {sum - 1, sum, sum + 1, 441}) {
      if (least < 1 || least > 21609) continue;
      support::for_each_form([&](const auto& form) {
        ASSERT_EQ(form.cardcut.any_far(a.data(), b.data(), 192, least), sum >= least) << d << " " << least;
      });
    }
  }
}

TEST(AnyFar, LooksAtAllBytesAndNoOthers) {
  for (int count = 0; count <= 192; ++count) {
    for (int at = 0; at < 192; ++at) {
      Bytes a(192, 9), b(192, 9);
      a[static_cast<std::size_t>(at)] = 100;
      support::for_each_form([&](const auto& form) {
        ASSERT_EQ(form.cardcut.any_far(a.data(), b.data(), count, 441), at < count && count >= 3) << at << " " << count;
      });
    }
  }
}

TEST(ColourDifference, IsTheTruncatedRootOfEverySumOfSquares) {
  // In double precision, for all the sums that there can be.
  for (int n = 0; n <= 3 * 255 * 255; ++n) {
    ASSERT_EQ(static_cast<int>(std::sqrt(static_cast<float>(n))), static_cast<int>(std::sqrt(static_cast<double>(n))))
        << n;
  }
}

TEST(RoundedDistance, IsThatOfAHalfInDoublePrecision) {
  std::int64_t different = 0;
  const auto compare = [&](float value) {
    different += rounded_distance(value) != static_cast<int>(static_cast<double>(value) + 0.5);
  };
  // What is smaller becomes 0 either way, what is larger is a whole number.
  for (const float from : {0.125f, 0.25f, 0.5f, 1.0f, 2.0f, 64.0f, 1024.0f, 65536.0f, 2097152.0f, 4194304.0f}) {
    const auto first = std::bit_cast<std::uint32_t>(from);
    const std::uint32_t step = from < 1.0f ? 1 : 3;
    for (std::uint32_t bits = first; bits < first + (1u << 23); bits += step) {
      compare(std::bit_cast<float>(bits));
      compare(-std::bit_cast<float>(bits));
    }
  }
  for (const float value : {0.0f, -0.0f, 1e-30f, -1e-30f, 8388608.0f, -8388608.0f, 8388609.0f, 16777216.0f}) {
    compare(value);
  }
  EXPECT_EQ(different, 0);
}

std::vector<int> numbers_of(const std::optional<Peak>& peak) {
  return peak ? std::vector<int>{peak->distance, peak->angle, peak->votes} : std::vector<int>{};
}

TEST(CountDistances, IsTheSameInEveryFormUpAndDown) {
  support::Random random(21);
  std::array<float, kMostCounted> across;
  for (int round = 0; round < 2000; ++round) {
    const int begin = random.pick(-5000, 5000);
    for (std::size_t i = 0; i < across.size(); ++i) {
      across[i] = static_cast<float>(begin + static_cast<int>(i) * random.pick(0, 1));
    }
    const auto cosine = static_cast<float>(random.real(-0.0872, 0.0872));
    const auto row_part = static_cast<float>(random.real(0, 9000));
    const int step = random.one_in(2) ? 1 : -1;
    const int first = rounded_distance(across[0] * cosine + row_part);
    const CountedColumns columns{across.data(), cosine, row_part, first, step};
    std::array<int, kMostDistances> wanted{};
    for (const float column : across) {
      const int place = (rounded_distance(column * cosine + row_part) - first) * step;
      if (place >= 0 && place < kMostDistances) ++wanted[static_cast<std::size_t>(place)];
    }
    for (int places = 1; places <= kMostDistances; ++places) {
      support::for_each_form([&](const auto& form) {
        std::array<int, kMostDistances> counts{};
        form.cardcut.count_distances(columns, places, counts.data());
        for (int i = 0; i < kMostDistances; ++i) {
          const auto at = static_cast<std::size_t>(i);
          ASSERT_EQ(counts[at], i < places ? wanted[at] : 0) << round << " " << i;
        }
      });
    }
  }
}

TEST(RowVotes, CountedTogetherAreThoseCountedOneByOne) {
  support::Random random(9);
  constexpr vantrel::geometry::Span kBand[] = {{20, 60}};
  for (int run = 0; run < 200; ++run) {
    const int cols = random.pick(1, 400);
    HoughAccumulator together(100, cols, kBand), one_by_one(100, cols, kBand);
    together.clear(kBand[0]);
    one_by_one.clear(kBand[0]);
    const int often = random.pick(1, 6);
    for (int row = 20; row < 60; ++row) {
      RowVotes votes(together, row, kAllAngles);
      for (int x = 0; x < cols; ++x) {
        if (random.pick(1, often) > 1) continue;
        votes.add(x);
        RowVotes(one_by_one, row, kAllAngles).add(x);
      }
    }
    for (const int share : {2, 4, 9, 40}) {
      ASSERT_EQ(numbers_of(together.lowest_peak(share)), numbers_of(one_by_one.lowest_peak(share)));
      ASSERT_EQ(numbers_of(together.highest_peak(share)), numbers_of(one_by_one.highest_peak(share)));
    }
  }
}

TEST(RowVotes, ARunCountsLikeItsColumnsOneByOne) {
  support::Random random(22);
  constexpr vantrel::geometry::Span kBand[] = {{20, 60}};
  for (int picture = 0; picture < 200; ++picture) {
    const int cols = random.pick(64, 900);
    HoughAccumulator by_runs(100, cols, kBand), one_by_one(100, cols, kBand);
    by_runs.clear(kBand[0]);
    one_by_one.clear(kBand[0]);
    for (int round = 0; round < 60; ++round) {
      const int row = random.pick(20, 59), begin = random.pick(0, cols - kMostCounted), percent = random.pick(0, 100);
      std::vector<int> columns;
      for (int x = begin; x < begin + kMostCounted; ++x) {
        if (!random.chance(percent)) continue;
        columns.push_back(x);
        RowVotes(one_by_one, row, kAllAngles).add(x);
      }
      RowVotes(by_runs, row, kAllAngles).add(columns);
    }
    for (const int share : {4, 9, 40, 300}) {
      ASSERT_EQ(numbers_of(by_runs.lowest_peak(share)), numbers_of(one_by_one.lowest_peak(share)));
      ASSERT_EQ(numbers_of(by_runs.highest_peak(share)), numbers_of(one_by_one.highest_peak(share)));
    }
  }
}

}  // namespace
