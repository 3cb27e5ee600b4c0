/** The projective solve, the sampler and the warps against the plain ones. */
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "autoclip/exports.h"
#include "reference/autoclip_warp.h"
#include "support/random.h"
#include "support/scans.h"
#include "support/tally.h"

namespace {

using reference::autoclip::Coefficients;
using reference::autoclip::Frame;
using reference::autoclip::Rect;
using reference::autoclip::Spot;
using reference::autoclip::Spots;
using support::Image;
using support::Picture;
using support::Random;
namespace tally = support::tally;

Spot random_spot(Random& random, double x, double y, double slack, bool whole) {
  x += random.real(-slack, slack);
  y += random.real(-slack, slack);
  if (whole) x = std::round(x);
  if (whole) y = std::round(y);
  return {static_cast<float>(x), static_cast<float>(y)};
}

/** Four places about the corners of a width x height frame; whole ones often lie on one line or on one another. */
Spots random_spots(Random& random, int width, int height) {
  const double slack = random.chance(70) ? 3 : 40;
  const bool whole = random.chance(40);
  const double right = width;
  const double low = height;
  return {random_spot(random, 0, 0, slack, whole), random_spot(random, right, 0, slack, whole),
          random_spot(random, 0, low, slack, whole), random_spot(random, right, low, slack, whole)};
}

bool same_double(double p, double q) { return p == q || (std::isnan(p) && std::isnan(q)); }

TEST(WarpReference, EightUnknowns) {
  Random random(71);
  tally::reset();
  for (int round = 0; round < 5000; ++round) {
    Spots from = random_spots(random, random.pick(0, 40), random.pick(0, 40));
    Spots to = random_spots(random, random.pick(0, 40), random.pick(0, 40));
    const Coefficients expected = reference::autoclip::solve_eight(from, to);
    Coefficients actual{};
    ASSERT_EQ(SolveMultiUnknownFunc(actual.data(), &from.at(0).x, &to.at(0).x, 8), 1);
    for (std::size_t i = 0; i < 8; ++i) {
      ASSERT_TRUE(same_double(expected.at(i), actual.at(i)))
          << "round " << round << " coefficient " << i << ": " << expected.at(i) << " and " << actual.at(i);
    }
  }
  tally::expect("solve eight: zero pivot", 500);
}

TEST(WarpReference, SingleCoordinates) {
  Random random(72);
  for (int round = 0; round < 2000; ++round) {
    std::array<double, 4> c{};
    for (double& value : c) value = random.real(-5, 5);
    const int x = random.pick(-100, 1000);
    const int y = random.pick(-100, 1000);
    const float expected = reference::autoclip::coordinate(c[0], c[1], c[2], c[3], x, y);
    ASSERT_EQ(Get_U(c[0], c[1], c[2], c[3], x, y), expected);
    ASSERT_EQ(Get_V(c[0], c[1], c[2], c[3], x, y), expected);
  }
}

float random_place(Random& random, int count) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  constexpr std::array<float, 8> kFar{1e8f, -1e8f, 3e9f, -3e9f, 1e30f, -1e30f, kInfinity, -kInfinity};
  if (random.chance(3)) return kFar.at(random.bits() % kFar.size());
  if (random.chance(20)) return static_cast<float>(random.pick(-2, count + 1));
  return static_cast<float>(random.real(-2.5, count + 1.5));
}

Picture random_plane(Random& random) {
  Picture plane(random.pick(1, 12), random.pick(1, 12), 8, 0);
  const bool stark = random.chance(30);
  for (unsigned char& byte : plane.bytes)
    byte = static_cast<unsigned char>(stark ? 255 * random.pick(0, 1) : random.pick(0, 255));
  return plane;
}

TEST(WarpReference, Sampler) {
  Random random(73);
  tally::reset();
  for (int round = 0; round < 40000; ++round) {
    Picture plane = random_plane(random);
    const float col = random_place(random, plane.cols);
    const float row = random_place(random, plane.rows);
    ASSERT_EQ(Bilinear(col, row, plane.bytes.data(), plane.rows, plane.cols, plane.stride(), 8),
              reference::autoclip::sample(col, row, plane))
        << "round " << round << ": " << plane.cols << " x " << plane.rows << " at " << col << ", " << row;
  }
  for (const char* branch : {"sample: before the first pixel", "sample: far before the first pixel",
                             "sample: behind the last pixel", "sample: negative", "sample: above 255"}) {
    tally::expect(branch, 500);
  }
}

Image random_source(Random& random, int most) {
  Image image(random.pick(1, most), random.pick(1, most), random.chance(50) ? 8 : 24);
  support::randomise(image, random);
  return image;
}

