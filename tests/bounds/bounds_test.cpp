// What the headers say of work and memory, held on the worst pictures that are known: no picture takes more steps a
// pixel than the table below allows, however large it is, and none more memory.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

#include "bounds/meter.h"
#include "image/exports.h"
#include "scale/exports.h"
#include "segment/exports.h"
#include "support/image.h"
#include "vantrel.h"
#include "vantrel_cards.h"

namespace {

using support::Image;

/** A gray level for each pixel. */
struct Pattern {
  const char* name;
  int (*level)(int x, int y, int width, int height);
};

int noise_at(int x, int y) {
  std::uint32_t h = static_cast<std::uint32_t>(x) * 0x9E3779B1u ^ static_cast<std::uint32_t>(y) * 0x85EBCA77u;
  h = (h ^ h >> 15) * 0x2C1B3C6Du;
  h = (h ^ h >> 12) * 0x297A2D39u;
  return static_cast<int>(h >> 24);
}

constexpr std::array kPatterns = {
    Pattern{"white", [](int, int, int, int) { return 255; }},
    Pattern{"card",
            [](int x, int y, int width, int height) {
              const bool card = x > width / 12 + y / 30 && x < width - width / 9 + y / 30 && y > height / 14 + x / 40 &&
                                y < height - height / 8 + x / 40;
              return (card ? 210 : 30) + noise_at(x, y) % 5;
            }},
    Pattern{"checks of 1", [](int x, int y, int, int) { return (x + y) % 2 * 255; }},
    Pattern{"checks of 2", [](int x, int y, int, int) { return (x / 2 + y / 2) % 2 * 255; }},
    Pattern{"checks of 5", [](int x, int y, int, int) { return (x / 5 + y / 5) % 2 * 255; }},
    Pattern{"upright stripes, every pixel an edge", [](int x, int, int, int) { return x / 2 % 2 * 255; }},
    Pattern{"level stripes, every pixel an edge", [](int, int y, int, int) { return y / 2 % 2 * 255; }},
    Pattern{"diagonal stripes", [](int x, int y, int, int) { return (x + y) / 2 % 2 * 255; }},
    Pattern{"comb", [](int x, int y, int, int) { return y % 64 == 0 || x % 2 == 0 ? 0 : 255; }},
    Pattern{"comb of edges", [](int x, int y, int, int) { return y % 64 < 3 || x % 8 < 4 ? 0 : 255; }},
    Pattern{"dots", [](int x, int y, int, int) { return x % 3 == 0 && y % 3 == 0 ? 0 : 255; }},
    Pattern{"rings", [](int x, int y, int, int) { return std::max(x % 6, y % 6) % 5 == 0 ? 0 : 255; }},
    Pattern{"noise", [](int x, int y, int, int) { return noise_at(x, y); }},
    Pattern{"noise of two levels", [](int x, int y, int, int) { return noise_at(x, y) < 128 ? 0 : 255; }},
    Pattern{"noise of two levels, coarse",
            [](int x, int y, int, int) { return noise_at(x / 4, y / 4) < 128 ? 0 : 255; }},
};

Image draw(const Pattern& pattern, int width, int height, int bit_count) {
  Image image(width, height, bit_count, 0, 11811);
  const int bytes = bit_count / 8;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const int level = pattern.level(x, y, width, height);
      if (bit_count == 1) {
        unsigned char& byte = image.at(y, x / 8);
        if (level > 127) byte = static_cast<unsigned char>(byte | 0x80 >> x % 8);
        continue;
      }
      for (int k = 0; k < bytes; ++k) image.at(y, x * bytes + k) = static_cast<unsigned char>(level);
    }
  }
  return image;
}

/** Runs an operation whose result is a block of its own. */
template <auto Operation>
void into_a_block(Image& image) {
  Image out;
  Operation(image.handle(), out.ptr());
}

void cut_upright(Image& image) {
  Image out;
  AutoClipRedundantImg_ORVA(image.handle(), nullptr, out.ptr(), 1);
}

void straighten(Image& image) {
  Image out;
  AutoClipRedundantImg(image.handle(), nullptr, out.ptr(), 1);
}

