// The small, smooth copy of a scan: its levels, for every layout of the pixels.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "anywhere/copy.h"
#include "anywhere/stripes.h"
#include "support/random.h"

namespace {

using namespace vantrel::anywhere;

struct Colour {
  unsigned char red, green, blue;
};

constexpr std::array kLayouts = {Layout::kGray, Layout::kBgr,  Layout::kRgb,
                                 Layout::kBgra, Layout::kRgba, Layout::kBilevel};

bool is_coloured(Layout layout) { return layout != Layout::kGray && layout != Layout::kBilevel; }

/** A scan whose rows have 5 bytes behind them that belong to nothing, and may run upwards in memory. */
class Pixels {
 public:
  template <class At>
  Pixels(int rows, int cols, Layout layout, bool upwards, At at)
      : rows_(rows), cols_(cols), layout_(layout), upwards_(upwards) {
    bytes_.assign(static_cast<std::size_t>(rows) * stride(), 0xA5);
    for (int row = 0; row < rows; ++row)
      for (int col = 0; col < cols; ++col) set(row, col, at(row, col));
  }

  Scan scan() const {
    const auto apart = static_cast<std::ptrdiff_t>(stride());
    const unsigned char* first = bytes_.data() + (upwards_ ? (rows_ - 1) * apart : 0);
    return {{first, rows_, cols_, upwards_ ? -apart : apart}, layout_};
  }

 private:
  std::size_t stride() const {
    const auto cols = static_cast<std::size_t>(cols_);
    if (layout_ == Layout::kBilevel) return (cols + 7) / 8 + 5;
    return cols * (layout_ == Layout::kGray ? 1 : layout_ == Layout::kBgr || layout_ == Layout::kRgb ? 3 : 4) + 5;
  }
  void set(int row, int col, const Colour& colour) {
    unsigned char* start = bytes_.data() + static_cast<std::size_t>(upwards_ ? rows_ - 1 - row : row) * stride();
    const auto x = static_cast<std::size_t>(col);
    if (layout_ == Layout::kGray) {
      start[x] = colour.green;
    } else if (layout_ == Layout::kBilevel) {
      const unsigned bit = 128U >> (x % 8);
      start[x / 8] = static_cast<unsigned char>(colour.green >= 128 ? start[x / 8] | bit : start[x / 8] & ~bit);
    } else {
      const bool red_first = layout_ == Layout::kRgb || layout_ == Layout::kRgba;
      unsigned char* pixel = start + x * (layout_ == Layout::kBgr || layout_ == Layout::kRgb ? 3 : 4);
      pixel[0] = red_first ? colour.red : colour.blue;
      pixel[1] = colour.green;
      pixel[2] = red_first ? colour.blue : colour.red;
    }
  }

