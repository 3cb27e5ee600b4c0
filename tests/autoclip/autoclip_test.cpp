// The whole operation on drawn cards.
#include <gtest/gtest.h>

#include <thread>

#include "support/scans.h"

namespace {

using Bytes = std::vector<unsigned char>;
using support::Corners;
using support::Image;
using support::scan_of;
using support::turned_card;

int clip(Image& analyse, Image& cut, Image& out, int scale) {
  return AutoClipRedundantImg(analyse.handle(), cut.handle(), out.ptr(), scale);
}
int clip(Image& image, Image& out) { return AutoClipRedundantImg(image.handle(), nullptr, out.ptr(), 1); }

/** The block of a result, as bytes. */
Bytes block_of(Image& image, std::size_t size) {
  const auto* start = reinterpret_cast<const unsigned char*>(image.ptr()->pInfo);
  return {start, start + size};
}

void expect_copy(Image& out, Image& original) {
  ASSERT_FALSE(out.empty());
  EXPECT_EQ(block_of(out, original.block().size()), original.block());
  EXPECT_NE(static_cast<void*>(out.ptr()->pInfo), static_cast<void*>(original.ptr()->pInfo));
}

/** That the output's frame is white and its quarters are the card's, upright. */
void expect_upright_card(Image& out) {
  const int width = out.header().biWidth, height = out.header().biHeight, bytes = out.header().biBitCount / 8;
  for (int r = 0; r < height; ++r) {
    for (int c = 0; c < width; ++c) {
      if (r < height - 2 && c < width - 2) continue;
      for (int b = 0; b < bytes; ++b) ASSERT_EQ(out.at(r, c * bytes + b), 255) << r << ", " << c;
    }
  }
  // the middle half of each quarter; memory rows run from the bottom
  for (std::size_t quarter = 0; quarter < 4; ++quarter) {
    const int left = quarter % 2 == 0 ? width / 8 : 5 * width / 8, low = quarter < 2 ? 5 * height / 8 : height / 8;
    for (int r = low; r < low + height / 4; r += 3) {
      for (int c = left; c < left + width / 4; c += 3) {
        for (int b = 0; b < bytes; ++b) {
          ASSERT_EQ(out.at(r, c * bytes + b), support::kQuarters[quarter]) << "quarter " << quarter;
        }
      }
    }
  }
  // no glass left along the edges, but for the pixels that mix with it
  for (int r = 4; r < height - 6; ++r) {
    ASSERT_GT(out.at(r, 4 * bytes), 150) << "row " << r;
    ASSERT_GT(out.at(r, (width - 7) * bytes), 150) << "row " << r;
  }
  for (int c = 4; c < width - 6; ++c) {
    ASSERT_GT(out.at(4, c * bytes), 150) << "column " << c;
    ASSERT_GT(out.at(height - 7, c * bytes), 150) << "column " << c;
  }
}

TEST(AutoClip, BringsATurnedCardUprightIntoTheWholeFrame) {
  for (const int bit_count : {8, 24}) {
    for (const double degrees : {-5.0, -2.0, 0.0, 1.0, 4.0}) {
      Image scan = scan_of(turned_card(400, 300, 680, 480, degrees), 800, 600, bit_count);
      Image out;
      ASSERT_EQ(clip(scan, out), 1) << degrees;
      SCOPED_TRACE(degrees);
      EXPECT_EQ(out.header().biWidth, 800);
      EXPECT_EQ(out.header().biHeight, 600);
      EXPECT_EQ(out.header().biBitCount, bit_count);
      expect_upright_card(out);
    }
  }
}

TEST(AutoClip, StraightensPerspective) {
  Image scan = scan_of({60, 40, 745, 60, 40, 560, 765, 550}, 800, 600);
  Image out;
  ASSERT_EQ(clip(scan, out), 1);
  expect_upright_card(out);
}

TEST(AutoClip, GivesTheOutputTheSizeAndResolutionOfTheCut) {
  for (const int bit_count : {8, 24}) {
    Image small = scan_of(turned_card(200, 150, 340, 240, 2), 400, 300, bit_count);
    Image large = scan_of(turned_card(400, 300, 680, 480, 2), 803, 601, bit_count);
    small.header().biXPelsPerMeter = 1000;
    large.header().biXPelsPerMeter = 2000;
    large.header().biYPelsPerMeter = 3000;
    Image out;
    ASSERT_EQ(clip(small, large, out, 2), 1);
    EXPECT_EQ(out.header().biWidth, 803);
    EXPECT_EQ(out.header().biHeight, 601);
    EXPECT_EQ(out.header().biXPelsPerMeter, 2000);
    EXPECT_EQ(out.header().biYPelsPerMeter, 3000);
    EXPECT_EQ(out.header().biBitCount, bit_count);
    expect_upright_card(out);
  }
}

TEST(AutoClip, DoesNotReadTheSecondImageAtScaleOne) {
  Image scan = scan_of(turned_card(200, 150, 340, 240, 2), 400, 300);
  Image other(7, 5, 24, 9);
  other.header().biClrUsed = 77;
  const Bytes before = other.block();
  Image alone, beside, beside_null;
  ASSERT_EQ(clip(scan, alone), 1);
  ASSERT_EQ(clip(scan, other, beside, 1), 1);
  EXPECT_EQ(other.block(), before);
  EXPECT_EQ(beside.pixels(), alone.pixels());
  void* null_block = nullptr;
  ASSERT_EQ(AutoClipRedundantImg(scan.handle(), &null_block, beside_null.ptr(), 1), 1);
  EXPECT_EQ(beside_null.pixels(), alone.pixels());
}

TEST(AutoClip, KeepsTheTwoRightmostColumnsAndTopRowsWhite) {
  Image scan = scan_of(turned_card(200, 150, 340, 240, 0), 401, 300);  // three bytes of padding
  Image out;
  ASSERT_EQ(clip(scan, out), 1);
  int not_white = 0;
  for (int r = 0; r < 300; ++r) {
    for (int c = 0; c < out.stride(); ++c) {
      if (r >= 298 || c >= 399) {
        ASSERT_EQ(out.at(r, c), 255) << r << ", " << c;
      } else {
        not_white += out.at(r, c) != 255;
      }
    }
  }
  EXPECT_EQ(not_white, 298 * 399);
}

TEST(AutoClip, WarpsTheFrameWhenNoSideHasALine) {
  // corners (0.5, 1.5) to (398.5, 298.5) for (1, 1) to (398, 298): next to the identity
  Image page(400, 300, 8);
  for (int r = 0; r < 300; ++r) {
    for (int c = 0; c < 400; ++c) page.at(r, c) = static_cast<unsigned char>(60 + r / 4 + c / 8);
  }
  page.at(150, 2) = 255;
  page.at(151, 2) = 255;
  Image out;
  ASSERT_EQ(clip(page, out), 1);
  for (int r = 10; r < 280; r += 7) {
    for (int c = 10; c < 380; c += 7) EXPECT_NEAR(out.at(r, c), page.at(r, c), 2);
  }
}

TEST(AutoClip, LeavesTheCallersPixelsAlone) {
  for (const int bit_count : {1, 8, 24}) {
    Image scan =
        bit_count == 1 ? Image(400, 300, 1, 0x5A) : scan_of(turned_card(200, 150, 340, 240, 2), 400, 300, bit_count);
    const Bytes before = scan.block();
    Image out;
    EXPECT_GE(clip(scan, out), 0);
    EXPECT_EQ(scan.block(), before);
  }
}

TEST(AutoClip, CopiesTheImageToCutOfABilevelAnalysis) {
  Image bilevel(40, 30, 1, 0x5A);
  for (const int bit_count : {1, 8, 24, 4, 32}) {
    Image cut(80, 60, bit_count, 0x33);
    Image out;
    EXPECT_EQ(clip(bilevel, cut, out, 2), 0) << bit_count;
    expect_copy(out, cut);
  }
  Image alone;
  EXPECT_EQ(clip(bilevel, alone), 0);
  expect_copy(alone, bilevel);
}

TEST(AutoClip, CopiesTheImageToAnalyseOfABlankPage) {
  for (const int bit_count : {8, 24}) {
    Image blank(40, 30, bit_count, 60), large(80, 60, bit_count, 70);
    Image alone, scaled;
    EXPECT_EQ(clip(blank, alone), 0);
    expect_copy(alone, blank);
    EXPECT_EQ(clip(blank, large, scaled, 2), 0);
    expect_copy(scaled, blank);
  }
}

/** A record that tells whether it was touched. */
struct Untouched {
  BITMAPINFOHEADER info{};
  RGBQUAD palette{};
  unsigned char bits = 0;
  BITMAPPTR out{&info, &palette, &bits};
  bool holds() const { return out.pInfo == &info && out.pPalette == &palette && out.pBits == &bits; }
};

TEST(AutoClip, RefusesOtherDepthsUntouched) {
  for (const int bit_count : {2, 4, 16, 32}) {
    Image image(40, 30, bit_count, 60);
    for (const int scale : {1, 2}) {
      Untouched record;
      EXPECT_EQ(AutoClipRedundantImg(image.handle(), image.handle(), &record.out, scale), -1);
      EXPECT_TRUE(record.holds()) << bit_count;
    }
  }
}

TEST(AutoClip, RefusesMissingImages) {
  Image scan = scan_of(turned_card(200, 150, 340, 240, 2), 400, 300);
  void* null_block = nullptr;
  for (const int scale : {2, 0, -1}) {
    Untouched record;
    EXPECT_EQ(AutoClipRedundantImg(scan.handle(), &null_block, &record.out, scale), -1);
    EXPECT_TRUE(record.holds());
    EXPECT_EQ(AutoClipRedundantImg(scan.handle(), nullptr, &record.out, scale), -1);
    EXPECT_TRUE(record.holds());
    EXPECT_EQ(AutoClipRedundantImg(&null_block, scan.handle(), &record.out, scale), -1);
    EXPECT_TRUE(record.holds());
  }
  Image bilevel(40, 30, 1);
  Untouched record;
  EXPECT_EQ(AutoClipRedundantImg(bilevel.handle(), &null_block, &record.out, 2), -1);
  EXPECT_TRUE(record.holds());
}

TEST(AutoClip, RefusesDifferingDepthsWhereTheOutputWouldBeMade) {
  Image gray = scan_of(turned_card(200, 150, 340, 240, 2), 400, 300, 8);
  Image colour = scan_of(turned_card(400, 300, 680, 480, 2), 800, 600, 24);
  Image large_gray = scan_of(turned_card(400, 300, 680, 480, 2), 800, 600, 8);
  Image small_colour = scan_of(turned_card(200, 150, 340, 240, 2), 400, 300, 24);
  Image bilevel(800, 600, 1);
  Image four_bits(800, 600, 4);
  const auto refused = [](Image& analyse, Image& cut) {
    Untouched record;
    return AutoClipRedundantImg(analyse.handle(), cut.handle(), &record.out, 2) == -1 && record.holds();
  };
  EXPECT_TRUE(refused(gray, colour));
  EXPECT_TRUE(refused(small_colour, large_gray));
  EXPECT_TRUE(refused(gray, bilevel));
  EXPECT_TRUE(refused(gray, four_bits));
  // a page without corners is copied before the depths are compared
  Image blank(40, 30, 8, 60);
  Image out;
  EXPECT_EQ(clip(blank, colour, out, 2), 0);
  expect_copy(out, blank);
}

TEST(AutoClip, AdoptsBothImages) {
  Image small = scan_of(turned_card(200, 150, 340, 240, 2), 400, 300);
  Image large = scan_of(turned_card(400, 300, 680, 480, 2), 800, 600);
  small.header().biClrUsed = 0;
  large.header().biClrUsed = 3;
  Image out;
  EXPECT_EQ(clip(small, large, out, 2), 1);
  EXPECT_EQ(small.header().biClrUsed, 256u);
  EXPECT_EQ(large.header().biClrUsed, 256u);
  expect_upright_card(out);
}

TEST(AutoClip, IsSafeForAnyScale) {
  Image small = scan_of(turned_card(200, 150, 340, 240, 2), 400, 300);
  for (const int bit_count : {8, 24}) {
    Image analyse = scan_of(turned_card(200, 150, 340, 240, 2), 400, 300, bit_count);
    Image cut = scan_of(turned_card(200, 150, 340, 240, 2), 400, 300, bit_count);
    for (const int scale : {0, -1, -2, 3, 1000, 2147483647, -2147483647 - 1}) {
      Image out;
      EXPECT_EQ(clip(analyse, cut, out, scale), 1) << scale;
      EXPECT_EQ(out.header().biWidth, 400);
    }
  }
}

TEST(AutoClip, IsSafeForAnImageToCutOfAnySize) {
  for (const int bit_count : {8, 24}) {
    Image analyse = scan_of(turned_card(200, 150, 340, 240, 2), 400, 300, bit_count);
    for (const int width : {0, 1, 2, 3, 4, 5, 9}) {
      for (const int height : {0, 1, 2, 3, 4, 9}) {
        Image cut(width, height, bit_count, 40);
        Image out;
        EXPECT_EQ(clip(analyse, cut, out, 2), 1) << width << " x " << height;
        EXPECT_EQ(out.header().biWidth, width);
        EXPECT_EQ(out.header().biHeight, height);
      }
    }
  }
}

TEST(AutoClip, CopiesImagesWithoutPixels) {
  for (const int bit_count : {1, 8, 24}) {
    for (const auto& [width, height] : {std::pair{0, 0}, std::pair{0, 5}, std::pair{5, 0}, std::pair{1, 1}}) {
      Image image(width, height, bit_count, 0);
      Image out;
      EXPECT_EQ(clip(image, out), 0);
      expect_copy(out, image);
    }
  }
}

TEST(AutoClip, FailsForNegativeSizes) {
  for (const int bit_count : {1, 8, 24}) {
    Image image(8, 8, bit_count, 0);
    image.header().biWidth = -8;
    Untouched record;
    EXPECT_EQ(AutoClipRedundantImg(image.handle(), nullptr, &record.out, 1), -1) << bit_count;
    EXPECT_TRUE(bit_count == 1 ? record.out.pInfo == nullptr : record.holds());  // 1 bit: the copy itself fails
    image.header().biWidth = 8;
    image.header().biHeight = -8;
    EXPECT_EQ(AutoClipRedundantImg(image.handle(), nullptr, &record.out, 1), -1) << bit_count;
  }
}

TEST(AutoClip, CopiesGrayScansWithASideAbove32767) {
  Image long_scan(32768, 8, 8, 0);
  long_scan.at(3, 3) = 255;
  Image out;
  EXPECT_EQ(clip(long_scan, out), 0);
  expect_copy(out, long_scan);
}

TEST(AutoClip, GivesTheSameResultOnManyThreads) {
  const Corners card = turned_card(400, 300, 680, 480, 3);
  Image scan = scan_of(card, 800, 600, 24);
  Image alone;
  ASSERT_EQ(clip(scan, alone), 1);
  const Bytes expected = alone.pixels();
  constexpr std::size_t kThreads = 6, kRounds = 2;
  std::vector<std::vector<Bytes>> results(kThreads);
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < kThreads; ++t) {
    threads.emplace_back([&scan, &mine = results[t]] {
      for (std::size_t round = 0; round < kRounds; ++round) {
        Image copy = scan;
        Image out;
        if (clip(copy, out) == 1) mine.push_back(out.pixels());
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::vector<Bytes>& mine : results) {
    ASSERT_EQ(mine.size(), kRounds);
    for (const Bytes& pixels : mine) EXPECT_TRUE(pixels == expected);
  }
}

TEST(AutoClip, FailsOnScansWhoseFrameSinglePrecisionCannotTellFromTheirSize) {
  Image speck(40, 30, 8, 0);
  speck.at(5, 5) = 255;
  // 2^25 and 2^25 + 1 are the same single-precision number.
  Image wide((1 << 25) + 2, 1, 8, 0);
  Image out;
  EXPECT_EQ(AutoClipRedundantImg(speck.handle(), wide.handle(), out.ptr(), 2), -1);
  EXPECT_TRUE(out.empty());
}

}  // namespace
