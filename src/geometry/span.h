/**
 * @file span.h
 * @brief Stretches of rows or columns, and the rectangles that two of them make.
 *
 * Rows are memory rows, counted from the first one in memory, everywhere in the core.
 */
#ifndef VANTREL_GEOMETRY_SPAN_H
#define VANTREL_GEOMETRY_SPAN_H

#include <algorithm>

namespace vantrel::geometry {

/** Rows or columns from `first` to before `end`. */
struct Span {
  int first = 0;
  int end = 0;

  constexpr int last() const { return end - 1; }
  constexpr int size() const { return end - first; }
  constexpr bool empty() const { return end <= first; }
  constexpr bool contains(int i) const { return i >= first && i < end; }
  constexpr bool operator==(const Span&) const = default;
};

/** The part of a span that lies in another. */
constexpr Span common(Span a, Span b) { return {std::max(a.first, b.first), std::min(a.end, b.end)}; }

/** A rectangle of pixels. */
struct Rect {
  Span rows;
  Span cols;

  constexpr bool operator==(const Rect&) const = default;
};

}  // namespace vantrel::geometry

#endif