  int rows_, cols_;
  Layout layout_;
  bool upwards_;
  std::vector<unsigned char> bytes_;
};

std::vector<int> plane_of(const Copy& copy, std::size_t plane) {
  const auto all = copy.planes[plane].all();
  return {all.begin(), all.end()};
}

TEST(Copy, HasASideNearFiveHundred) {
  EXPECT_EQ(reduction_factor(0, 0), 1);
  EXPECT_EQ(reduction_factor(1, 1), 1);
  EXPECT_EQ(reduction_factor(749, 300), 1);
  EXPECT_EQ(reduction_factor(300, 750), 2);
  EXPECT_EQ(reduction_factor(1249, 1249), 2);
  EXPECT_EQ(reduction_factor(1250, 1), 3);
  EXPECT_EQ(reduction_factor(2480, 3508), 7);
}

TEST(Copy, KeepsLightnessAndTwoColoursInSixteenths) {
  for (const Layout layout : {Layout::kBgr, Layout::kRgb, Layout::kBgra, Layout::kRgba}) {
    const Pixels pixels(2, 3, layout, false, [](int, int) { return Colour{200, 100, 51}; });
    const Copy copy = reduce(pixels.scan());
    ASSERT_TRUE(copy.ready());
    EXPECT_EQ(copy.plane_count, 3u);
    EXPECT_EQ(plane_of(copy, kLight), std::vector<int>(6, 1804));       // 112.75
    EXPECT_EQ(plane_of(copy, kRedGreen), std::vector<int>(6, 800));     // 50
    EXPECT_EQ(plane_of(copy, kBlueYellow), std::vector<int>(6, -792));  // -49.5
  }
}

TEST(Copy, OfGrayOrBilevelPixelsHasOnePlane) {
  for (const Layout layout : {Layout::kGray, Layout::kBilevel}) {
    const Pixels pixels(2, 3, layout, false, [](int, int) { return Colour{9, 255, 9}; });
    const Copy copy = reduce(pixels.scan());
    ASSERT_TRUE(copy.ready());
    EXPECT_EQ(copy.plane_count, 1u);
    EXPECT_EQ(plane_of(copy, kLight), std::vector<int>(6, 255 * 16));
    EXPECT_EQ(copy.planes[kRedGreen].size(), 0u);
    EXPECT_EQ(copy.planes[kBlueYellow].size(), 0u);
  }
}

TEST(Copy, HoldsTheMeansOfBlocks) {
  const Pixels pixels(24, 800, Layout::kGray, false, [](int row, int col) {
    constexpr std::array<unsigned char, 4> kBlock = {10, 11, 12, 14};
    return Colour{0, kBlock[static_cast<std::size_t>(row % 2 * 2 + col % 2)], 0};
  });
  const Copy copy = reduce(pixels.scan());
  EXPECT_EQ(copy.factor, 2);
  EXPECT_EQ(copy.rows, 12);
  EXPECT_EQ(copy.cols, 400);
  EXPECT_EQ(plane_of(copy, kLight), std::vector<int>(4800, 188));  // 11.75
}

TEST(Copy, HoldsTheShareOfWhiteBits) {
  const Pixels pixels(24, 800, Layout::kBilevel, false, [](int row, int col) {
    return Colour{0, static_cast<unsigned char>(row % 2 == 0 && col % 2 == 0 ? 255 : 0), 0};
  });
  EXPECT_EQ(plane_of(reduce(pixels.scan()), kLight), std::vector<int>(4800, 1020));  // 63.75
}

TEST(Copy, DropsWhatIsLeftOver) {
  const Pixels pixels(25, 801, Layout::kGray, false, [](int row, int col) {
    return Colour{0, static_cast<unsigned char>(row == 24 || col == 800 ? 255 : 20), 0};
  });
  const Copy copy = reduce(pixels.scan());
  EXPECT_EQ(copy.rows, 12);
  EXPECT_EQ(copy.cols, 400);
  EXPECT_EQ(plane_of(copy, kLight), std::vector<int>(4800, 320));
}

TEST(Copy, IsSmoothedBothWays) {
  const Pixels pixels(5, 5, Layout::kGray, false, [](int row, int col) {
    return Colour{0, static_cast<unsigned char>(row == 2 && col == 2 ? 16 : 0), 0};
  });
  EXPECT_EQ(plane_of(reduce(pixels.scan()), kLight), (std::vector<int>{0, 0,  0,  0,  0,  //
                                                                       0, 16, 32, 16, 0,  //
                                                                       0, 32, 64, 32, 0,  //
                                                                       0, 16, 32, 16, 0,  //
                                                                       0, 0,  0,  0,  0}));
}

TEST(Copy, RepeatsItsRimWhereItIsSmoothed) {
  const Pixels pixels(3, 3, Layout::kGray, false, [](int row, int col) {
    return Colour{0, static_cast<unsigned char>(row == 0 && col == 0 ? 16 : 0), 0};
  });
  EXPECT_EQ(plane_of(reduce(pixels.scan()), kLight), (std::vector<int>{144, 48, 0,  //
                                                                       48, 16, 0,   //
                                                                       0, 0, 0}));
}

TEST(Copy, OfNoPixelsIsEmptyAndReady) {
  for (const Layout layout : kLayouts) {
    for (const auto& [rows, cols] : {std::pair{0, 0}, {0, 7}, {7, 0}, {1, 1000}}) {
      const std::vector<unsigned char> bytes(4000);
      const Copy copy = reduce({{bytes.data(), rows, cols, 4000}, layout});
      EXPECT_TRUE(copy.ready());
      EXPECT_EQ(copy.size(), 0u);
    }
  }
}

TEST(HalvedCopy, HoldsSmoothedMeansOfFour) {
  const Pixels pixels(4, 6, Layout::kGray, false, [](int row, int col) {
    return Colour{0, static_cast<unsigned char>(row < 2 && col < 2 ? 64 : 0), 0};
  });
  const Copy copy = reduce(pixels.scan());
  const Copy half = halved(copy);
  ASSERT_TRUE(half.ready());
  EXPECT_EQ(half.factor, 2);
  EXPECT_EQ(half.rows, 2);
  EXPECT_EQ(half.cols, 3);
  // The copy is 64 levels times {16, 12, 4, 0} / 16 both ways, so that the means are {14, 2, 0}^2 / 256, smoothed
  // {11, 4.5, 0.5}^2 / 256 across and {11, 5}^2 down.
  EXPECT_EQ(plane_of(half, kLight), (std::vector<int>{484, 198, 22, 220, 90, 10}));
}

TEST(HalvedCopy, DropsTheLastRowAndColumnOfOddSizes) {
  for (const auto& [rows, cols] : {std::pair{5, 7}, {1, 7}, {1, 1}, {0, 0}}) {
    const Pixels pixels(rows, cols, Layout::kRgb, false, [](int, int) { return Colour{200, 100, 51}; });
    const Copy half = halved(reduce(pixels.scan()));
    ASSERT_TRUE(half.ready());
    EXPECT_EQ(half.rows, rows / 2);
    EXPECT_EQ(half.cols, cols / 2);
    EXPECT_EQ(plane_of(half, kBlueYellow), std::vector<int>(half.size(), -792));
  }
}

/** The copy by its definition, one pixel after another. */
class PlainCopy {
 public:
  template <class At>
  PlainCopy(int rows, int cols, int factor, At at) : rows_(rows / factor), cols_(cols / factor) {
    for (auto& plane : planes_) plane.resize(static_cast<std::size_t>(rows_ * cols_));
    for (int row = 0; row < rows_; ++row) {
      for (int col = 0; col < cols_; ++col) {
        double red = 0, green = 0, blue = 0;
        for (int r = 0; r < factor; ++r) {
          for (int c = 0; c < factor; ++c) {
            const Colour colour = at(row * factor + r, col * factor + c);
            red += colour.red;
            green += colour.green;
            blue += colour.blue;
          }
        }
        const double count = factor * factor;
        place(kLight, row, col) = static_cast<int>(std::lround(4 * (blue + 2 * green + red) / count));
        place(kRedGreen, row, col) = static_cast<int>(std::lround(8 * (red - green) / count));
        place(kBlueYellow, row, col) = static_cast<int>(std::lround(4 * (2 * blue - red - green) / count));
      }
    }
    for (std::size_t plane = 0; plane < 3; ++plane) {
      even_out(plane);
      smooth(plane, 0, 1);
      smooth(plane, 1, 0);
    }
  }
  const std::vector<int>& plane(std::size_t plane) const { return planes_[plane]; }

