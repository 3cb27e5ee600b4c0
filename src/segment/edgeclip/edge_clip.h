/**
 * @file edge_clip.h
 * @brief The two horizontal border rows of a card, by counts of edge pixels.
 */
#ifndef VANTREL_SEGMENT_EDGECLIP_EDGE_CLIP_H
#define VANTREL_SEGMENT_EDGECLIP_EDGE_CLIP_H

#include <cstdint>

#include "geometry/span.h"
#include "image/view.h"

namespace vantrel::segment {

/** Where the Sobel gradient exceeds this, the clip sees an edge. */
inline constexpr int kEdgeThreshold = 60;

/** The shares of the width that must be edges in a border row, near the first memory row and far from it. */
inline constexpr double kNearShare = 0.45;
inline constexpr double kFarShare = 0.75;

/** Two border rows, kept in 16 bits. */
struct BorderRows {
  std::int16_t near = 0;
  std::int16_t far = 0;
};

/**
 * The rows with the most edges in two bands: the near one from row 5 to an eighth of the height, the far one from three
 * quarters to nine tenths of it. Where no row has its share of edges it is the first and the last row of the image.
 */
BorderRows find_border_rows(image::ConstPixels gray);

/**
 * Sets the pixels of `edge` to 255 at which the gradient of `source` exceeds the threshold, in the given rows and all
 * columns of the view. Reads the rows next to these and the bytes next to the columns.
 */
void mark_edges(image::ConstPixels source, image::Pixels edge, geometry::Span rows, int threshold);

/** Adds to each row's counter its black (0) pixels. */
void add_black_per_row(image::ConstPixels image, std::uint16_t* counters);

/** Adds to each column's counter its white (255) pixels. */
void add_white_per_column(image::ConstPixels image, std::uint16_t* counters);

}  // namespace vantrel::segment

#endif
