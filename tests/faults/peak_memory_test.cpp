// The most memory that operations take at once beside what their caller gets.
#include <gtest/gtest.h>

#include <cstdint>
#include <utility>

#include "autoclip/exports.h"
#include "cardcut/exports.h"
#include "faults/failing_allocators.h"
#include "image/exports.h"
#include "scale/exports.h"
#include "segment/exports.h"
#include "support/image.h"
#include "support/random.h"

namespace {

using support::Image;

constexpr int kWidth = 1100, kHeight = 700;
constexpr std::int64_t kPixels = std::int64_t{kWidth} * kHeight;
constexpr std::int64_t kRow = 3 * kWidth;

/** A bright card with print on dark, noisy ground. */
Image printed_card(int bit_count) {
  Image scan(kWidth, kHeight, bit_count);
  support::Random random(4);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const bool card = y >= 60 && y < 640 && x >= 70 && x < 1030;
      const bool ink = card && y / 24 % 3 == 0 && x > 200 && x < 800 && (x / 3 * 7 + y / 4 * 5) % 11 < 4;
      for (int c = 0; c < bit_count / 8; ++c) {
        const int level = ink ? 40 : card ? 230 : 50;
        scan.at(y, x * bit_count / 8 + c) = static_cast<unsigned char>(level + random.pick(-3, 3));
      }
    }
  }
  return scan;
}

/** The most that an operation takes, less what the image that it makes keeps. */
template <class Operation>
std::int64_t beside_result(Operation operation) {
  Image made;
  const std::int64_t before = failing::taken();
  failing::most_taken();
  EXPECT_TRUE(operation(made));
  const std::int64_t kept = failing::taken() - before;
  return failing::most_taken() - before - kept;
}

TEST(PeakMemory, OfTheMainOperationIsUnderSixFifthsOfAByteAPixel) {
  Image colour = printed_card(24);
  const std::int64_t most =
      beside_result([&](Image& card) { return AutoClipRedundantImg(colour.handle(), nullptr, card.ptr(), 1) == 1; });
  EXPECT_LE(5 * most, 6 * kPixels);
  // The gray levels, both maps and the votes of a band are more than the card: what is counted here is not nothing.
  EXPECT_GE(5 * most, kPixels);
}

TEST(PeakMemory, OfOtherOperationsIsSomeRows) {
  Image gray = printed_card(8), colour = printed_card(24);
  EXPECT_EQ(beside_result([&](Image& made) { return Color2Gray(colour.ptr(), made.ptr()); }), 0);
  EXPECT_EQ(beside_result([&](Image& made) {
              return CutRectImage(colour.ptr(), made.ptr(), {1, 698, 1098, 1, 0}) == 1;
            }),
            0);
  EXPECT_LE(beside_result([&](Image& made) { return BiLinear(colour.handle(), made.ptr()) == 1; }), 3 * kRow);
  EXPECT_LE(beside_result([&](Image& made) { return BiCubic(colour.handle(), made.ptr()) == 1; }), 11 * kRow);
  EXPECT_LE(beside_result([&](Image&) { return Moving_Average(gray.ptr()->pBits, kWidth, kHeight, gray.stride()); }),
            23 * kRow);
  // Counters of 21 angles for the distances of a band: a quarter of the rows at most, and what leaning lines add.
  MYRECT rect{};
  EXPECT_LE(beside_result([&](Image&) { return CutCard(gray.ptr(), rect); }), 12 * kRow);
  EXPECT_LE(beside_result([&](Image&) { return CutCard24(colour.ptr(), rect); }), 12 * kRow);
}

}  // namespace
