// Enlarging between views of any stride, width and number of channels.
#include <gtest/gtest.h>

#include <vector>

#include "scale/enlarge.h"

namespace {

using namespace vantrel::scale;
using vantrel::image::ConstPixels;
using vantrel::image::Pixels;
using Bytes = std::vector<unsigned char>;
using Enlarge = bool(ConstPixels, Pixels, int);

/** An enlarged picture, in rows of `cols` pixels of `channels` bytes and `padding` more, all of them 7 at first. */
Bytes enlarged(Enlarge& enlarge, const Bytes& source, int source_rows, int source_cols, int rows, int cols,
               int channels = 1, int padding = 0) {
  const int stride = cols * channels + padding;
  Bytes target(static_cast<std::size_t>(rows * stride), 7);
  const ConstPixels from{source.data(), source_rows, source_cols, source_cols * channels};
  EXPECT_TRUE(enlarge(from, {target.data(), rows, cols, stride}, channels));
  return target;
}

TEST(Enlarge, TargetsHaveAStrideOfTheirOwn) {
  const Bytes source{10, 20, 30, 50};
  EXPECT_EQ(enlarged(enlarge_bilinear, source, 2, 2, 4, 4, 1, 2), (Bytes{10, 15, 20, 20, 7, 7,  //
                                                                         20, 28, 35, 35, 7, 7,  //
                                                                         30, 40, 50, 50, 7, 7,  //
                                                                         30, 40, 50, 50, 7, 7}));
  EXPECT_EQ(enlarged(enlarge_bicubic, source, 2, 2, 4, 4, 1, 1), (Bytes{10, 10, 20, 20, 7,  //
                                                                        10, 10, 20, 20, 7,  //
                                                                        30, 30, 50, 50, 7,  //
                                                                        30, 30, 50, 50, 7}));
}

TEST(Enlarge, RowsMayRunBackwards) {
  const Bytes source{10, 20, 30, 50};
  Bytes target(16, 7);
  const ConstPixels upside_down{source.data() + 2, 2, 2, -2};
  EXPECT_TRUE(enlarge_bilinear(upside_down, {target.data() + 12, 4, 4, -4}, 1));
  EXPECT_EQ(target, (Bytes{10, 15, 20, 20, 10, 15, 20, 20, 20, 28, 35, 35, 30, 40, 50, 50}));
}

TEST(Enlarge, ColumnsAndRowsBehindTwiceTheSourceRepeatItsLast) {
  for (Enlarge* const enlarge : {enlarge_bilinear, enlarge_bicubic}) {
    EXPECT_EQ(enlarged(*enlarge, {5, 9}, 2, 1, 6, 5), (enlarge == enlarge_bilinear ? Bytes{5, 5, 5, 5, 5,  //
                                                                                           7, 7, 7, 7, 7,  //
                                                                                           9, 9, 9, 9, 9,  //
                                                                                           9, 9, 9, 9, 9,  //
                                                                                           9, 9, 9, 9, 9,  //
                                                                                           9, 9, 9, 9, 9}
                                                                                   : Bytes{5, 5, 5, 5, 5,  //
                                                                                           5, 5, 5, 5, 5,  //
                                                                                           9, 9, 9, 9, 9,  //
                                                                                           9, 9, 9, 9, 9,  //
                                                                                           9, 9, 9, 9, 9,  //
                                                                                           9, 9, 9, 9, 9}));
  }
}

TEST(Enlarge, ASmallerTargetIsAPart) {
  EXPECT_EQ(enlarged(enlarge_bilinear, {10, 20, 30, 50}, 2, 2, 1, 3), (Bytes{10, 15, 20}));
  EXPECT_EQ(enlarged(enlarge_bilinear, {10, 20, 30, 50}, 2, 2, 3, 1), (Bytes{10, 20, 30}));
  EXPECT_EQ(enlarged(enlarge_bilinear, {10, 20, 30, 1, 2, 3}, 1, 2, 1, 1, 3), (Bytes{10, 20, 30}));
}

TEST(Enlarge, ChannelsAreEnlargedEachByItself) {
  constexpr int kRows = 6;
  constexpr int kCols = 7;
  for (Enlarge* const enlarge : {enlarge_bilinear, enlarge_bicubic}) {
    for (const int channels : {3, 4}) {
      Bytes source(static_cast<std::size_t>(kRows * kCols * channels));
      for (std::size_t i = 0; i < source.size(); ++i) source[i] = static_cast<unsigned char>(i * i * 37 % 251);
      const Bytes all = enlarged(*enlarge, source, kRows, kCols, 2 * kRows, 2 * kCols + 3, channels, 5);
      for (int channel = 0; channel < channels; ++channel) {
        Bytes plane;
        for (std::size_t i = static_cast<std::size_t>(channel); i < source.size();
             i += static_cast<std::size_t>(channels))
          plane.push_back(source[i]);
        const Bytes alone = enlarged(*enlarge, plane, kRows, kCols, 2 * kRows, 2 * kCols + 3);
        for (int r = 0; r < 2 * kRows; ++r) {
          for (int c = 0; c < 2 * kCols + 3; ++c) {
            const int at = r * ((2 * kCols + 3) * channels + 5) + c * channels + channel;
            ASSERT_EQ(all[static_cast<std::size_t>(at)], alone[static_cast<std::size_t>(r * (2 * kCols + 3) + c)]);
          }
        }
      }
    }
  }
}

TEST(Enlarge, NothingIsWrittenWithoutPixels) {
  for (Enlarge* const enlarge : {enlarge_bilinear, enlarge_bicubic}) {
    EXPECT_EQ(enlarged(*enlarge, {}, 0, 4, 1, 2), (Bytes{7, 7}));
    EXPECT_EQ(enlarged(*enlarge, {}, 4, 0, 1, 2), (Bytes{7, 7}));
  }
}

}  // namespace
