/**
 * @file scans.h
 * @brief Drawn scans of one card on dark glass: a plain one with hard edges, and random ones with soft edges, noise,
 * blots and print.
 */
#ifndef VANTREL_TESTS_SUPPORT_SCANS_H
#define VANTREL_TESTS_SUPPORT_SCANS_H

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "support/drawing.h"
#include "support/image.h"
#include "support/random.h"

namespace support {

/** One border of a card: how far a place lies on its left. */
struct Border {
  Border() = default;
  Border(double x0, double y0, double x1, double y1) : x(x0), y(y0) {
    const double length = std::max(std::hypot(x1 - x0, y1 - y0), 1e-9);
    along_x = (x1 - x0) / length;
    along_y = (y1 - y0) / length;
  }

  double distance(double col, double row) const { return along_x * (row - y) - along_y * (col - x); }

  double x = 0;
  double y = 0;
  double along_x = 0;
  double along_y = 0;
};

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
  const auto side = [&card](std::size_t from, std::size_t to) {
    return Border(card[2 * from], card[2 * from + 1], card[2 * to], card[2 * to + 1]);
  };
  const auto mid = [&card](std::size_t a, std::size_t b, std::size_t axis) {
    return (card[2 * a + axis] + card[2 * b + axis]) / 2;
  };
  const std::array<Border, 4> sides{side(0, 1), side(1, 3), side(3, 2), side(2, 0)};
  const Border down(mid(0, 1, 0), mid(0, 1, 1), mid(2, 3, 0), mid(2, 3, 1));
  const Border across(mid(0, 2, 0), mid(0, 2, 1), mid(1, 3, 0), mid(1, 3, 1));
  for (int row = 0; row < height; ++row) {
    for (int col = 0; col < width; ++col) {
      const double x = col + 0.5, y = height - row - 0.5;
      if (std::any_of(sides.begin(), sides.end(), [&](const Border& border) { return border.distance(x, y) < 0; }))
        continue;
      const bool right = down.distance(x, y) < 0;
      const bool low = across.distance(x, y) > 0;
      fill(image, col, col + 1, row, row + 1, kQuarters[(low ? 2u : 0u) + (right ? 1u : 0u)]);
    }
  }
  return image;
}

/** A round spot. */
struct Blot {
  double x;
  double y;
  double radius;
  double level;
};

/** An upright rectangle: a word of print, a rule, a strip of light at the glass's rim. */
struct Bar {
  int row;
  int col;
  int rows;
  int cols;
  double level;
};

/** What is drawn; the corners of the card go round it, x a column and y a memory row. */
struct CardScan {
  int cols = 100;
  int rows = 100;
  std::array<double, 8> card{};
  double ground = 40;
  double paper = 220;
  double softness = 1;
  double noise = 0;
  std::vector<Blot> blots;
  std::vector<Bar> bars;
};

/** The borders of a card, turned so that the card lies on the left of each. */
inline std::array<Border, 4> borders_of(const std::array<double, 8>& card) {
  std::array<Border, 4> borders{};
  double area = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const double x0 = card[2 * i];
    const double y0 = card[2 * i + 1];
    const double x1 = card[(2 * i + 2) % 8];
    const double y1 = card[(2 * i + 3) % 8];
    area += x0 * y1 - x1 * y0;
    borders[i] = Border(x0, y0, x1, y1);
  }
  for (Border& border : borders) {
    if (area > 0) continue;
    border.along_x = -border.along_x;
    border.along_y = -border.along_y;
  }
  return borders;
}

/** The levels of a scan before noise, row after row. */
class Levels {
 public:
  explicit Levels(const CardScan& scan)
      : cols_(scan.cols), rows_(scan.rows), levels_(static_cast<std::size_t>(cols_ * rows_)) {
    const std::array<Border, 4> borders = borders_of(scan.card);
    for (int row = 0; row < rows_; ++row) {
      for (int col = 0; col < cols_; ++col) {
        double inside = 1e9;
        for (const Border& border : borders) inside = std::min(inside, border.distance(col, row));
        const double share = std::clamp(inside / scan.softness + 0.5, 0.0, 1.0);
        at(row, col) = scan.ground + (scan.paper - scan.ground) * share;
      }
    }
    for (const Bar& bar : scan.bars) paint(bar);
    for (const Blot& blot : scan.blots) paint(blot);
  }

  double& at(int row, int col) { return levels_[static_cast<std::size_t>(row * cols_ + col)]; }

