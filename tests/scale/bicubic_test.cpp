// Enlarging by the four-tap kernel.
#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>
#include <vector>

#include "scale/exports.h"
#include "support/image.h"
#include "support/random.h"

namespace {

using support::Image;
using support::Random;
using Bytes = std::vector<unsigned char>;

/** A gray image whose rows are all the same. Its padding bytes are 99. */
Image equal_rows(std::initializer_list<int> levels, int rows) {
  const int width = static_cast<int>(levels.size());
  Image image(width, rows, 8, 99);
  for (int y = 0; y < rows; ++y) {
    for (int x = 0; x < width; ++x) image.at(y, x) = static_cast<unsigned char>(levels.begin()[x]);
  }
  return image;
}

/** A gray image whose columns are all the same. */
Image equal_columns(std::initializer_list<int> levels, int columns) {
  const int height = static_cast<int>(levels.size());
  Image image(columns, height, 8, 99);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < columns; ++x) image.at(y, x) = static_cast<unsigned char>(levels.begin()[y]);
  }
  return image;
}

/** The output, `width` bytes a row; whatever is written behind it fails the test. */
struct Enlarged {
  Enlarged(Image& image, int row_bytes, short factor = 2)
      : width(row_bytes), bytes(static_cast<std::size_t>(row_bytes * 2 * image.height()) + 64, 0xEE) {
    BITMAPINFOHEADER header{};
    BITMAPPTR record{&header, nullptr, bytes.data()};
    EXPECT_TRUE(BiCubicMethod(image.ptr(), &record, factor));
    EXPECT_EQ(Bytes(bytes.end() - 64, bytes.end()), Bytes(64, 0xEE)) << "written beyond the output";
  }
  Bytes row(int r) const { return {bytes.begin() + r * width, bytes.begin() + (r + 1) * width}; }

  int width;
  Bytes bytes;
};

TEST(BiCubicDir, IsTheUnclampedKernel) {
  EXPECT_EQ(BiCubicDir(0, 0, 255, 255), 128);
  EXPECT_EQ(BiCubicDir(255, 0, 0, 0), -16);
  EXPECT_EQ(BiCubicDir(0, 255, 255, 0), 287);
  EXPECT_EQ(BiCubicDir(7, 7, 7, 7), 7);
  EXPECT_EQ(BiCubicDir(1, 2, 3, 4), 3);
  EXPECT_EQ(BiCubicDir(9, 0, 0, 0), -1) << "-1 / 16 goes down, not towards zero";
  EXPECT_EQ(BiCubicDir(8, 0, 0, 0), 0);
}

TEST(BiCubicMethod, InterpolatesColumnsInsideTheBorder) {
  Image image = equal_rows({10, 20, 40, 80, 160, 250}, 4);
  const Enlarged out(image, 12);
  // Between 20 and 40: (9 x 60 - 90 + 8) / 16; 40 and 80: (9 x 120 - 180 + 8) / 16; 80 and 160: (9 x 240 - 290 + 8)
  // / 16. The rows are equal, so the row between them repeats these values: (18 v - 2 v + 8) / 16 = v.
  EXPECT_EQ(out.row(2), (Bytes{10, 10, 20, 28, 40, 56, 80, 117, 160, 160, 250, 250}));
  EXPECT_EQ(out.row(3), (Bytes{10, 10, 20, 28, 40, 56, 80, 117, 160, 160, 250, 250}));
}

TEST(BiCubicMethod, InterpolatesRowsInsideTheBorder) {
  Image image = equal_columns({10, 20, 40, 80, 160, 250}, 4);
  const Enlarged out(image, 8);
  const int column_2[] = {10, 10, 20, 28, 40, 56, 80, 117, 160, 160, 250, 250};
  for (int r = 0; r < 12; ++r) EXPECT_EQ(out.row(r)[2], column_2[r]) << r;
}

