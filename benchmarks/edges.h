/**
 * @file edges.h
 * @brief The edge maps of a drawn scan, and what is collected from them.
 */
#ifndef VANTREL_BENCHMARKS_EDGES_H
#define VANTREL_BENCHMARKS_EDGES_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "autoclip/exports.h"
#include "components/exports.h"
#include "support/image.h"

namespace benchmark_scans {

/** The part of a scan in which no edges are looked for, as Sobel_Operator takes it. */
enum class Passed {
  kNothing,
  kInside, /**< what lies within the corner finder's four bands */
  kFrame   /**< all but the operator's own margins */
};

inline MYRECT interior_of(Passed passed, int rows, int cols) {
  const auto rect = [](int left, int first_row, int right, int last_row) {
    return MYRECT{static_cast<std::int16_t>(left), static_cast<std::int16_t>(first_row),
                  static_cast<std::int16_t>(right), static_cast<std::int16_t>(last_row), 0};
  };
  switch (passed) {
    case Passed::kNothing:
      return rect(0, 0, -1, -1);
    case Passed::kInside:
      return rect(cols / 5, rows / 8, 4 * cols / 5, 7 * rows / 8);
    default:
      return rect(0, 0, cols, rows);
  }
}

/** The maps have the geometry of the scan's rows, their padding included. */
class EdgeMaps {
 public:
  EdgeMaps(support::Image scan, Passed passed)
      : rows(scan.height()),
        cols(scan.width()),
        stride(scan.stride()),
        gray(std::move(scan)),
        edge(gray.header().biSizeImage, 255),
        direction(gray.header().biSizeImage, 4),
        interior_(interior_of(passed, rows, cols)) {
    detect();
  }

  void detect() { Sobel_Operator(gray.ptr()->pBits, edge.data(), direction.data(), rows, cols, stride, interior_); }
  /** Makes the first pixels of a row edges, and the others none. */
  void mark_row(int row, int marked) {
    const auto begin = edge.begin() + std::ptrdiff_t{row} * stride;
    std::fill(begin, begin + marked, static_cast<unsigned char>(0));
    std::fill(begin + marked, begin + stride, static_cast<unsigned char>(255));
  }
  std::int64_t edges() const { return std::count(edge.begin(), edge.end(), 0); }

  /** The edge pixels of a direction in rows x columns. */
  std::vector<typePoint> points(int row_from, int row_to, int col_from, int col_to, int dir_class) {
    std::vector<typePoint> found(edge.size());
    int count = 0;
    CalcPointCenter2(edge.data(), direction.data(), found.data(), count, row_from, row_to, col_from, col_to, stride,
                     dir_class);
    found.resize(static_cast<std::size_t>(count));
    return found;
  }

  int rows;
  int cols;
  int stride;
  support::Image gray;
  std::vector<unsigned char> edge;
  std::vector<unsigned char> direction;

 private:
  MYRECT interior_;
};

/** A block list for the components of one map at a time. */
class ComponentList {
 public:
  ComponentList() : list_{} { ready_ = list_.Constructor(500, 100); }
  ComponentList(const ComponentList&) = delete;
  ComponentList& operator=(const ComponentList&) = delete;
  ~ComponentList() { list_.Destructor(); }

  bool ready() const { return ready_; }
  _BLIST& list() { return list_; }
  /** The line whose children are the components. */
  _BNODE* line() { return list_.GetHead()->child; }
  /** Gives the components back; false when there are none. */
  bool clear() {
    if (list_.IsEmpty()) return false;
    list_.ReturnGroup(list_.GetHead());
    return true;
  }

 private:
  _BLIST list_;
  bool ready_ = false;
};

}  // namespace benchmark_scans

#endif
