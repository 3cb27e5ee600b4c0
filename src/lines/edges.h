/**
 * @file edges.h
 * @brief Sobel edge and direction maps.
 */
#ifndef VANTREL_LINES_EDGES_H
#define VANTREL_LINES_EDGES_H

#include "geometry/span.h"
#include "image/view.h"

namespace vantrel::lines {

/** The bytes of an edge map. */
inline constexpr unsigned char kEdge = 0;
inline constexpr unsigned char kNoEdge = 255;

/** The magnitude of a gradient, truncated to an integer, that makes an edge. */
inline constexpr int kLeastEdgeMagnitude = 201;

/** The bytes of a direction map: the gradient's angle, folded into half a turn and rounded to a quarter of it. */
enum class Direction : unsigned char {
  kAcrossRows = 0, /**< as on a horizontal border */
  kRising = 1,
  kAlongRows = 2, /**< as on a vertical border */
  kFalling = 3,
  kNone = 4 /**< no edge */
};

/** The direction class of a gradient that makes an edge. */
Direction direction_of(int across_rows, int along_rows);

/**
 * The pixels of an image that are not looked at: those more than rows / 15 rows and cols / 25 columns inside the
 * interior, and not in the outermost rows and columns.
 */
geometry::Rect skipped_by(const geometry::Rect& interior, int rows, int cols);

/**
 * Marks the edge pixels (gradients of kLeastEdgeMagnitude and more) and their directions outside an interior rectangle.
 *
 * Visits rows 1 to rows - 3 and columns 1 to cols - 3; all other pixels of the maps stay as they were. Those that the
 * interior skips are marked as no edge without being looked at. The operator is I. Sobel and G. Feldman's 3 x 3
 * gradient ("A 3x3 Isotropic Gradient Operator", 1968).
 *
 * @param edge, direction maps of the image's size.
 */
void mark_edges(image::ConstPixels gray, image::Pixels edge, image::Pixels direction, const geometry::Rect& interior);

}  // namespace vantrel::lines

#endif