TEST(BiCubicMethod, GivesHalfwayAcrossAStep) {
  Image image = equal_rows({0, 0, 255, 255}, 4);
  const Enlarged out(image, 8);
  EXPECT_EQ(out.row(2), (Bytes{0, 0, 0, 128, 255, 255, 255, 255}));
}

TEST(BiCubicMethod, ClampsRingingAtBothEnds) {
  Image dark = equal_rows({255, 0, 0, 0}, 4);
  EXPECT_EQ(Enlarged(dark, 8).row(2), (Bytes{255, 255, 0, 0, 0, 0, 0, 0}));
  Image bright = equal_rows({0, 255, 255, 0}, 4);
  EXPECT_EQ(Enlarged(bright, 8).row(2), (Bytes{0, 0, 255, 255, 255, 255, 0, 0}));
}

TEST(BiCubicMethod, ClampsOnlyAfterBothDirections) {
  // The rows give 287, -16, -16 and 287 at the new column: (9 x -32 - 574 + 8) / 16 is far below 0, and with the rows
  // swapped (9 x 574 + 32 + 8) / 16 far above 255. A mixed set tells early clamping from late.
  Image image(4, 4, 8, 0);
  const int rows[4][4] = {{0, 255, 255, 0}, {255, 0, 0, 0}, {0, 255, 255, 0}, {0, 100, 100, 0}};
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 4; ++x) image.at(y, x) = static_cast<unsigned char>(rows[y][x]);
  }
  // Row values 287, -16, 287, 113: (9 x 271 - 400 + 8) / 16 = 127. Clamped early, 255, 0, 255, 113: 120.
  EXPECT_EQ(Enlarged(image, 8).row(3)[3], 127);
}

TEST(BiCubicMethod, RepeatsPixelsNearTheBorder) {
  Image image(6, 6, 8);
  Random random(1);
  randomise(image, random);
  const Enlarged out(image, 12);
  for (const int r : {0, 1, 8, 9, 10, 11}) {
    for (int q = 0; q < 12; ++q) EXPECT_EQ(out.row(r)[static_cast<std::size_t>(q)], image.at(r / 2, q / 2));
  }
  for (int r = 0; r < 12; ++r) {
    for (const int q : {0, 1, 8, 9, 10, 11}) {
      if (r % 2 == 1 && r > 1 && r < 8) {
        EXPECT_EQ(out.row(r)[static_cast<std::size_t>(q)], image.at(r / 2, q / 2));
      }
    }
  }
}

TEST(BiCubicMethod, RepeatsAllPixelsOfSmallImages) {
  Random random(2);
  for (const auto& [width, height] : {std::pair{3, 9}, std::pair{9, 3}, std::pair{1, 1}, std::pair{2, 2}}) {
    Image image(width, height, 8);
    randomise(image, random);
    const int out_width = (2 * width + 3) / 4 * 4;
    const Enlarged out(image, out_width);
    for (int r = 0; r < 2 * height; ++r) {
      for (int q = 0; q < 2 * width; ++q) {
        EXPECT_EQ(out.row(r)[static_cast<std::size_t>(q)], image.at(r / 2, q / 2)) << width << " x " << height;
      }
    }
  }
}

TEST(BiCubicMethod, RepeatsTheLastColumnInTheRoundingColumns) {
  Image gray = equal_rows({1, 2, 3, 4, 5}, 5);
  const Enlarged out(gray, 12);
  for (int r = 0; r < 10; ++r) {
    EXPECT_EQ(out.row(r)[10], 5);
    EXPECT_EQ(out.row(r)[11], 5);
  }
  // A 24-bit row of five pixels has one byte of padding; column 5 would begin in it.
  Image colour(5, 4, 24, 99);
  for (int y = 0; y < 4; ++y) {
    for (int b = 0; b < 15; ++b) colour.at(y, b) = static_cast<unsigned char>(b);
  }
  const Enlarged wide(colour, 36);
  for (int r = 0; r < 8; ++r) {
    const Bytes row = wide.row(r);
    EXPECT_EQ(Bytes(row.begin() + 24, row.end()), (Bytes{12, 13, 14, 12, 13, 14, 12, 13, 14, 12, 13, 14}));
  }
}