 private:
  void paint(const Bar& bar) {
    for (int row = std::max(bar.row, 0); row < std::min(bar.row + bar.rows, rows_); ++row) {
      for (int col = std::max(bar.col, 0); col < std::min(bar.col + bar.cols, cols_); ++col) at(row, col) = bar.level;
    }
  }
  void paint(const Blot& blot) {
    const int reach = static_cast<int>(blot.radius) + 2;
    const int x = static_cast<int>(blot.x);
    const int y = static_cast<int>(blot.y);
    for (int row = std::max(y - reach, 0); row < std::min(y + reach, rows_); ++row) {
      for (int col = std::max(x - reach, 0); col < std::min(x + reach, cols_); ++col) {
        const double dx = col - blot.x;
        const double dy = row - blot.y;
        if (dx * dx + dy * dy <= blot.radius * blot.radius) at(row, col) = blot.level;
      }
    }
  }

  int cols_;
  int rows_;
  std::vector<double> levels_;
};

/** Draws a scan as an image of 8 or 24 bits; the channels differ a little. */
inline Image draw(const CardScan& scan, int bits, Random& random) {
  Image image(scan.cols, scan.rows, bits);
  Levels levels(scan);
  const int channels = bits / 8;
  for (int row = 0; row < scan.rows; ++row) {
    for (int col = 0; col < scan.cols; ++col) {
      for (int channel = 0; channel < channels; ++channel) {
        double level = levels.at(row, col) - 3 * channel;
        if (scan.noise > 0) level += random.real(-scan.noise, scan.noise);
        image.at(row, channels * col + channel) = static_cast<unsigned char>(std::clamp(level, 0.0, 255.0));
      }
    }
  }
  return image;
}

/** Words of print in a row, as they stand on a card near one of its borders. */
inline void print_words(CardScan& scan, int row, Random& random) {
  const int height = random.pick(1, 4);
  for (int col = scan.cols / 8; col < 7 * scan.cols / 8;) {
    const int width = random.pick(2, 12);
    scan.bars.push_back({row, col, height, width, random.real(0, 90)});
    col += width + random.pick(1, 5);
  }
}

/** A card whose borders lie in the outer fifth of the columns and eighth of the rows. */
inline void place_card(CardScan& scan, Random& random) {
  const auto x_margin = [&] { return random.real(0.0, 0.19) * scan.cols; };
  const auto y_margin = [&] { return random.real(0.0, 0.12) * scan.rows; };
  const double last_x = scan.cols - 1;
  const double last_y = scan.rows - 1;
  if (random.chance(30)) {
    const double left = std::floor(x_margin());
    const double right = last_x - std::floor(x_margin());
    const double low = std::floor(y_margin());
    const double high = last_y - std::floor(y_margin());
    scan.card = {left, low, right, low, right, high, left, high};
    return;
  }
  const double tilt = random.real(-0.06, 0.06);
  const double left = x_margin();
  const double right = last_x - x_margin();
  const double low = y_margin();
  const double high = last_y - y_margin();
  const double x_shift = tilt * scan.rows / 2;
  const double y_shift = tilt * scan.cols / 2;
  scan.card = {left + x_shift,  low - y_shift,  right + x_shift, low + y_shift,
               right - x_shift, high + y_shift, left - x_shift,  high - y_shift};
}

/** A scan of any of the kinds that a corner finder meets. */
inline CardScan random_scan_of(Random& random, int cols, int rows) {
  CardScan scan;
  scan.cols = cols;
  scan.rows = rows;
  scan.ground = random.real(5, 100);
  scan.paper = random.real(150, 255);
  scan.softness = random.real(0.5, 3.0);
  scan.noise = random.chance(40) ? 0 : random.real(0, 25);
  place_card(scan, random);
  if (random.chance(8)) std::swap(scan.ground, scan.paper);
  if (random.chance(10)) scan.ground = random.real(130, 180);
  while (random.chance(40)) print_words(scan, random.pick(0, scan.rows - 1), random);
  if (random.chance(20)) {  // a bright rim at the start or the end of the glass
    const int thick = random.pick(1, 4);
    const int row = random.chance(50) ? 0 : scan.rows - thick;
    scan.bars.push_back({row, 0, thick, scan.cols, random.real(180, 255)});
  }
  if (random.chance(20)) {  // a rule across the card
    const bool low = random.chance(50);
    const int row = random.pick(0, scan.rows / 8) + (low ? 0 : 7 * scan.rows / 8 - 2);
    scan.bars.push_back({row, scan.cols / 10, random.pick(2, 6), 4 * scan.cols / 5, random.real(0, 120)});
  }
  if (random.chance(25)) {  // dust
    for (int grain = random.pick(5, 60); grain > 0; --grain) {
      scan.blots.push_back(
          {random.real(0, scan.cols), random.real(0, scan.rows), random.real(0.5, 2.5), random.real(0, 255)});
    }
  }
  while (random.chance(40)) {
    scan.blots.push_back({random.real(0, scan.cols), random.real(0, scan.rows), random.real(0.5, scan.cols / 12.0 + 1),
                          random.real(0, 255)});
  }
  return scan;
}

inline CardScan random_scan(Random& random, int least, int most) {
  const int cols = random.pick(least, most);
  return random_scan_of(random, cols, random.pick(least, most));
}

}  // namespace support

#endif