/** A rectangle that fits a frame, with a fraction or without; its extent may be 0 or below. */
Rect random_rect(Random& random, int cols, int rows) {
  Rect rect{static_cast<double>(random.pick(0, cols - 1)), static_cast<double>(random.pick(0, rows - 1)), 0, 0};
  rect.at(2) = random.pick(static_cast<int>(rect.at(0)) - 1, cols - 1);
  rect.at(3) = random.pick(static_cast<int>(rect.at(1)) - 1, rows - 1);
  if (random.chance(40)) {
    for (double& value : rect) value += std::floor(random.real(0, 4)) / 4;
    tally::count("rectangle with a fraction");
  }
  return rect;
}

Spots corners_of(const Rect& rect) {
  const auto l = static_cast<float>(rect.at(0));
  const auto t = static_cast<float>(rect.at(1));
  const auto r = static_cast<float>(rect.at(2));
  const auto b = static_cast<float>(rect.at(3));
  return {{{l, t}, {r, t}, {l, b}, {r, b}}};
}

/** An image with a pattern, so that what is not written shows. */
Image target_image(Random& random, int cols, int rows, int bits) {
  Image image(std::max(cols, 0), std::max(rows, 0), bits);
  support::randomise(image, random);
  return image;
}

bool all_finite(const Coefficients& coeffs) {
  return std::all_of(coeffs.begin(), coeffs.end(), [](double c) { return std::isfinite(c); });
}

using LibraryWarp = decltype(&ConvertImg);

void compare_warp(LibraryWarp library, Frame frame, Random& random) {
  Image source = random_source(random, 30);
  Rect rect = random_rect(random, source.width(), source.height());
  const Spots corners = random_spots(random, source.width(), source.height());
  Coefficients coeffs = reference::autoclip::solve_eight(corners_of(rect), corners);
  if (!all_finite(coeffs)) return;
  const int bits = source.header().biBitCount;
  const int cols = frame == Frame::kSource ? source.width() : static_cast<int>(rect.at(2) - rect.at(0) + 1);
  const int rows = frame == Frame::kSource ? source.height() : static_cast<int>(rect.at(3) - rect.at(1) + 1);
  Image target = target_image(random, cols, rows, bits);
  Picture expected(target);
  reference::autoclip::warp(Picture(source), expected, coeffs, rect, frame);
  ASSERT_TRUE(library(source.ptr(), target.ptr(), coeffs.data(), rect.data(), bits));
  ASSERT_EQ(support::difference(expected, Picture(target)), "")
      << source.width() << " x " << source.height() << " x " << bits << ", rectangle " << rect.at(0) << " "
      << rect.at(1) << " " << rect.at(2) << " " << rect.at(3);
}

TEST(WarpReference, IntoSourceFrame) {
  Random random(74);
  tally::reset();
  for (int round = 0; round < 1500; ++round) {
    SCOPED_TRACE(round);
    compare_warp(ConvertImg2, Frame::kSource, random);
    if (HasFatalFailure()) return;
  }
  for (const char* branch : {"warp: gray", "warp: colour", "rectangle with a fraction", "sample: negative",
                             "sample: above 255", "sample: before the first pixel", "sample: behind the last pixel"}) {
    tally::expect(branch, 200);
  }
}

TEST(WarpReference, IntoRectangle) {
  Random random(75);
  tally::reset();
  for (int round = 0; round < 1500; ++round) {
    SCOPED_TRACE(round);
    compare_warp(ConvertImg, Frame::kRect, random);
    if (HasFatalFailure()) return;
  }
  tally::expect("warp: gray", 400);
  tally::expect("warp: colour", 400);
}

TEST(WarpReference, CopiedRectangle) {
  Random random(76);
  for (int round = 0; round < 2000; ++round) {
    Image source = random_source(random, 30);
    Rect rect = random_rect(random, source.width() + 4, source.height() + 4);
    const int bits = source.header().biBitCount;
    Image target = target_image(random, static_cast<int>(rect.at(2) - rect.at(0) + 1),
                                static_cast<int>(rect.at(3) - rect.at(1) + 1), bits);
    Picture expected(target);
    reference::autoclip::copy_rect(Picture(source), expected, rect);
    Coefficients unread{};
    ASSERT_TRUE(ConvertImg3(source.ptr(), target.ptr(), unread.data(), rect.data(), bits));
    ASSERT_EQ(support::difference(expected, Picture(target)), "")
        << "round " << round << ": " << source.width() << " x " << source.height() << " x " << bits << ", rectangle "
        << rect.at(0) << " " << rect.at(1) << " " << rect.at(2) << " " << rect.at(3);
  }
}

}  // namespace
