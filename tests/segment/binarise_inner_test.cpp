#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <tuple>
#include <utility>
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
  // Seven rows forget at 1,000 columns: some row counts have fewer bands than others, longer ones among them, a row
  // left over.
  for (const int rows : {1, 2, 3, 16, 17, 18, 40, 129, 257, 258, 259, 260, 300, 511}) {
    expect_the_same(rows, 1000, 1000, noise);
    expect_the_same(rows, 1000, 1004, paper);
  }
  expect_the_same(1200, 260, 260, paper);
  expect_the_same(60, 6200, 6200, noise);
}

TEST(Binarise, BandsOnFlatGroundTakeTheirMeansFromThoseBefore) {
  support::Random random(7);
  // Print in some bands only. A ground of one level, of noise around one, and of noise between two, where what the
  // means can be keeps its width, keeps it mostly, and shrinks.
  for (const auto& [least, most] : {std::pair(235, 235), {232, 238}, {234, 235}, {100, 200}}) {
    for (const int printed_rows : {0, 30, 200}) {
      expect_the_same(601, 500, 504, [&, least = least, most = most](int r, int c) {
        return r % 300 < printed_rows && c / 9 % 3 == 0 ? random.pick(0, 90) : random.pick(least, most);
      });
    }
  }
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

TEST(Lines, AreTheSameInEveryForm) {
  using namespace vantrel::segment;
  support::Random random(9);
  constexpr int kCols = 40, kGap = 3;
  for (int cols : {1, 2, 15, 16, 17, 31, 32, kCols}) {
    for (const bool backwards : {false, true}) {
      Bytes levels(static_cast<std::size_t>(kLines) * (kCols + kGap));
      for (auto& level : levels) level = static_cast<unsigned char>(random.pick(0, 1) != 0 ? 255 : random.pick(0, 255));
      std::vector<std::uint16_t> noted(static_cast<std::size_t>(kLines) * kCols);
      for (auto& sum : noted) sum = static_cast<std::uint16_t>(random.pick(0, 65280));
      LineSums first, second;
      for (int k = 0; k < kLines; ++k) {
        first[k] = static_cast<std::uint16_t>(random.pick(0, 65280));
        second[k] = static_cast<std::uint16_t>(k % 2 * 65280);
      }
      /** What a form makes of all that, by each of its kernels. */
      const auto made_by = [&](const Kernels& kernels) {
        Bytes marked = levels;
        Lines lines{{}, cols, backwards};
        for (std::ptrdiff_t k = 0; k < kLines; ++k) lines.levels[k] = marked.data() + k * (kCols + kGap);
        std::vector<std::uint16_t> sums = noted;
        LineSums a, b;
        std::copy_n(first, kLines, a);
        std::copy_n(second, kLines, b);
        kernels.follow(lines, a, b);
        kernels.mark(lines, a, sums.data());
        std::vector<std::uint16_t> row = noted;
        kernels.note(lines, b, row.data());
        return std::tuple(marked, sums, row, std::vector(a, a + kLines), std::vector(b, b + kLines));
      };
      const auto wanted = made_by(plain::kKernels);
      support::for_each_form([&](const auto& form) { ASSERT_EQ(made_by(form.segment), wanted) << cols; });
    }
  }
}

TEST(Lines, AreMarkedAtEveryLimitInEveryForm) {
  using namespace vantrel::segment;
  // One pixel a line, each level against sums around the one from which it is dark.
  for (int level = 0; level < 256; ++level) {
    for (int apart = -32; apart < 32; apart += kLines) {
      LineSums sums;
      std::uint16_t noted[kLines];
      int wanted[kLines];
      for (int k = 0; k < kLines; ++k) {
        const int both = std::clamp((level + 1) * 16384 / 27 + apart + k, level, 2 * 65280);
        // The sum that becomes half of that with the pixel.
        const int half = both / 2;
        sums[k] = static_cast<std::uint16_t>(std::clamp((half - level) * 256 / 255, 0, 65280));
        noted[k] = static_cast<std::uint16_t>(both - half);
        const int sum = sums[k] + level - (sums[k] >> 8);
        wanted[k] = level < (27 * (sum + noted[k])) >> 14 ? 0 : 255;
      }
      support::for_each_form([&](const auto& form) {
        unsigned char levels[kLines];
        std::fill_n(levels, kLines, static_cast<unsigned char>(level));
        Lines lines{{}, 1, false};
        for (int k = 0; k < kLines; ++k) lines.levels[k] = levels + k;
        LineSums kept;
        std::copy_n(sums, kLines, kept);
        std::uint16_t kept_notes[kLines];
        std::copy_n(noted, kLines, kept_notes);
        form.segment.mark(lines, kept, kept_notes);
        for (int k = 0; k < kLines; ++k) ASSERT_EQ(levels[k], wanted[k]) << level << " " << k;
      });
    }
  }
}

}  // namespace
