#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "autoclip/kernels.h"
#include "autoclip/mapping.h"
#include "support/forms.h"
#include "support/random.h"

namespace {

using vantrel::autoclip::Kernels;
using vantrel::autoclip::Mapping;
using vantrel::autoclip::WarpSource;
using vantrel::autoclip::WarpStretch;
using vantrel::image::ConstPixels;
using Bytes = std::vector<unsigned char>;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

auto kernel_of(const Kernels& kernels, int channels) {
  return channels == 1 ? kernels.warp_1 : channels == 3 ? kernels.warp_3 : kernels.warp_4;
}

/** A picture whose last row ends with its last pixel: a sanitizer sees what is read around it. */
struct Picture {
  int rows, cols, channels;
  std::ptrdiff_t stride;
  Bytes bytes;

  Picture(support::Random& random, int rows, int cols, int channels, int padding)
      : rows(rows), cols(cols), channels(channels), stride(cols * channels + padding) {
    bytes.resize(static_cast<std::size_t>(stride * (rows - 1) + cols * channels));
    for (auto& byte : bytes) byte = static_cast<unsigned char>(random.pick(0, 255));
  }
  ConstPixels pixels() const { return {bytes.data(), rows, cols, stride}; }
};

void expect_same(const ConstPixels& source, int channels, const Mapping& mapping, int x, int y, int count) {
  for (const float first_position : {-kInfinity, 0.0f}) {
    const auto run = [&](const Kernels& kernels) {
      Bytes target(static_cast<std::size_t>(count * channels + 8), 99);
      kernel_of(kernels, channels)({source, first_position}, {mapping.data(), x, y, count, target.data()});
      return target;
    };
    const Bytes wanted = run(vantrel::autoclip::plain::kKernels);
    support::for_each_form([&](const auto& form) {
      ASSERT_EQ(run(form.autoclip), wanted) << channels << " " << source.cols << "x" << source.rows << " " << count;
    });
  }
}

TEST(WarpForms, SampleAlikeInsideAcrossTheRimAndOutside) {
  support::Random random(1);
  const auto fraction = [&] { return random.pick(-1000, 1000) / 1000.0; };
  for (int run = 0; run < 3000; ++run) {
    const int channels = std::array{1, 3, 4}[static_cast<std::size_t>(run % 3)];
    const Picture picture(random, random.pick(1, 40), random.pick(1, 200), channels, random.pick(0, 3));
    const double zoom = std::pow(2.0, 2 * fraction());
    const Mapping mapping{zoom + fraction() / 9,
                          fraction() / 3,
                          fraction() * picture.cols,
                          fraction() / 9,
                          zoom,
                          fraction() * picture.rows,
                          fraction() / (run % 5 == 0 ? 20 : 4000),
                          fraction() / 4000};
    ConstPixels source = picture.pixels();
    if (run % 4 == 1) source = source.upside_down();
    expect_same(source, channels, mapping, random.pick(-50, 50), random.pick(-20, 60), random.pick(0, 400));
  }
}

TEST(WarpForms, SampleAlikeWhereNothingIsANumberOrTooFarAway) {
  support::Random random(2);
  const double odd[] = {0,    -0.0,         1,    -1,   0.5,  1e-300, 1e300,    -1e300,    1e9,
                        -1e9, 2147483648.0, 1e38, 1e10, -0.3, 1e-5,   HUGE_VAL, -HUGE_VAL, std::nan("")};
  for (int run = 0; run < 3000; ++run) {
    const int channels = std::array{1, 3, 4}[static_cast<std::size_t>(run % 3)];
    const Picture picture(random, random.pick(1, 5), random.pick(1, 9), channels, 1);
    Mapping mapping{};
    for (double& c : mapping) c = odd[random.pick(0, static_cast<int>(std::size(odd)) - 1)];
    expect_same(picture.pixels(), channels, mapping, random.pick(-3, 3), random.pick(-3, 3), 40);
  }
}

TEST(WarpForms, SampleAlikeAtTheFirstAndLastPixels) {
  support::Random random(3);
  for (const int channels : {1, 3, 4}) {
    for (int cols = 1; cols < 6; ++cols) {
      const Picture picture(random, 3, cols, channels, 0);
      for (int sixteenths = -80; sixteenths < 80; ++sixteenths) {
        // An eighth of a pixel a step, from well before the picture to well behind it.
        expect_same(picture.pixels(), channels, {0.125, 0, -3, 0, 0.0625, sixteenths / 16.0, 0, 0}, 0, 0, 100);
      }
    }
  }
}

TEST(WarpForms, SampleAlikeWhereRowsAndPositionsAreTooFarApartForInts) {
  support::Random random(4);
  const Picture picture(random, 1, 9, 1, 0);
  const Mapping mapping{0.25, 0, -1, 0, 0, 0, 0, 0};
  for (const std::ptrdiff_t stride : {std::ptrdiff_t{1} << 31, -(std::ptrdiff_t{1} << 31)})
    expect_same({picture.bytes.data(), 1, 9, stride}, 1, mapping, 0, 0, 40);
  // The last position that there is comes last: column 4.5 of the picture, and so on backwards.
  constexpr int kLast = std::numeric_limits<int>::max();
  expect_same(picture.pixels(), 1, {0.25, 0, 4.5 - 0.25 * kLast, 0, 0, 0, 0, 0}, kLast - 39, 0, 40);
}

TEST(WarpForms, TheNumberBelowAHalfRoundsLikeAHalfInDoublePrecision) {
  // Every value that blending bytes can give: magnitudes below an eighth become 0 either way.
  constexpr float kBelowHalf = 0x1.fffffep-2f;
  ASSERT_EQ(std::nextafter(kBelowHalf, 1.0f), 0.5f);
  const auto last = std::bit_cast<std::uint32_t>(1024.0f);
  std::int64_t different = 0;
  for (auto bits = std::bit_cast<std::uint32_t>(0.125f); bits <= last; ++bits) {
    const auto value = std::bit_cast<float>(bits);
    different += static_cast<int>(value + kBelowHalf) != static_cast<int>(static_cast<double>(value) + 0.5);
    different += static_cast<int>(-value + kBelowHalf) != static_cast<int>(static_cast<double>(-value) + 0.5);
  }
  EXPECT_EQ(different, 0);
}

}  // namespace
