#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <vector>

#include "segment/kernels.h"
#include "segment/reduce.h"
#include "support/forms.h"
#include "support/random.h"

namespace {

using vantrel::image::Pixels;
using vantrel::segment::binarise;
using Bytes = std::vector<unsigned char>;

/** The same, one pixel after the other in one serpentine from the first to the last. */
void binarise_serially(const Pixels& image) {
  std::vector<int> sums(static_cast<std::size_t>(image.cols));
  int sum = 256 * image.data[0];
  for (int r = 0; r < image.rows; ++r) {
    for (int i = 0; i < image.cols; ++i) {
      const int c = r % 2 == 0 ? i : image.cols - 1 - i;
      unsigned char& pixel = image.row(r)[c];
      int& before = sums[static_cast<std::size_t>(c)];
      sum = sum + pixel - (sum >> 8);
      pixel = pixel < (r == 0 ? 27 * sum >> 13 : 27 * (sum + before) >> 14) ? 0 : 255;
      before = sum;
    }
  }
}

template <class LevelAt>
void expect_the_same(int rows, int cols, int stride, LevelAt level_at) {
  Bytes wanted(static_cast<std::size_t>(rows) * static_cast<std::size_t>(stride), 1);
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) {
      wanted[static_cast<std::size_t>(r) * static_cast<std::size_t>(stride) + static_cast<std::size_t>(c)] =
          static_cast<unsigned char>(level_at(r, c));
    }
  }
  Bytes found = wanted;
  binarise_serially({wanted.data(), rows, cols, stride});
  ASSERT_TRUE(binarise({found.data(), rows, cols, stride}));
  ASSERT_EQ(found, wanted) << rows << " x " << cols;
}

TEST(Binarise, RowsDividedIntoBandsAreThoseOfOneScan) {
  support::Random random(6);
  const auto noise = [&](int, int) { return random.pick(0, 255); };
  const auto paper = [&](int r, int c) {
    return (r / 9 + c / 30) % 5 == 0 ? random.pick(20, 60) : random.pick(225, 240);
  };
  // Seven rows forget at 1,000 columns: below 257 rows there are no bands, and with some row counts the last is longer.
  for (const int rows : {1, 2, 3, 256, 257, 258, 259, 300, 301, 511}) {
    expect_the_same(rows, 1000, 1000, noise);
    expect_the_same(rows, 1000, 1004, paper);
  }
  expect_the_same(1200, 260, 260, paper);
  expect_the_same(60, 6200, 6200, noise);
}

TEST(Binarise, MeansThatNeverMeetAreFollowedFromTheStart) {
  // On a flat ground every sum of its level stays as it is: what it was at the start decides.
  for (const int level : {0, 1, 100, 254, 255}) {
    expect_the_same(400, 1000, 1000, [&](int r, int c) { return r == 0 && c < 300 ? 50 : level; });
  }
  expect_the_same(400, 1000, 1000, [](int r, int) { return r < 200 ? 90 : 200; });
  expect_the_same(400, 1000, 1000, [](int r, int c) { return (r + c) % 2 * 255; });
}

TEST(Binarise, RowsThatOverlapAreScannedInOrder) {
  support::Random random(8);
  Bytes wanted(64 * 400 + 1000);
  for (auto& byte : wanted) byte = static_cast<unsigned char>(random.pick(0, 255));
  Bytes found = wanted;
  binarise_serially({wanted.data(), 400, 1000, 64});
  ASSERT_TRUE(binarise({found.data(), 400, 1000, 64}));
  EXPECT_EQ(found, wanted);
}

TEST(MarkDark, IsTheSameInEveryFormAtEveryLimit) {
  // Each level against sums around the one from which it is dark.
  for (int level = 0; level < 256; ++level) {
    const Bytes levels(67, static_cast<unsigned char>(level));
    std::vector<int> sums(67), before(67);
    for (int i = 0; i < 67; ++i) {
      const int both = std::clamp((level + 1) * 16384 / 27 + i - 33, 0, 2 * 65280);
      sums[static_cast<std::size_t>(i)] = both / 2;
      before[static_cast<std::size_t>(i)] = both - both / 2;
    }
    Bytes wanted = levels;
    for (std::size_t i = 0; i < 67; ++i) wanted[i] = level < (27 * (sums[i] + before[i])) >> 14 ? 0 : 255;
    support::for_each_form([&](const auto& form) {
      for (int count : {67, 66, 40, 1, 0}) {
        Bytes row = levels;
        form.segment.mark_dark(row.data(), sums.data(), before.data(), count);
        for (std::size_t i = 0; i < 67; ++i) {
          ASSERT_EQ(row[i], static_cast<int>(i) < count ? wanted[i] : levels[i]) << level << " " << i;
        }
      }
    });
  }
}

}  // namespace
