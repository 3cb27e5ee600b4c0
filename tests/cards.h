/**
 * @file cards.h
 * @brief Drawn scans for tests: one card on dark glass.
 */
#ifndef VANTREL_TESTS_CARDS_H
#define VANTREL_TESTS_CARDS_H

#include <array>
#include <cmath>

#include "images.h"

namespace testing_images {

/** Corners in the order top-left, top-right, bottom-left, bottom-right: (x, y) with y counted from the top. */
using Corners = std::array<double, 8>;

/** A rectangle turned about its middle by `degrees`, clockwise in the picture. */
inline Corners turned_card(double mid_x, double mid_y, double width, double height, double degrees) {
  const double c = std::cos(degrees * M_PI / 180), s = std::sin(degrees * M_PI / 180);
  Corners corners{};
  for (std::size_t i = 0; i < 4; ++i) {
    const double dx = (i % 2 == 0 ? -0.5 : 0.5) * width, dy = (i < 2 ? -0.5 : 0.5) * height;
    corners[2 * i] = mid_x + c * dx - s * dy;
    corners[2 * i + 1] = mid_y + s * dx + c * dy;
  }
  return corners;
}

inline constexpr unsigned char kGlass = 30;
/** Gray levels of the card's quarters: top-left, top-right, bottom-left, bottom-right. */
inline constexpr std::array<unsigned char, 4> kQuarters{200, 210, 220, 240};

/**
 * A scan of 8 or 24 bits with a card whose quarters differ in brightness, so that a picture that comes out mirrored or
 * upside down is told from one that does not. A pixel belongs to the card when its middle does.
 */
inline Image scan_of(const Corners& card, int width, int height, int bit_count = 8) {
  Image image(width, height, bit_count, kGlass);
  const auto beside = [&card](std::size_t from, std::size_t to, double x, double y) {
    return (card[2 * to] - card[2 * from]) * (y - card[2 * from + 1]) -
           (card[2 * to + 1] - card[2 * from + 1]) * (x - card[2 * from]);
  };
  const auto mid = [&card](std::size_t a, std::size_t b, std::size_t axis) {
    return (card[2 * a + axis] + card[2 * b + axis]) / 2;
  };
  const auto side_of = [](double x0, double y0, double x1, double y1, double x, double y) {
    return (x1 - x0) * (y - y0) - (y1 - y0) * (x - x0);
  };
  for (int row = 0; row < height; ++row) {
    for (int col = 0; col < width; ++col) {
      const double x = col + 0.5, y = height - row - 0.5;
      if (beside(0, 1, x, y) < 0 || beside(1, 3, x, y) < 0 || beside(3, 2, x, y) < 0 || beside(2, 0, x, y) < 0)
        continue;
      const bool right = side_of(mid(0, 1, 0), mid(0, 1, 1), mid(2, 3, 0), mid(2, 3, 1), x, y) < 0;
      const bool low = side_of(mid(0, 2, 0), mid(0, 2, 1), mid(1, 3, 0), mid(1, 3, 1), x, y) > 0;
      const unsigned char level = kQuarters[(low ? 2u : 0u) + (right ? 1u : 0u)];
      for (int byte = 0; byte < bit_count / 8; ++byte) image.at(row, col * bit_count / 8 + byte) = level;
    }
  }
  return image;
}

}  // namespace testing_images

#endif
