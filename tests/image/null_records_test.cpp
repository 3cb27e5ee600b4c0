// Records, handles and results that are null, and headers of sizes that no image has, are refused by every entry.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>

#include "autoclip/exports.h"
#include "cardcut/exports.h"
#include "image/exports.h"
#include "scale/exports.h"
#include "segment/exports.h"
#include "support/image.h"

namespace {

using support::Image;

TEST(NullRecords, AreRefusedByTheClip) {
  Image scan(40, 30, 8, 90);
  EXPECT_EQ(AutoClipRedundantImg(scan.handle(), nullptr, nullptr, 1), -1);
  EXPECT_EQ(vantrel_auto_clip(scan.handle(), nullptr, nullptr, 1), -1);
  EXPECT_EQ(AutoClipRedundantImg_ORVA(scan.handle(), nullptr, nullptr, 1), -1);
}

TEST(NullRecords, HaveNoCorners) {
  Image scan(40, 30, 8, 90);
  BITMAPPTR empty{};
  vantrel_corner_search found{};
  EXPECT_EQ(vantrel_find_corners(scan.ptr(), nullptr), 0);
  for (const BITMAPPTR* none : {static_cast<const BITMAPPTR*>(nullptr), static_cast<const BITMAPPTR*>(&empty)}) {
    found.verdict = VANTREL_CORNERS_FOUND;
    EXPECT_EQ(vantrel_find_corners(none, &found), 0);
    EXPECT_EQ(found.verdict, VANTREL_NOT_GRAY);
  }
  std::array<float, 8> corners{}, box{};
  EXPECT_FALSE(AutoDetectCorner(nullptr, corners.data(), box.data()));
  EXPECT_FALSE(AutoDetectCorner(&empty, corners.data(), box.data()));
}

TEST(NullRecords, HaveNoCards) {
  BITMAPPTR empty{};
  for (BITMAPPTR* none : {static_cast<BITMAPPTR*>(nullptr), &empty}) {
    MYRECT rect{1, 2, 3, 4, 5};
    EXPECT_FALSE(CutCard(none, rect));
    EXPECT_FALSE(CutCard24(none, rect));
    EXPECT_EQ(rect.left, 1);
    EXPECT_EQ(rect.bottom, 4);
    RectRegions regions{};
    EXPECT_EQ(CardSeg(none, regions), -1);
    int first = 8;
    int second = 9;
    EXPECT_FALSE(ClipImg(none, first, second));
    EXPECT_EQ(first, 8);
    EXPECT_EQ(second, 9);
  }
}

TEST(NullRecords, AreNeitherCroppedNorReducedNorEnlarged) {
  Image image(40, 30, 8, 90);
  BITMAPPTR empty{};
  BITMAPPTR out{};
  for (BITMAPPTR* none : {static_cast<BITMAPPTR*>(nullptr), &empty}) {
    EXPECT_EQ(CutRectImage(none, &out, {0, 9, 9, 0, 0}), -1);
    EXPECT_FALSE(Gray2ScaledGray(none, &out, 2));
    EXPECT_FALSE(Color2ScaledGray(none, &out, 2));
    EXPECT_FALSE(Bin2ScaledGray(none, &out, 2));
    EXPECT_EQ(out.pInfo, nullptr);
  }
  EXPECT_EQ(CutRectImage(image.ptr(), nullptr, {0, 9, 9, 0, 0}), -1);
  EXPECT_FALSE(Gray2ScaledGray(image.ptr(), nullptr, 2));
  EXPECT_FALSE(Gray2ScaledGray(image.ptr(), &out, 0));
  EXPECT_EQ(BiLinear(image.handle(), nullptr), -1);
  EXPECT_EQ(BiCubic(image.handle(), nullptr), -1);
  EXPECT_EQ(out.pInfo, nullptr);
}

TEST(ImpossibleSizes, MakeNoImage) {
  constexpr int kMost = std::numeric_limits<int>::max();
  const std::array<std::array<int, 3>, 5> shapes = {
      {{-1, 5, 8}, {5, -1, 8}, {5, 5, -1}, {5, 5, 65536}, {kMost, kMost, 24}}};
  for (const auto& [width, height, bit_count] : shapes) {
    BITMAPPTR out{};
    EXPECT_FALSE(CreateImage(&out, width, height, bit_count, 0, 0)) << width << " x " << height << ", " << bit_count;
    EXPECT_EQ(out.pInfo, nullptr);
  }
  // The pixels alone would fit; with the palette the block is one byte too large.
  BITMAPPTR out{};
  EXPECT_FALSE(CreateImage(&out, 4, (kMost - 40 - 1024) / 4 + 1, 8, 0, 0));
}

/** A header without the pixels that it announces: what is refused reads none. */
Image hollow(int width, int height, int bit_count) {
  Image image(0, 0, bit_count);
  image.header().biWidth = width;
  image.header().biHeight = height;
  return image;
}

TEST(ImpossibleSizes, AreNeitherSegmentedNorClippedNorEnlarged) {
  constexpr int kMost = std::numeric_limits<int>::max();
  RectRegions regions{};
  EXPECT_EQ(CardSeg(hollow(kMost, kMost, 8).ptr(), regions), -1);
  int first = 8;
  int second = 9;
  EXPECT_FALSE(ClipImg(hollow(65536, 32768, 8).ptr(), first, second));
  EXPECT_EQ(first, 8);
  for (const auto enlarge : {BiLinear, BiCubic}) {
    BITMAPPTR out{};
    EXPECT_EQ(enlarge(hollow(-1, 5, 8).handle(), &out), -1);
    EXPECT_EQ(enlarge(hollow(5, -1, 8).handle(), &out), -1);
    EXPECT_EQ(out.pInfo, nullptr);
  }
}

}  // namespace