TEST(BiCubicMethod, InterpolatesEachColourByItself) {
  Image image(4, 4, 24, 0);
  for (int y = 0; y < 4; ++y) {
    const Bytes row{10, 0, 255, 20, 0, 0, 40, 255, 0, 80, 255, 0};
    std::copy(row.begin(), row.end(), image.row(y));
  }
  const Bytes row = Enlarged(image, 24).row(2);
  EXPECT_EQ(Bytes(row.begin() + 9, row.begin() + 12), (Bytes{28, 128, 0}));
}

TEST(BiCubicMethod, IgnoresTheFactor) {
  Image image(7, 6, 8);
  Random random(3);
  randomise(image, random);
  const Enlarged twice(image, 16);
  for (const auto factor : std::initializer_list<short>{0, 1, 3, -2})
    EXPECT_EQ(Enlarged(image, 16, factor).bytes, twice.bytes) << factor;
}

TEST(BiCubicMethod, RefusesMissingImages) {
  Image image = equal_rows({1, 2}, 1);
  Bytes out(64, 0xEE);
  BITMAPINFOHEADER header{};
  BITMAPPTR record{&header, nullptr, out.data()};
  BITMAPPTR no_header{nullptr, nullptr, image.ptr()->pBits};
  BITMAPPTR no_bits{image.ptr()->pInfo, nullptr, nullptr};
  BITMAPPTR no_output{&header, nullptr, nullptr};
  EXPECT_FALSE(BiCubicMethod(nullptr, &record, 2));
  EXPECT_FALSE(BiCubicMethod(&no_header, &record, 2));
  EXPECT_FALSE(BiCubicMethod(&no_bits, &record, 2));
  EXPECT_FALSE(BiCubicMethod(image.ptr(), nullptr, 2));
  EXPECT_FALSE(BiCubicMethod(image.ptr(), &no_output, 2));
  EXPECT_EQ(out, Bytes(64, 0xEE));
}

TEST(BiCubicMethod, TakesWidthAndHeightInSixteenBits) {
  Image image(65536 + 4, 4, 8, 7);
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 4; ++x) image.at(y, x) = x < 2 ? 0 : 255;
  }
  EXPECT_EQ(Enlarged(image, 8).row(2), (Bytes{0, 0, 0, 128, 255, 255, 255, 255}));
}

TEST(BiCubicMethod, WritesNothingForASideThatIsNegativeInSixteenBits) {
  for (const auto& [width, height] : {std::pair{40000, 1}, std::pair{1, 40000}, std::pair{65536, 1}}) {
    Image image(width, height, 8, 9);
    Bytes out(64, 0xEE);
    BITMAPINFOHEADER header{};
    BITMAPPTR record{&header, nullptr, out.data()};
    // no columns are no work, a negative number of rows is none that could be allocated
    EXPECT_EQ(BiCubicMethod(image.ptr(), &record, 2), height == 1);
    EXPECT_EQ(out, Bytes(64, 0xEE)) << width << " x " << height;
  }
}

TEST(BiCubicMethod, RefusesANegativeWidthOrHeightThatIsPositiveInSixteenBits) {
  for (const auto& [width, height] : {std::pair{-65535, 1}, std::pair{1, -65535}}) {
    Image image(1, 1, 8, 9);
    image.header().biWidth = width;
    image.header().biHeight = height;
    Bytes out(64, 0xEE);
    BITMAPINFOHEADER header{};
    BITMAPPTR record{&header, nullptr, out.data()};
    EXPECT_FALSE(BiCubicMethod(image.ptr(), &record, 2)) << width << " x " << height;
    EXPECT_EQ(out, Bytes(64, 0xEE));
  }
}

}  // namespace
