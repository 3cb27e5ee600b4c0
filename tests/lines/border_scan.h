/**
 * @file border_scan.h
 * @brief A scan with everything that the three line searches take, laid out by hand.
 */
#ifndef VANTREL_TESTS_LINES_BORDER_SCAN_H
#define VANTREL_TESTS_LINES_BORDER_SCAN_H

#include <cmath>
#include <cstddef>
#include <iomanip>
#include <ostream>
#include <vector>

#include "lines/exports.h"
#include "support/block_list.h"
#include "support/image.h"

namespace border_scan {

inline constexpr double kUnwritten = -123.5;

/** Sines and cosines of whole degrees, as the corner finder tabulates them. */
struct Tables {
  double sin[180];
  double cos[180];

  Tables() {
    for (int t = 0; t < 180; ++t) {
      sin[t] = std::sin(t * 0.01745329251994);
      cos[t] = std::cos(t * 0.01745329251994);
    }
  }
  /** With an exact right angle, so that a level line's votes are whole numbers. */
  static Tables exact() {
    Tables tables;
    tables.cos[90] = 0.0;
    tables.sin[90] = 1.0;
    return tables;
  }
};

struct Line {
  double a, b, c;
  bool operator==(const Line&) const = default;
};
inline void PrintTo(const Line& line, std::ostream* out) {
  *out << std::setprecision(17) << line.a << " x + " << line.b << " y = " << line.c;
}

inline constexpr Line kNothing{kUnwritten, kUnwritten, kUnwritten};

/** A scan with everything that the searches take. It is all dark and without edges until painted. */
class Scan {
 public:
  Scan(int rows, int cols, const Tables& tables = Tables::exact())
      : rows_(rows),
        cols_(cols),
        stride_(support::stride_of(cols, 8)),
        tables_(tables),
        gray_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(stride_), 0),
        edge_(gray_.size(), 255) {
    for (double& value : normal_) value = kUnwritten;
    for (double& value : distance_) value = kUnwritten;
  }
  Scan(const Scan&) = delete;
  Scan& operator=(const Scan&) = delete;

  Scan& point(double row, double col) {
    points_.push_back({static_cast<float>(row), static_cast<float>(col)});
    return *this;
  }
  /** `count` points of a memory row. */
  Scan& level(int row, int count) {
    for (int c = 0; c < count; ++c) point(row, c);
    return *this;
  }
  /** `count` points of a column. */
  Scan& upright(int col, int count) {
    for (int r = 0; r < count; ++r) point(r, col);
    return *this;
  }
  /** A point in every column of a line through (row, middle column), rising by `degrees`. */
  Scan& rising(double row, double degrees) {
    for (int c = 0; c < cols_; ++c) point(std::round(row + std::tan(degrees * M_PI / 180) * (c - cols_ / 2)), c);
    return *this;
  }
  /** A point in every row of a line through (first row, col) whose column grows by `degrees` from upright. */
  Scan& leaning(double col, double degrees) {
    for (int r = 0; r < rows_; ++r) point(r, std::round(col + std::tan(degrees * M_PI / 180) * r));
    return *this;
  }
  Scan& paint(int row_from, int row_to, int level) {
    for (int r = row_from; r <= row_to; ++r) {
      for (int c = 0; c < stride_; ++c) gray_[at(r, c)] = static_cast<unsigned char>(level);
    }
    return *this;
  }
  Scan& bright() { return paint(0, rows_ - 1, 255); }
  /** `count` edge pixels in a row of the edge map. */
  Scan& edges(int row, int count) {
    for (int c = 0; c < count; ++c) edge_[at(row, c)] = 0;
    return *this;
  }
  /** Makes the density test prefer row L2 to L1 on side 0. */
  Scan& dense_beyond(int L1, int L2) { return edges(L1, 200).edges(L2, 200).edges(L1 + 1, 20); }
  Scan& component(int width, int height, int left, int bottom, int count = 1) {
    pieces_.add(width, height, left, bottom, count);
    return *this;
  }

  int search(int dir_class) {
    return Compute_Hough_Angle(normal_, distance_, points_.data(), rows_, cols_, static_cast<int>(points_.size()),
                               dir_class, tables_.sin, tables_.cos);
  }
  int search2(int side, int brightness = 0) { return search2(side, brightness, side < 2 ? 0 : 2); }
  int search2(int side, int brightness, int dir_class) {
    return Compute_Hough_Angle2(gray_.data(), pieces_.line(), edge_.data(), normal_, distance_, points_.data(), rows_,
                                cols_, static_cast<int>(points_.size()), dir_class, tables_.sin, tables_.cos, side,
                                static_cast<short>(brightness));
  }
  int search3(int side, int brightness = 0) { return search3(side, brightness, side < 2 ? 0 : 2); }
  int search3(int side, int brightness, int dir_class) {
    return Compute_Hough_Angle3(gray_.data(), pieces_.line(), edge_.data(), normal_, distance_, points_.data(), rows_,
                                cols_, static_cast<int>(points_.size()), dir_class, tables_.sin, tables_.cos, side,
                                static_cast<short>(brightness));
  }

  Line line(int side) const { return {normal_[2 * side], normal_[2 * side + 1], distance_[side]}; }
  bool nothing_written() const {
    for (int side = 0; side < 4; ++side) {
      if (line(side) != kNothing) return false;
    }
    return true;
  }
  const std::vector<typePoint>& points() const { return points_; }
  const Tables& tables() const { return tables_; }

 private:
  std::size_t at(int r, int c) const {
    return static_cast<std::size_t>(r) * static_cast<std::size_t>(stride_) + static_cast<std::size_t>(c);
  }

  int rows_, cols_, stride_;
  Tables tables_;
  std::vector<unsigned char> gray_, edge_;
  std::vector<typePoint> points_;
  support::Pieces pieces_;
  double normal_[8], distance_[4];
};

inline double single(double value) { return static_cast<double>(static_cast<float>(value)); }

/** The line of one whole degree at a distance, as the searches round it. */
inline Line line_of(const Scan& scan, int degrees, double distance) {
  const auto t = static_cast<std::size_t>(degrees);
  return {degrees == 90 ? 0.0 : single(scan.tables().cos[t]), degrees == 0 ? 0.0 : single(scan.tables().sin[t]),
          single(distance)};
}

}  // namespace border_scan

#endif
