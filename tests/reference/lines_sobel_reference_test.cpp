/** Edge maps and level estimates against the plain ones. */
#include <gtest/gtest.h>

#include <cmath>
#include <optional>

#include "lines/exports.h"
#include "reference/lines_sobel.h"
#include "support/random.h"
#include "support/scans.h"
#include "support/tally.h"

namespace {

using reference::lines::EdgeMaps;
using support::Picture;
using support::Random;
namespace tally = support::tally;

/** Few levels make equal neighbours and exact directions; two make steps. */
Picture random_gray(Random& random, int most) {
  Picture gray(random.pick(0, most), random.pick(0, most), 8, 0);
  const int step = std::array<int, 4>{1, 16, 85, 255}.at(random.bits() % 4);
  for (unsigned char& byte : gray.bytes) byte = static_cast<unsigned char>(random.pick(0, 255 / step) * step);
  return gray;
}

EdgeMaps random_maps(const Picture& gray, Random& random) {
  EdgeMaps maps = reference::lines::blank_maps(gray);
  for (unsigned char& byte : maps.edge.bytes) byte = random.byte();
  for (unsigned char& byte : maps.dir.bytes) byte = random.byte();
  return maps;
}

MYRECT random_interior(const Picture& gray, Random& random) {
  const auto number = [&random](int high) { return static_cast<short>(random.pick(-3, high + 3)); };
  MYRECT rect{number(gray.cols), number(gray.rows), number(gray.cols), number(gray.rows), 0};
  if (rect.left > rect.right) std::swap(rect.left, rect.right);
  if (rect.top > rect.bottom) std::swap(rect.top, rect.bottom);
  return rect;
}

void compare_maps(const Picture& gray, Random& random) {
  const MYRECT interior = random_interior(gray, random);
  EdgeMaps expected = random_maps(gray, random);
  EdgeMaps actual = expected;
  Picture source = gray;
  reference::lines::sobel(gray, interior, expected);
  Sobel_Operator(source.bytes.data(), actual.edge.bytes.data(), actual.dir.bytes.data(), gray.rows, gray.cols,
                 gray.stride(), interior);
  ASSERT_EQ(support::difference(expected.edge, actual.edge), "");
  ASSERT_EQ(support::difference(expected.dir, actual.dir), "");
  for (int row = 1; row <= gray.rows - 3; ++row) {
    for (int col = 1; col <= gray.cols - 3; ++col) {
      static std::array<long*, 5> directions{&tally::counter("direction 0"), &tally::counter("direction 1"),
                                             &tally::counter("direction 2"), &tally::counter("direction 3"),
                                             &tally::counter("direction 4")};
      ++*directions.at(expected.dir.at(row, col));
    }
  }
}

TEST(LinesReference, EdgeMapsOfNoise) {
  Random random(21);
  tally::reset();
  for (int round = 0; round < 1500; ++round) {
    SCOPED_TRACE(round);
    compare_maps(random_gray(random, 40), random);
    if (HasFatalFailure()) return;
  }
  for (const char* direction : {"direction 0", "direction 1", "direction 2", "direction 3", "direction 4"}) {
    tally::expect(direction, 10000);
  }
  tally::expect("sobel: angle of pi", 1000);
}

TEST(LinesReference, EdgeMapsOfCards) {
  Random random(22);
  for (int round = 0; round < 100; ++round) {
    SCOPED_TRACE(round);
    const auto image = support::draw(support::random_scan(random, 3, 130), 8, random);
    compare_maps(Picture(image), random);
    if (HasFatalFailure()) return;
  }
}

/** A 3 x 3 patch with given gradients, in the middle of an image of 5 x 5; nothing when bytes cannot make them. */
std::optional<Picture> patch_with(int across_rows, int along_rows) {
  if ((across_rows - along_rows) % 2 != 0) return std::nullopt;
  for (int diagonal = -255; diagonal <= 255; ++diagonal) {  // upper right minus lower left; the other diagonal is level
    if ((across_rows - diagonal) % 2 != 0) continue;
    const int column = (across_rows - diagonal) / 2;  // above minus below
    const int row = (along_rows - diagonal) / 2;      // right minus left
    if (std::abs(column) > 255 || std::abs(row) > 255) continue;
    Picture gray(5, 5, 8, 0);
    gray.at(1, 3) = static_cast<unsigned char>(std::max(diagonal, 0));
    gray.at(3, 1) = static_cast<unsigned char>(std::max(-diagonal, 0));
    gray.at(1, 2) = static_cast<unsigned char>(std::max(column, 0));
    gray.at(3, 2) = static_cast<unsigned char>(std::max(-column, 0));
    gray.at(2, 3) = static_cast<unsigned char>(std::max(row, 0));
    gray.at(2, 1) = static_cast<unsigned char>(std::max(-row, 0));
    return gray;
  }
  return std::nullopt;
}

/** The whole gradients on both sides of every boundary between two directions. */
TEST(LinesReference, DirectionsAtTheirBoundaries) {
  int compared = 0;
  for (const double boundary : {0.39269, 1.17809, 1.96345, 2.74883}) {
    for (int across = -1020; across <= 1020; ++across) {
      const int nearest = static_cast<int>(std::floor(across * std::tan(boundary)));
      for (int along = nearest - 1; along <= nearest + 2; ++along) {
        std::optional<Picture> gray = patch_with(across, along);
        if (!gray) continue;
        EdgeMaps expected = reference::lines::blank_maps(*gray);
        EdgeMaps actual = expected;
        reference::lines::sobel(*gray, MYRECT{}, expected);
        Sobel_Operator(gray->bytes.data(), actual.edge.bytes.data(), actual.dir.bytes.data(), 5, 5, gray->stride(),
                       MYRECT{});
        ASSERT_EQ(expected.dir.at(2, 2), actual.dir.at(2, 2)) << "gradient " << across << ", " << along;
        ++compared;
      }
    }
  }
  EXPECT_GE(compared, 5000);
}

/** Levels around the two thresholds, in shares around the ratios that decide. */
Picture levels_near_thresholds(Random& random) {
  Picture gray(random.pick(0, 30), random.pick(0, 30), 8, 0);
  const int bright_share = std::array<int, 7>{25, 75, 80, 50, 0, 100, 68}.at(random.bits() % 7);
  for (unsigned char& byte : gray.bytes) {
    byte = static_cast<unsigned char>(random.chance(bright_share) ? random.pick(180, 186) : random.pick(123, 131));
  }
  return gray;
}

TEST(LinesReference, LevelEstimates) {
  Random random(23);
  std::array<int, 3> classes{};
  std::array<int, 2> darkness{};
  for (int round = 0; round < 5000; ++round) {
    Picture gray = random.chance(50) ? levels_near_thresholds(random) : random_gray(random, 20);
    const int row_from = random.pick(0, gray.rows);
    const int row_to = random.pick(row_from, gray.rows);
    const int col_from = random.pick(0, gray.cols);
    const int col_to = random.pick(col_from, gray.cols);
    const int brightness = reference::lines::brightness(gray, row_from, row_to, col_from, col_to);
    const bool dark = reference::lines::dark(gray, row_from, row_to, col_from, col_to);
    ASSERT_EQ(EstimateWB(gray.bytes.data(), row_from, row_to, col_from, col_to, gray.stride()), brightness) << round;
    ASSERT_EQ(EstimateBlkPixel(gray.bytes.data(), row_from, row_to, col_from, col_to, gray.stride(), round % 4),
              dark ? 1 : 0)
        << round;
    ++classes.at(static_cast<std::size_t>(brightness));
    ++darkness.at(dark ? 1 : 0);
  }
  for (const int times : classes) EXPECT_GE(times, 300);
  for (const int times : darkness) EXPECT_GE(times, 300);
}

}  // namespace