vantrel_image scan_of(Image& image) {
  const int bits = image.header().biBitCount;
  return {image.ptr()->pBits,
          image.width(),
          image.height(),
          image.stride(),
          bits == 1   ? VANTREL_FORMAT_BILEVEL
          : bits == 8 ? VANTREL_FORMAT_GRAY
                      : VANTREL_FORMAT_BGR,
          300.0};
}

void find_by(Image& image, vantrel_method method) {
  const vantrel_image scan = scan_of(image);
  vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
  options.methods = &method;
  options.method_count = 1;
  vantrel_cards* cards = nullptr;
  vantrel_find(&scan, &options, &cards);
  vantrel_cards_release(cards);
}

template <vantrel_method kMethod>
void find(Image& image) {
  find_by(image, kMethod);
}

/** Makes a picture of a scan in a block of its own. */
template <class Make>
void picture(Image& image, Make make) {
  const vantrel_image scan = scan_of(image);
  vantrel_picture made{};
  make(scan, &made);
  vantrel_picture_release(&made);
}

void cut_all(Image& image) {
  picture(image, [](const vantrel_image& scan, vantrel_picture* made) {
    const double right = scan.width;
    const double bottom = scan.height;
    const vantrel_quad quad = {{0, 0}, {right, 0}, {right, bottom}, {0, bottom}};
    return vantrel_cut(&scan, &quad, 0, made);
  });
}

void crop_all(Image& image) {
  picture(image, [](const vantrel_image& scan, vantrel_picture* made) {
    const vantrel_rect rectangle = {0, 0, scan.width, scan.height};
    return vantrel_crop(&scan, &rectangle, made);
  });
}

void reduce_by_two(Image& image) {
  picture(image, [](const vantrel_image& scan, vantrel_picture* made) { return vantrel_reduce(&scan, 2, made); });
}

void convert(Image& image) {
  picture(image, [](const vantrel_image& scan, vantrel_picture* made) { return vantrel_convert(&scan, made); });
}

template <vantrel_enlargement kMethod>
void enlarge(Image& image) {
  picture(image,
          [](const vantrel_image& scan, vantrel_picture* made) { return vantrel_enlarge(&scan, kMethod, made); });
}

void crop(Image& image) {
  Image out;
  const auto right = static_cast<short>(std::min(image.width(), 30000) - 1);
  const auto top = static_cast<short>(std::min(image.height(), 30000) - 1);
  CutRectImage(image.ptr(), out.ptr(), {0, top, right, 0, 0});
}

/** An operation, and the most that it may take: steps and bytes for a pixel, and beside them whatever the size. */
struct Operation {
  const char* name;
  int bit_count;
  void (*run)(Image& image);
  double steps_a_pixel;
  double bytes_a_pixel;
  double bytes_a_side = 0; /**< for each pixel of the longer side */
  double further_steps = 2000;
  double further_bytes = 1 << 20;
  std::size_t every = 1; /**< of the patterns: where a run takes long, fewer */
};

void find_corners(Image& image) {
  vantrel_corner_search found{};
  vantrel_find_corners(image.ptr(), &found);
}

void find_by_gradient(Image& image) {
  std::array<float, 8> corners{}, box{};
  AutoDetectCorner(image.ptr(), corners.data(), box.data());
}

void divide_sheet(Image& image) {
  RectRegions regions{};
  CardSeg(image.ptr(), regions);
}

void find_rows(Image& image) {
  int first = 0, second = 0;
  ClipImg(image.ptr(), first, second);
}

void make_gray(Image& image) {
  Image out;
  Color2Gray(image.ptr(), out.ptr());
}

constexpr double kLines = 600; /**< bytes a pixel of the longer side, where votes for lines are counted */

