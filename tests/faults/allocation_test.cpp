#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <limits>
#include <utility>
#include <vector>

#include "autoclip/exports.h"
#include "cardcut/exports.h"
#include "components/exports.h"
#include "faults/failing_allocators.h"
#include "image/exports.h"
#include "lines/exports.h"
#include "scale/exports.h"
#include "segment/exports.h"
#include "support/image.h"
#include "support/random.h"

using support::Image;

namespace {

constexpr int kSide = 300;

/** A bright card on dark ground that nearly fills the image. */
Image card_scan(int bit_count, int side = kSide) {
  Image scan(side, side, bit_count, 40);
  const int channels = bit_count / 8;
  const int margin = side / 20;
  for (int r = margin; r < side - margin; ++r) {
    std::memset(scan.row(r) + margin * channels, 230, static_cast<std::size_t>((side - 2 * margin) * channels));
  }
  return scan;
}

/**
 * Runs an operation with each of its allocations failing in turn, and then with none. `run(failing)` checks its own
 * outcome. Returns how many allocations there were.
 */
template <class Run>
int fail_each_allocation(Run run) {
  constexpr int kMost = 1000;
  for (int number = 0; number < kMost; ++number) {
    failing::fail_allocation(number);
    run([] { return failing::has_failed(); });
    const bool failed = failing::has_failed();
    failing::fail_allocation(-1);
    if (!failed) return number;
  }
  ADD_FAILURE() << "no end of allocations";
  return kMost;
}

TEST(AllocationFailure, LetsManyPointsVoteOneByOneInstead) {
  // Noise: so many edges that their votes are bounded first, for which there need not be memory.
  Image scan(400, 400, 8);
  support::Random random(5);
  support::randomise(scan, random);
  std::array<float, 8> right{}, right_box{};
  const int code = vantrel_find_gradient_corners(scan.ptr(), right.data(), right_box.data());
  int unchanged = 0;
  fail_each_allocation([&](auto failed) {
    std::array<float, 8> corners{}, box{};
    const int found = vantrel_find_gradient_corners(scan.ptr(), corners.data(), box.data());
    if (found == -1) {
      EXPECT_TRUE(failed());
      return;
    }
    EXPECT_EQ(found, code);
    EXPECT_EQ(corners, right);
    EXPECT_EQ(box, right_box);
    unchanged += failed() ? 1 : 0;
  });
  EXPECT_GT(unchanged, 0);
}

TEST(AllocationFailure, LeavesAnEmptyRecordBehindFailedCreation) {
  EXPECT_EQ(1, fail_each_allocation([](auto failed) {
              Image image;
              const auto result = CreateImage(image.ptr(), 5, 5, 8, 0, 0);
              EXPECT_EQ(result, !failed());
              EXPECT_EQ(image.empty(), failed());
            }));
  Image source = card_scan(24);
  EXPECT_EQ(1, fail_each_allocation([&](auto failed) {
              Image copy;
              const auto result = ImageCopy(source.ptr(), copy.ptr());
              EXPECT_EQ(result, !failed());
              EXPECT_EQ(copy.empty(), failed());
            }));
  EXPECT_EQ(1, fail_each_allocation([&](auto failed) {
              Image gray;
              const auto result = Color2Gray(source.ptr(), gray.ptr());
              EXPECT_EQ(result, !failed());
              EXPECT_EQ(gray.empty(), failed());
            }));
  EXPECT_EQ(1, fail_each_allocation([&](auto failed) {
              Image crop;
              const auto result = CutRectImage(source.ptr(), crop.ptr(), {1, 9, 9, 1, 0});
              EXPECT_EQ(result, failed() ? -1 : 1);
              EXPECT_EQ(crop.empty(), failed());
            }));
}

TEST(FreshBlock, CarriesNothingOldInItsHead) {
  for (const int bit_count : {0, 1, 2, 4, 7}) {
    Image image;
    ASSERT_TRUE(CreateImage(image.ptr(), 5, 5, bit_count, 0, 0));
    const std::size_t colours = std::size_t{1} << bit_count;
    for (std::size_t i = 0; i < colours; ++i) {
      const RGBQUAD& entry = image.ptr()->pPalette[i];
      const int level = bit_count == 1 && i == 1 ? 255 : 0;
      EXPECT_EQ(entry.rgbBlue, level) << bit_count << ": " << i;
      EXPECT_EQ(entry.rgbGreen, level) << bit_count << ": " << i;
      EXPECT_EQ(entry.rgbRed, level) << bit_count << ": " << i;
      EXPECT_EQ(entry.rgbReserved, 0) << bit_count << ": " << i;
    }
  }
}

TEST(AllocationFailure, MakesTheMainOperationReturnACopyOrFail) {
  for (const int bit_count : {8, 24}) {
    Image scan = card_scan(bit_count);
    Image clipped;
    ASSERT_EQ(AutoClipRedundantImg(scan.handle(), nullptr, clipped.ptr(), 1), 1);
    int copies = 0;
    const int count = fail_each_allocation([&](auto failed) {
      Image out;
      const int code = AutoClipRedundantImg(scan.handle(), nullptr, out.ptr(), 1);
      if (!failed()) {
        EXPECT_EQ(code, 1);
        EXPECT_EQ(out.pixels(), clipped.pixels());
      } else if (code == 0) {
        // The corner finder had no memory: the scan comes back as it is.
        ++copies;
        EXPECT_EQ(0, std::memcmp(out.ptr()->pBits, scan.ptr()->pBits, scan.header().biSizeImage));
      } else if (code == 1) {
        // A verifier had no memory and said no, or a side's search had none: the frame stood in for that side.
        EXPECT_EQ(out.header().biWidth, kSide);
      } else {
        EXPECT_EQ(code, -1);
        EXPECT_TRUE(out.empty());
      }
    });
    EXPECT_GE(count, 10);
    EXPECT_EQ(copies, 5);  // two maps; boxes, slots and runs of components
  }
}

TEST(AllocationFailure, FailsTheClipThatNamesIt) {
  for (const int bit_count : {8, 24}) {
    Image scan = card_scan(bit_count);
    Image clipped;
    ASSERT_EQ(AutoClipRedundantImg(scan.handle(), nullptr, clipped.ptr(), 1), 1);
    const int count = fail_each_allocation([&](auto failed) {
      Image out;
      const int code = vantrel_auto_clip(scan.handle(), nullptr, out.ptr(), 1);
      EXPECT_EQ(code, failed() ? -1 : 1);
      EXPECT_EQ(out.empty(), failed());
      if (!failed()) {
        EXPECT_EQ(out.block(), clipped.block());
      }
    });
    EXPECT_GE(count, 10);
  }
}

TEST(AllocationFailure, IsNamedByTheCornerSearch) {
  Image scan = card_scan(8);
  const int count = fail_each_allocation([&](auto failed) {
    vantrel_corner_search found{};
    const int code = vantrel_find_corners(scan.ptr(), &found);
    EXPECT_EQ(code, failed() ? 0 : 1);
    EXPECT_EQ(found.verdict, failed() ? VANTREL_OUT_OF_MEMORY : VANTREL_CORNERS_FOUND);
    if (failed()) {
      EXPECT_EQ(found.side[0].b, 0.0);
    }
  });
  // Two maps; boxes, slots and runs of components; an accumulator for each side.
  EXPECT_GE(count, 9);
}

TEST(AllocationFailure, EndsTheGradientCornerSearch) {
  Image scan = card_scan(8, 120);
  // Borders near enough to the image's edge to be found in its frame.
  std::memset(scan.ptr()->pBits, 230, static_cast<std::size_t>(scan.stride()) * 120);
  for (int r = 0; r < 120; ++r) {
    for (int c = 0; c < 120; ++c) {
      if (r < 3 || r >= 116 || c < 3 || c >= 116) scan.at(r, c) = 20;
    }
  }
  float corners[8];
  float box[8];
  const bool found = AutoDetectCorner(scan.ptr(), corners, box);
  const int count = fail_each_allocation([&](auto failed) {
    const auto result = AutoDetectCorner(scan.ptr(), corners, box);
    EXPECT_EQ(result, !failed() && found);
  });
  EXPECT_EQ(count, 4);  // two maps and an accumulator for each direction
  const int named = fail_each_allocation([&](auto failed) {
    const int code = vantrel_find_gradient_corners(scan.ptr(), corners, box);
    EXPECT_EQ(code, failed() ? -1 : found ? 1 : 0);
  });
  EXPECT_EQ(named, 4);
}

TEST(AllocationFailure, GradientCornerSearchOfALongImageTakesNoMoreThanItsPixelsJustify) {
  for (const bool tall : {true, false}) {
    Image scan(tall ? 4 : 100000, tall ? 100000 : 4, 8);
    support::Random random(7);
    support::randomise(scan, random);
    float corners[8];
    float box[8];
    failing::fail_allocation(-1);
    EXPECT_FALSE(AutoDetectCorner(scan.ptr(), corners, box));
    // Cells for some angles at a time. At once they would take 64 and 96 million bytes for 400,000 pixels.
    EXPECT_LE(failing::largest_request(), 8u * 400000u);
    EXPECT_GE(failing::largest_request(), 1600000u);
  }
}

/** Blocks without a pixel whose headers announce long sides. */
std::vector<Image> hollow_images() {
  constexpr int kMost = std::numeric_limits<int>::max();
  std::vector<Image> images;
  for (const int side : {32768, 16777217, 25000000, kMost}) {
    for (const int bit_count : {1, 8, 24}) {
      for (const bool wide : {true, false}) {
        Image image(0, 0, bit_count);
        image.header().biWidth = wide ? side : 0;
        image.header().biHeight = wide ? 0 : side;
        images.push_back(std::move(image));
      }
    }
  }
  return images;
}

TEST(HollowImages, TakeNextToNoMemoryAndNoTime) {
  const std::clock_t start = std::clock();
  for (Image& image : hollow_images()) {
    SCOPED_TRACE(::testing::Message() << image.width() << " x " << image.height() << ", " << image.header().biBitCount);
    failing::fail_allocation(-1);
    BITMAPPTR out{};
    MYRECT rect{};
    RectRegions regions{};
    std::array<float, 8> corners{}, box{};
    int first = 0;
    int second = 0;
    vantrel_corner_search search{};
    const auto release = [&] {
      std::free(out.pInfo);
      out = {};
    };
    AutoClipRedundantImg(image.handle(), nullptr, &out, 1);
    release();
    AutoClipRedundantImg_ORVA(image.handle(), nullptr, &out, 1);
    release();
    AutoClipImg_Rect_ORVA(image.handle(), nullptr, 0, 0, 0, 0, 1);
    BiLinear(image.handle(), &out);
    release();
    BiCubic(image.handle(), &out);
    release();
    CutCard(image.ptr(), rect);
    CutCard24(image.ptr(), rect);
    CardSeg(image.ptr(), regions);
    ClipImg(image.ptr(), first, second);
    AutoDetectCorner(image.ptr(), corners.data(), box.data());
    vantrel_find_corners(image.ptr(), &search);
    // A copy has a head, and what was found a row of counters.
    EXPECT_LE(failing::largest_request(), std::size_t{1} << 17);
  }
  // Such a block used to take seconds of the processor; how loaded the machine is does not count.
  EXPECT_LT((std::clock() - start) / CLOCKS_PER_SEC, 5);
}

TEST(AllocationFailure, FindsNoComponents) {
  std::vector<unsigned char> edge(16 * 16, 255);
  edge[5 * 16 + 5] = 0;
  _BLIST list{};
  ASSERT_TRUE(list.Constructor(500, 100));
  EXPECT_EQ(1, fail_each_allocation([&](auto failed) {
              const auto result = Gray2Bin(edge.data(), list, 16, 16);
              EXPECT_EQ(result, !failed());
            }));
  list.Destructor();
  EXPECT_EQ(1, fail_each_allocation([&](auto failed) {
              _BLIST pool{};
              const auto result = pool.Constructor(500, 100);
              EXPECT_EQ(result, !failed());
              EXPECT_EQ(pool.pool == nullptr, failed());
              pool.Destructor();
            }));
}

TEST(AllocationFailure, MakesNoMatrix) {
  EXPECT_EQ(2, fail_each_allocation([](auto failed) {
              double** matrix = MakeMatrix(3, 4);
              EXPECT_EQ(matrix == nullptr, failed());
              if (matrix != nullptr) FreeMatrix(matrix);
            }));
}

TEST(AllocationFailure, FindsNoLine) {
  std::vector<double> sines(180, 0.0);
  std::vector<double> cosines(180, 1.0);
  for (const int dir_class : {0, 1, 2}) {
    EXPECT_EQ(2, fail_each_allocation([&](auto failed) {
                std::vector<typePoint> points(60, typePoint{5.0f, 5.0f});
                std::vector<unsigned char> pixels(20 * 20, 255);
                double normal[8] = {};
                double distance[4] = {};
                _BNODE line{};
                const int code =
                    Compute_Hough_Angle2(pixels.data(), &line, pixels.data(), normal, distance, points.data(), 20, 20,
                                         60, dir_class, sines.data(), cosines.data(), dir_class, 0);
                if (failed()) {
                  EXPECT_EQ(code, 0);
                }
                if (!failed() && dir_class == 1) {
                  EXPECT_EQ(code, 2);
                }
              }));
  }
  EXPECT_EQ(1, fail_each_allocation([&](auto failed) {
              std::vector<typePoint> points(60, typePoint{5.0f, 5.0f});
              double normal[8] = {};
              double distance[4] = {};
              const int code =
                  Compute_Hough_Angle(normal, distance, points.data(), 20, 20, 60, 1, sines.data(), cosines.data());
              EXPECT_EQ(code, failed() ? 0 : 1);
            }));
}

TEST(AllocationFailure, LetsTheDensityVerifiersSayNo) {
  std::vector<unsigned char> edge(100 * 100, 255);
  for (const int row : {25, 60}) std::fill_n(edge.begin() + row * 100, 100, static_cast<unsigned char>(0));
  EXPECT_EQ(1, fail_each_allocation([&](auto failed) {
              const bool prefers_second = VerifyCorrectLineV_0(edge.data(), nullptr, nullptr, 20, 60, 100, 100, 0);
              EXPECT_EQ(prefers_second, !failed());
            }));
  EXPECT_EQ(1, fail_each_allocation([&](auto failed) {
              const auto result = VerifyCorrectLineV_1(edge.data(), nullptr, nullptr, 50, 100, 100, 1);
              EXPECT_EQ(result, !failed());
            }));
}

TEST(AllocationFailure, EndsTheCardFindersWithTheirDefaults) {
  Image gray = card_scan(8);
  Image colour = card_scan(24);
  for (Image* scan : {&gray, &colour}) {
    const int count = fail_each_allocation([&](auto failed) {
      MYRECT rect{1, 2, 3, 4, 5};
      const auto result = CutCard(scan->ptr(), rect);
      EXPECT_EQ(result, !failed());
      if (failed()) {
        EXPECT_EQ(rect.left, 0);
        EXPECT_EQ(rect.top, kSide - 1);
        EXPECT_EQ(rect.right, kSide - 1);
        EXPECT_EQ(rect.bottom, 0);
      }
    });
    EXPECT_EQ(count, scan == &gray ? 1 : 2);  // the votes, and the gray levels of a colour scan
  }
  EXPECT_EQ(1, fail_each_allocation([&](auto failed) {
              MYRECT rect{1, 2, 3, 4, 5};
              const auto result = CutCard24(colour.ptr(), rect);
              EXPECT_EQ(result, !failed());
              if (failed()) {
                EXPECT_EQ(rect.left, 10);
                EXPECT_EQ(rect.top, kSide - 30);
                EXPECT_EQ(rect.right, kSide - 10);
                EXPECT_EQ(rect.bottom, 50);
              }
            }));
  for (Image* scan : {&gray, &colour}) {
    fail_each_allocation([&](auto failed) {
      Image out;
      const auto result = AutoClipRedundantImg_ORVA(scan->handle(), nullptr, out.ptr(), 1);
      EXPECT_EQ(result, failed() ? -1 : 1);
    });
    fail_each_allocation([&](auto failed) {
      const auto result = AutoClipImg_Rect_ORVA(scan->handle(), nullptr, 0, 0, 0, 0, 1);
      EXPECT_EQ(result, failed() ? -1 : 1);
    });
  }
}

TEST(AllocationFailure, EndsTheEnlargements) {
  for (const int bit_count : {1, 8, 24}) {
    Image scan(50, 40, bit_count, 99);
    for (const auto enlarge : {BiLinear, BiCubic}) {
      const int count = fail_each_allocation([&](auto failed) {
        BITMAPPTR out{};
        const int code = enlarge(scan.handle(), &out);
        EXPECT_EQ(code, failed() ? -1 : bit_count == 1 ? 0 : 1);
        EXPECT_EQ(out.pInfo == nullptr, failed());
        std::free(out.pInfo);
      });
      // The result; a target row's two halves; between them, what four rows of the cubic kernel are made from.
      EXPECT_EQ(count, bit_count == 1 ? 1 : enlarge == BiLinear ? 2 : 3);
    }
  }
}

TEST(AllocationFailure, EndsTheCopiesOfImagesTooLargeToEnlarge) {
  for (const int bit_count : {8, 24}) {
    Image scan(2001, 3, bit_count, 99);
    for (const auto enlarge : {BiLinear, BiCubic}) {
      EXPECT_EQ(1, fail_each_allocation([&](auto failed) {
                  BITMAPPTR out{};
                  const int code = enlarge(scan.handle(), &out);
                  EXPECT_EQ(code, failed() ? -1 : 0);
                  EXPECT_EQ(out.pInfo == nullptr, failed());
                  std::free(out.pInfo);
                }));
    }
  }
}

TEST(AllocationFailure, EndsTheResampling) {
  Image shallow(8, 8, 4, 99);  // its rows are shorter than the bytes read
  Image out(64, 64, 8);
  for (const auto resample : {BiLinearMethod, BiCubicMethod}) {
    EXPECT_GE(fail_each_allocation([&](auto failed) {
                const auto result = resample(shallow.ptr(), out.ptr(), 2);
                EXPECT_EQ(result, !failed());
              }),
              2);
  }
}

TEST(AllocationFailure, DoesNotTouchTheResamplingOfNoRows) {
  Image empty(8, 0, 8), out(16, 4, 8);
  for (const auto resample : {BiLinearMethod, BiCubicMethod}) {
    EXPECT_EQ(0, fail_each_allocation([&](auto) { EXPECT_TRUE(resample(empty.ptr(), out.ptr(), 2)); }));
  }
}

TEST(AllocationFailure, EndsTheSegmentation) {
  for (const int bit_count : {1, 8, 24}) {
    Image sheet(1200, 1500, bit_count, 255);
    const int count = fail_each_allocation([&](auto failed) {
      RectRegions regions{};
      const auto result = CardSeg(sheet.ptr(), regions);
      EXPECT_EQ(result, failed() ? -1 : 1);
    });
    // The sheet, its rows, bands and columns; the running means, and a row for bands that have none.
    EXPECT_EQ(count, bit_count == 1 ? 4 : 6);
  }
  std::vector<unsigned char> pixels(64, 100);
  const std::vector<unsigned char> before = pixels;
  fail_each_allocation([&](auto failed) {
    pixels = before;
    const auto result = Moving_Average(pixels.data(), 8, 8, 8);
    EXPECT_EQ(result, !failed());
    if (failed()) {
      EXPECT_EQ(pixels, before);
    }
  });
  Image gray = card_scan(8);
  EXPECT_EQ(0, fail_each_allocation([&](auto) {
              int first = -7;
              int second = -8;
              EXPECT_TRUE(ClipImg(gray.ptr(), first, second));
            }));
}

}  // namespace
