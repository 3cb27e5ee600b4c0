/**
 * @file drawing.h
 * @brief Drawn scans for comparisons: a bright card askew on dark ground, with soft edges, noise, blots and print.
 */
#ifndef VANTREL_TESTS_REFERENCE_DRAWING_H
#define VANTREL_TESTS_REFERENCE_DRAWING_H

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "images.h"

namespace reference::drawing {

/** A whole number from `low` to `high`, the same with every standard library. */
inline int pick(std::mt19937& random, int low, int high) {
  return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
}

/** A number from `low` to `high`. */
inline double pick_real(std::mt19937& random, double low, double high) {
  return low + (high - low) * (static_cast<double>(random()) / 4294967295.0);
}

/** True `percent` times of a hundred. */
inline bool chance(std::mt19937& random, int percent) { return pick(random, 1, 100) <= percent; }

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
struct Sheet {
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

/** One border of the card: how far a place lies on its left. */
struct Border {
  double x;
  double y;
  double along_x;
  double along_y;

  double distance(int col, int row) const { return along_x * (row - y) - along_y * (col - x); }
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
    const double length = std::max(std::hypot(x1 - x0, y1 - y0), 1e-9);
    area += x0 * y1 - x1 * y0;
    borders[i] = {x0, y0, (x1 - x0) / length, (y1 - y0) / length};
  }
  for (Border& border : borders) {
    if (area > 0) continue;
    border.along_x = -border.along_x;
    border.along_y = -border.along_y;
  }
  return borders;
}

/** The levels of a sheet before noise, row after row. */
class Levels {
 public:
  explicit Levels(const Sheet& sheet)
      : cols_(sheet.cols), rows_(sheet.rows), levels_(static_cast<std::size_t>(cols_ * rows_)) {
    const std::array<Border, 4> borders = borders_of(sheet.card);
    for (int row = 0; row < rows_; ++row) {
      for (int col = 0; col < cols_; ++col) {
        double inside = 1e9;
        for (const Border& border : borders) inside = std::min(inside, border.distance(col, row));
        const double share = std::clamp(inside / sheet.softness + 0.5, 0.0, 1.0);
        at(row, col) = sheet.ground + (sheet.paper - sheet.ground) * share;
      }
    }
    for (const Bar& bar : sheet.bars) paint(bar);
    for (const Blot& blot : sheet.blots) paint(blot);
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

/** Draws a sheet as an image of 8 or 24 bits; the channels differ a little. */
inline testing_images::Image draw(const Sheet& sheet, int bits, std::mt19937& random) {
  testing_images::Image image(sheet.cols, sheet.rows, bits);
  Levels levels(sheet);
  const int channels = bits / 8;
  for (int row = 0; row < sheet.rows; ++row) {
    for (int col = 0; col < sheet.cols; ++col) {
      for (int channel = 0; channel < channels; ++channel) {
        double level = levels.at(row, col) - 3 * channel;
        if (sheet.noise > 0) level += pick_real(random, -sheet.noise, sheet.noise);
        image.at(row, channels * col + channel) = static_cast<unsigned char>(std::clamp(level, 0.0, 255.0));
      }
    }
  }
  return image;
}

/** Words of print in a row, as they stand on a card near one of its borders. */
inline void print_words(Sheet& sheet, int row, std::mt19937& random) {
  const int height = pick(random, 1, 4);
  for (int col = sheet.cols / 8; col < 7 * sheet.cols / 8;) {
    const int width = pick(random, 2, 12);
    sheet.bars.push_back({row, col, height, width, pick_real(random, 0, 90)});
    col += width + pick(random, 1, 5);
  }
}

/** A card whose borders lie in the outer fifth of the columns and eighth of the rows. */
inline void place_card(Sheet& sheet, std::mt19937& random) {
  const auto x_margin = [&] { return pick_real(random, 0.0, 0.19) * sheet.cols; };
  const auto y_margin = [&] { return pick_real(random, 0.0, 0.12) * sheet.rows; };
  const double last_x = sheet.cols - 1;
  const double last_y = sheet.rows - 1;
  if (chance(random, 30)) {
    const double left = std::floor(x_margin());
    const double right = last_x - std::floor(x_margin());
    const double low = std::floor(y_margin());
    const double high = last_y - std::floor(y_margin());
    sheet.card = {left, low, right, low, right, high, left, high};
    return;
  }
  const double tilt = pick_real(random, -0.06, 0.06);
  const double left = x_margin();
  const double right = last_x - x_margin();
  const double low = y_margin();
  const double high = last_y - y_margin();
  const double x_shift = tilt * sheet.rows / 2;
  const double y_shift = tilt * sheet.cols / 2;
  sheet.card = {left + x_shift,  low - y_shift,  right + x_shift, low + y_shift,
                right - x_shift, high + y_shift, left - x_shift,  high - y_shift};
}

/** A scan of any of the kinds that a corner finder meets. */
inline Sheet random_sheet_of(std::mt19937& random, int cols, int rows) {
  Sheet sheet;
  sheet.cols = cols;
  sheet.rows = rows;
  sheet.ground = pick_real(random, 5, 100);
  sheet.paper = pick_real(random, 150, 255);
  sheet.softness = pick_real(random, 0.5, 3.0);
  sheet.noise = chance(random, 40) ? 0 : pick_real(random, 0, 25);
  place_card(sheet, random);
  if (chance(random, 8)) std::swap(sheet.ground, sheet.paper);
  if (chance(random, 10)) sheet.ground = pick_real(random, 130, 180);
  while (chance(random, 40)) print_words(sheet, pick(random, 0, sheet.rows - 1), random);
  if (chance(random, 20)) {  // a bright rim at the start or the end of the glass
    const int thick = pick(random, 1, 4);
    const int row = chance(random, 50) ? 0 : sheet.rows - thick;
    sheet.bars.push_back({row, 0, thick, sheet.cols, pick_real(random, 180, 255)});
  }
  if (chance(random, 20)) {  // a rule across the card
    const bool low = chance(random, 50);
    const int row = pick(random, 0, sheet.rows / 8) + (low ? 0 : 7 * sheet.rows / 8 - 2);
    sheet.bars.push_back({row, sheet.cols / 10, pick(random, 2, 6), 4 * sheet.cols / 5, pick_real(random, 0, 120)});
  }
  if (chance(random, 25)) {  // dust
    for (int grain = pick(random, 5, 60); grain > 0; --grain) {
      sheet.blots.push_back({pick_real(random, 0, sheet.cols), pick_real(random, 0, sheet.rows),
                             pick_real(random, 0.5, 2.5), pick_real(random, 0, 255)});
    }
  }
  while (chance(random, 40)) {
    sheet.blots.push_back({pick_real(random, 0, sheet.cols), pick_real(random, 0, sheet.rows),
                           pick_real(random, 0.5, sheet.cols / 12.0 + 1), pick_real(random, 0, 255)});
  }
  return sheet;
}

inline Sheet random_sheet(std::mt19937& random, int least, int most) {
  const int cols = pick(random, least, most);
  return random_sheet_of(random, cols, pick(random, least, most));
}

}  // namespace reference::drawing

#endif
