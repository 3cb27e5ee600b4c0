// Image blocks: their layout, copies, the adoption of a caller's block, and their release.
#include <gtest/gtest.h>

#include <limits>

#include "image/exports.h"
#include "support/image.h"
#include "support/random.h"

namespace {

using support::Image;
using support::Random;

constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();

const unsigned char* start_of(Image& image) { return reinterpret_cast<const unsigned char*>(image.ptr()->pInfo); }

TEST(CreateImage, PadsRowsToWholeWords) {
  const struct {
    int width, bit_count;
    std::uint32_t stride;
  } cases[] = {{1, 1, 4},   {32, 1, 4}, {33, 1, 8}, {1, 24, 4}, {2, 24, 8},
               {5, 24, 16}, {5, 8, 8},  {4, 8, 4},  {1, 8, 4},  {9, 4, 8}};
  for (const auto& c : cases) {
    Image image;
    ASSERT_TRUE(CreateImage(image.ptr(), c.width, 3, c.bit_count, 0, 0));
    EXPECT_EQ(image.header().biSizeImage, 3 * c.stride) << c.width << " x " << c.bit_count;
  }
}

TEST(CreateImage, WritesEveryHeaderField) {
  Image image;
  ASSERT_TRUE(CreateImage(image.ptr(), 5, 7, 8, 11811, -3));
  const BITMAPINFOHEADER& header = image.header();
  EXPECT_EQ(header.biSize, 40u);
  EXPECT_EQ(header.biWidth, 5);
  EXPECT_EQ(header.biHeight, 7);
  EXPECT_EQ(header.biPlanes, 1);
  EXPECT_EQ(header.biBitCount, 8);
  EXPECT_EQ(header.biCompression, 0u);
  EXPECT_EQ(header.biSizeImage, 56u);
  EXPECT_EQ(header.biXPelsPerMeter, 11811);
  EXPECT_EQ(header.biYPelsPerMeter, -3);
  EXPECT_EQ(header.biClrUsed, 256u);
  EXPECT_EQ(header.biClrImportant, 0u);
}

TEST(CreateImage, LaysPaletteAndPixelsBehindTheHeader) {
  const struct {
    int bit_count;
    std::uint32_t colours;
  } cases[] = {{1, 2}, {2, 4}, {4, 16}, {8, 256}, {16, 0}, {24, 0}, {32, 0}};
  for (const auto& c : cases) {
    Image image;
    ASSERT_TRUE(CreateImage(image.ptr(), 3, 2, c.bit_count, 0, 0));
    EXPECT_EQ(image.header().biClrUsed, c.colours);
    EXPECT_EQ(reinterpret_cast<unsigned char*>(image.ptr()->pPalette) - start_of(image), 40);
    EXPECT_EQ(image.ptr()->pBits - start_of(image), 40 + 4 * static_cast<std::ptrdiff_t>(c.colours));
  }
}

TEST(CreateImage, GivesBilevelImagesBlackAndWhite) {
  Image image;
  ASSERT_TRUE(CreateImage(image.ptr(), 1, 1, 1, 0, 0));
  const RGBQUAD* palette = image.ptr()->pPalette;
  EXPECT_EQ(palette[0].rgbBlue, 0);
  EXPECT_EQ(palette[0].rgbGreen, 0);
  EXPECT_EQ(palette[0].rgbRed, 0);
  EXPECT_EQ(palette[1].rgbBlue, 255);
  EXPECT_EQ(palette[1].rgbGreen, 255);
  EXPECT_EQ(palette[1].rgbRed, 255);
}

TEST(CreateImage, GivesGrayImagesTheIdentityRamp) {
  Image image;
  ASSERT_TRUE(CreateImage(image.ptr(), 1, 1, 8, 0, 0));
  for (int i = 0; i < 256; ++i) {
    const RGBQUAD& entry = image.ptr()->pPalette[i];
    EXPECT_EQ(entry.rgbBlue, i);
    EXPECT_EQ(entry.rgbGreen, i);
    EXPECT_EQ(entry.rgbRed, i);
    EXPECT_EQ(entry.rgbReserved, 0);
  }
}

TEST(CreateImage, FillsEveryPixelByteWithWhitePaddingIncluded) {
  for (const int bit_count : {1, 4, 8, 24, 32}) {
    Image image;
    ASSERT_TRUE(CreateImage(image.ptr(), 5, 3, bit_count, 0, 0));
    const std::vector<unsigned char> pixels = image.pixels();
    EXPECT_EQ(pixels.size(), image.header().biSizeImage);
    for (const unsigned char byte : pixels) EXPECT_EQ(byte, 0xFF);
  }
}

TEST(CreateImage, LeavesRoomForAnUnwrittenPaletteOfFourBits) {
  Image image;
  ASSERT_TRUE(CreateImage(image.ptr(), 1, 1, 4, 0, 0));
  std::memset(image.ptr()->pPalette, 0x5A, 16 * 4);  // all of it belongs to the block
  EXPECT_EQ(*image.ptr()->pBits, 0xFF);              // and none of it to the pixels
}

TEST(CreateImage, OverwritesTheRecordWithoutFreeingWhatItHeld) {
  Image image;
  ASSERT_TRUE(CreateImage(image.ptr(), 1, 1, 8, 0, 0));
  BITMAPINFOHEADER* const before = image.ptr()->pInfo;
  ASSERT_TRUE(CreateImage(image.ptr(), 2, 2, 8, 0, 0));
  EXPECT_NE(image.ptr()->pInfo, before);
  EXPECT_EQ(before->biWidth, 1);  // still allocated
  std::free(before);
}

TEST(CreateImage, MakesImagesWithoutPixels) {
  const struct { int width, height; } cases[] = {{0, 0}, {0, 5}, {5, 0}};
  for (const auto& c : cases) {
    Image image;
    EXPECT_TRUE(CreateImage(image.ptr(), c.width, c.height, 8, 0, 0));
    ASSERT_FALSE(image.empty());
    EXPECT_EQ(image.header().biSizeImage, 0u);
    EXPECT_EQ(image.header().biWidth, c.width);
    EXPECT_EQ(image.header().biHeight, c.height);
  }
}

TEST(CreateImage, TakesSizesThatMakeNoBlockForAFailedAllocation) {
  const struct {
    int width, height, bit_count;
  } cases[] = {{-1, 5, 8},         {5, -1, 8},          {-1, -1, 8},           {-40, -40, 24},
               {kIntMin, 1, 8},    {1, kIntMin, 8},     {kIntMin, kIntMin, 1}, {kIntMax, kIntMax, 8},
               {kIntMax, 1, 24},   {kIntMax, 2, 1024},  {65536, 65536, 8},     {46341, 46341, 8},
               {0x40000000, 4, 8}, {0x10000000, 1, 128}};
  RGBQUAD palette{};
  unsigned char bits = 0;
  BITMAPINFOHEADER stale{};
  for (const auto& c : cases) {
    BITMAPPTR image{&stale, &palette, &bits};
    EXPECT_FALSE(CreateImage(&image, c.width, c.height, c.bit_count, 0, 0))
        << c.width << " x " << c.height << " x " << c.bit_count;
    EXPECT_EQ(image.pInfo, nullptr);
    EXPECT_EQ(image.pPalette, &palette);
    EXPECT_EQ(image.pBits, &bits);
  }
}

TEST(ImageCopy, CopiesHeaderPaletteAndPixels) {
  for (const int bit_count : {1, 4, 8, 24, 32}) {
    Image source(7, 5, bit_count);
    Random random(1);
    randomise(source, random);
    source.header().biPlanes = 7;
    source.header().biCompression = 3;
    source.header().biSizeImage = 12345;  // neither read nor corrected
    source.header().biClrImportant = 9;
    Image copy;
    ASSERT_TRUE(ImageCopy(source.ptr(), copy.ptr()));
    EXPECT_EQ(std::memcmp(copy.ptr()->pInfo, source.block().data(), source.block().size()), 0);
    EXPECT_EQ(copy.ptr()->pBits - start_of(copy), source.ptr()->pBits - start_of(source));
  }
}

TEST(ImageCopy, OfAnImageWithoutColoursHasNoPalette) {
  Image source(3, 2, 8, 0x42);
  source.header().biClrUsed = 0;
  Image copy;
  ASSERT_TRUE(ImageCopy(source.ptr(), copy.ptr()));
  EXPECT_EQ(copy.header().biClrUsed, 0u);
  EXPECT_EQ(static_cast<void*>(copy.ptr()->pBits), static_cast<void*>(copy.ptr()->pPalette));
  EXPECT_EQ(copy.ptr()->pBits - start_of(copy), 40);
  EXPECT_EQ(copy.pixels(), std::vector<unsigned char>(8, 0x42));
}

TEST(ImageCopy, TakesAShortPaletteAsTheHeaderSays) {
  Image source(3, 2, 8, 0x42);
  source.header().biClrUsed = 3;
  Image copy;
  ASSERT_TRUE(ImageCopy(source.ptr(), copy.ptr()));
  EXPECT_EQ(copy.ptr()->pBits - start_of(copy), 52);
  EXPECT_EQ(std::memcmp(copy.ptr()->pPalette, source.ptr()->pPalette, 12), 0);
  EXPECT_EQ(copy.pixels(), std::vector<unsigned char>(8, 0x42));
}

TEST(ImageCopy, OverwritesTheRecordWithoutFreeingWhatItHeld) {
  Image source(3, 2, 8, 0x42);
  BITMAPINFOHEADER stale{};
  Image copy;
  copy.ptr()->pInfo = &stale;
  ASSERT_TRUE(ImageCopy(source.ptr(), copy.ptr()));
  EXPECT_NE(copy.ptr()->pInfo, &stale);
}

TEST(ImageCopy, CopiesImagesWithoutPixels) {
  Image source(0, 0, 8);
  Image copy;
  ASSERT_TRUE(ImageCopy(source.ptr(), copy.ptr()));
  EXPECT_EQ(copy.header().biWidth, 0);
}

TEST(ImageCopy, TakesSizesThatMakeNoBlockForAFailedAllocation) {
  const struct {
    int width, height;
  } cases[] = {{-1, 5}, {5, -1}, {-64, -64}, {kIntMin, kIntMin}, {kIntMax, kIntMax}, {65536, 65536}};
  for (const auto& c : cases) {
    Image source(4, 4, 8);
    source.header().biWidth = c.width;
    source.header().biHeight = c.height;
    RGBQUAD palette{};
    unsigned char bits = 0;
    BITMAPPTR copy{nullptr, &palette, &bits};
    EXPECT_FALSE(ImageCopy(source.ptr(), &copy)) << c.width << " x " << c.height;
    EXPECT_EQ(copy.pInfo, nullptr);
    EXPECT_EQ(copy.pPalette, &palette);
    EXPECT_EQ(copy.pBits, &bits);
  }
}

TEST(FreeCardImg, AcceptsNothing) {
  EXPECT_EQ(FreeCardImg(nullptr), 1);
  void* block = nullptr;
  EXPECT_EQ(FreeCardImg(&block), 1);
  EXPECT_EQ(block, nullptr);
}

TEST(FreeCardImg, FreesTheBlockAndKeepsThePointer) {
  BITMAPPTR image{};
  ASSERT_TRUE(CreateImage(&image, 100, 100, 24, 0, 0));  // a leak here is one for the leak checker
  void* block = image.pInfo;
  const void* const before = block;
  EXPECT_EQ(FreeCardImg(&block), 1);
  EXPECT_EQ(block, before);
}

// Adoption is seen through an entry: it happens before the depth is judged, so also where the entry fails.
TEST(Adoption, WritesTheFullPaletteIntoTheCallersHeader) {
  const struct {
    int bit_count;
    std::uint32_t before, after;
  } cases[] = {{1, 0, 2}, {1, 77, 2}, {4, 0, 16}, {8, 0, 256}, {8, 12, 256}, {24, 5, 0}, {32, 1, 0}, {16, 3, 0}};
  for (const auto& c : cases) {
    Image image(8, 8, c.bit_count);
    image.header().biClrUsed = c.before;
    Image out;
    AutoClipRedundantImg(image.handle(), nullptr, out.ptr(), 1);
    EXPECT_EQ(image.header().biClrUsed, c.after) << c.bit_count << " bits";
  }
}

TEST(Adoption, ChangesNothingElse) {
  Image image(40, 30, 8, 90);
  image.header().biClrUsed = 0;
  std::vector<unsigned char> expected = image.block();
  const std::uint32_t colours = 256;
  std::memcpy(expected.data() + 32, &colours, 4);
  Image out;
  AutoClipRedundantImg(image.handle(), nullptr, out.ptr(), 1);
  EXPECT_EQ(image.block(), expected);
}

TEST(Adoption, OfAHandleToNullFailsAndTouchesNothing) {
  void* null_block = nullptr;
  RGBQUAD palette{};
  unsigned char bits = 0;
  BITMAPINFOHEADER info{};
  const auto untouched = [&](const BITMAPPTR& out) {
    return out.pInfo == &info && out.pPalette == &palette && out.pBits == &bits;
  };
  BITMAPPTR out{&info, &palette, &bits};
  EXPECT_EQ(AutoClipRedundantImg(&null_block, nullptr, &out, 1), -1);
  EXPECT_TRUE(untouched(out));
  EXPECT_EQ(AutoClipRedundantImg(nullptr, nullptr, &out, 1), -1);
  EXPECT_TRUE(untouched(out));
  EXPECT_EQ(AutoClipRedundantImg_ORVA(&null_block, nullptr, &out, 1), -1);
  EXPECT_TRUE(untouched(out));
  EXPECT_EQ(AutoClipImg_Rect_ORVA(&null_block, nullptr, 0, 0, 0, 0, 1), -1);
  EXPECT_EQ(BiLinear(&null_block, &out), -1);
  EXPECT_TRUE(untouched(out));
  EXPECT_EQ(BiCubic(&null_block, &out), -1);
  EXPECT_TRUE(untouched(out));
  EXPECT_EQ(null_block, nullptr);
}

}  // namespace