 private:
  int& place(std::size_t plane, int row, int col) {
    row = std::clamp(row, 0, rows_ - 1);
    col = std::clamp(col, 0, cols_ - 1);
    return planes_[plane][static_cast<std::size_t>(row * cols_ + col)];
  }
  // Random pixels have stripes too: the step between the means and the smoothing, which has tests of its own.
  void even_out(std::size_t plane) {
    std::vector<std::int16_t> values(planes_[plane].begin(), planes_[plane].end());
    std::vector<std::int16_t> offsets(static_cast<std::size_t>(std::max(rows_, cols_)));
    remove_stripes({values.data(), rows_, cols_, cols_, 1}, {offsets.data(), static_cast<std::size_t>(rows_)});
    remove_stripes({values.data(), cols_, rows_, 1, cols_}, {offsets.data(), static_cast<std::size_t>(cols_)});
    planes_[plane].assign(values.begin(), values.end());
  }
  void smooth(std::size_t plane, int down, int right) {
    std::vector<int> result;
    for (int row = 0; row < rows_; ++row) {
      for (int col = 0; col < cols_; ++col) {
        const int sum =
            place(plane, row - down, col - right) + 2 * place(plane, row, col) + place(plane, row + down, col + right);
        result.push_back(static_cast<int>(std::floor((sum + 2) / 4.0)));
      }
    }
    planes_[plane] = result;
  }

  int rows_, cols_;
  std::array<std::vector<int>, 3> planes_;
};

TEST(Copy, IsItsDefinitionForEveryLayoutAndOddSizes) {
  support::Random random(11);
  for (const Layout layout : kLayouts) {
    for (const auto& [rows, cols] : {std::pair{1, 1}, {2, 9}, {31, 17}, {7, 761}, {1263, 11}, {9, 1777}}) {
      for (const bool upwards : {false, true}) {
        std::vector<Colour> drawn(static_cast<std::size_t>(rows * cols));
        for (Colour& colour : drawn) {
          colour.green = random.byte();
          colour.red = is_coloured(layout) ? random.byte() : colour.green;
          colour.blue = is_coloured(layout) ? random.byte() : colour.green;
          if (layout == Layout::kBilevel) {
            const auto level = static_cast<unsigned char>(colour.green >= 128 ? 255 : 0);
            colour = {level, level, level};
          }
        }
        const int width = cols;
        const auto at = [&](int row, int col) { return drawn[static_cast<std::size_t>(row * width + col)]; };
        const Copy copy = reduce(Pixels(rows, cols, layout, upwards, at).scan());
        ASSERT_TRUE(copy.ready());
        const PlainCopy plain(rows, cols, copy.factor, at);
        for (std::size_t plane = 0; plane < copy.plane_count; ++plane)
          ASSERT_EQ(plane_of(copy, plane), plain.plane(plane)) << rows << " x " << cols << " plane " << plane;
      }
    }
  }
}

}  // namespace