constexpr std::array kOperations = {
    Operation{"AutoClipRedundantImg, 8", 8, straighten, 500, 5, kLines},
    Operation{"AutoClipRedundantImg, 24", 24, straighten, 500, 5, kLines},
    Operation{"AutoClipRedundantImg_ORVA, 8", 8, cut_upright, 35, 4, 40},
    Operation{"AutoClipRedundantImg_ORVA, 24", 24, cut_upright, 35, 4, 40},
    Operation{"BiLinear, 8", 8, into_a_block<BiLinear>, 30, 12},
    Operation{"BiLinear, 24", 24, into_a_block<BiLinear>, 30, 12},
    Operation{"BiCubic, 8", 8, into_a_block<BiCubic>, 30, 12},
    Operation{"BiCubic, 24", 24, into_a_block<BiCubic>, 30, 12},
    Operation{"CutRectImage", 24, crop, 5, 4},
    Operation{"vantrel_find_corners", 8, find_corners, 180, 5, kLines},
    Operation{"AutoDetectCorner", 8, find_by_gradient, 800, 12, kLines},
    Operation{"CardSeg, 1", 1, divide_sheet, 20, 2},
    Operation{"CardSeg, 8", 8, divide_sheet, 20, 2},
    Operation{"CardSeg, 24", 24, divide_sheet, 20, 2},
    Operation{"ClipImg", 8, find_rows, 2, 2},
    Operation{"Color2Gray", 24, make_gray, 10, 4},
    Operation{"vantrel_find, dark glass", 8, find<VANTREL_METHOD_DARK_GLASS>, 180, 5, kLines},
    Operation{"vantrel_find, flat light", 24, find<VANTREL_METHOD_FLAT_LIGHT>, 35, 4},
    Operation{"vantrel_find, sheet", 8, find<VANTREL_METHOD_SHEET>, 20, 2},
    // What the pixels show makes no difference here.
    Operation{"vantrel_cut", 24, cut_all, 30, 4, 0, 2000, 1 << 20, kPatterns.size()},
    Operation{"vantrel_crop", 24, crop_all, 10, 4, 0, 2000, 1 << 20, kPatterns.size()},
    Operation{"vantrel_reduce", 24, reduce_by_two, 10, 2, 0, 2000, 1 << 20, kPatterns.size()},
    Operation{"vantrel_convert", 24, convert, 15, 2, 0, 2000, 1 << 20, kPatterns.size()},
    Operation{"vantrel_enlarge, linear", 24, enlarge<VANTREL_ENLARGE_LINEAR>, 30, 13, 0, 2000, 1 << 20,
              kPatterns.size()},
    Operation{"vantrel_enlarge, cubic", 24, enlarge<VANTREL_ENLARGE_CUBIC>, 30, 13, 0, 2000, 1 << 20, kPatterns.size()},
    Operation{"vantrel_find, anywhere", 24, find<VANTREL_METHOD_ANYWHERE>, 50, 0, 0, 1.2e9, 20 << 20, 4},
};

struct Size {
  int width;
  int height;
};
/**
 * A small one and a large one, so that what grows faster than the pixels shows, and long, narrow ones. The large one is
 * the largest that the finder does not reduce.
 */
constexpr std::array kSizes = {Size{300, 240},  Size{749, 749},  Size{32000, 8},  Size{8, 32000},
                               Size{200000, 1}, Size{1, 200000}, Size{33000, 20}, Size{2, 2}};

TEST(Bounds, AreKeptOnTheWorstPictures) {
  for (const Operation& operation : kOperations) {
    for (const Size& size : kSizes) {
      const double pixels = static_cast<double>(size.width) * size.height;
      const double longer = std::max(size.width, size.height);
      double most_steps = 0, most_bytes = 0;
      const char *slowest = "", *largest = "";
      for (std::size_t i = 0; i < kPatterns.size(); i += operation.every) {
        const Pattern& pattern = kPatterns.at(i);
        Image image = draw(pattern, size.width, size.height, operation.bit_count);
        meter::start();
        operation.run(image);
        const meter::Reading taken = meter::read();
        const auto steps = static_cast<double>(taken.steps);
        const auto bytes = static_cast<double>(taken.peak_bytes);
        EXPECT_LE(steps, operation.steps_a_pixel * pixels + operation.further_steps)
            << operation.name << ", " << pattern.name << ", " << size.width << " x " << size.height;
        EXPECT_LE(bytes, operation.bytes_a_pixel * pixels + operation.bytes_a_side * longer + operation.further_bytes)
            << operation.name << ", " << pattern.name << ", " << size.width << " x " << size.height;
        if (steps > most_steps) most_steps = steps, slowest = pattern.name;
        if (bytes > most_bytes) most_bytes = bytes, largest = pattern.name;
      }
      std::printf("%-30s %6d x %-6d %9.1f steps a pixel (%s), %8.1f bytes a pixel (%s)\n", operation.name, size.width,
                  size.height, most_steps / pixels, slowest, most_bytes / pixels, largest);
    }
  }
}

}  // namespace
