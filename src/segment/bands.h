/**
 * @file bands.h
 * @brief Bands: runs of densely marked rows in a strip of a black-and-white sheet.
 */
#ifndef VANTREL_SEGMENT_BANDS_H
#define VANTREL_SEGMENT_BANDS_H

#include <span>

#include "geometry/span.h"
#include "image/view.h"

namespace vantrel::segment {

using geometry::Span;
using image::ConstPixels;

enum class RowClass : unsigned char { kSparse, kDense };

/** The row halfway between the first and the last, rounded down. */
constexpr int middle_row(Span rows) { return (rows.first + rows.last()) / 2; }

/** Classes each row of the strip: dense when it has more than `limit` black pixels. One class a row. */
void classify_rows(ConstPixels strip, int limit, std::span<RowClass> rows);

/** Makes the sparse rows between two dense ones dense when those are less than `gap` rows apart. */
void bridge_gaps(std::span<RowClass> rows, int gap);

/** The bands that `rows` rows can have at most. */
constexpr int most_bands(int rows) { return rows / 2 + rows % 2; }

/**
 * Lists the maximal runs of dense rows, in increasing order.
 *
 * @param room space for most_bands(rows.size()) bands.
 * @return the part of `room` that was filled.
 */
std::span<Span> collect_bands(std::span<const RowClass> rows, std::span<Span> room);

}  // namespace vantrel::segment

#endif
