/**
 * @file reduce.h
 * @brief Reduced gray copies by subsampling, and running-mean binarisation.
 */
#ifndef VANTREL_SEGMENT_REDUCE_H
#define VANTREL_SEGMENT_REDUCE_H

#include "image/view.h"

namespace vantrel::segment {

using image::ConstPixels;
using image::Pixels;

/**
 * Fill `target` with the gray levels of the source's pixels at multiples of n; what is left over at the right and the
 * top is dropped.
 *
 * Colour becomes 0.114 blue + 0.587 green + 0.299 red, truncated; a set bit becomes 255.
 *
 * @param target source.rows / n rows of source.cols / n gray levels.
 */
void reduce_colour(ConstPixels source, Pixels target, int n);
void reduce_gray(ConstPixels source, Pixels target, int n);
void reduce_bits(ConstPixels source, Pixels target, int n);

/**
 * Makes gray levels black (0) and white (255), by a running mean over a serpentine scan.
 *
 * @return false when there is no memory; the pixels are then untouched.
 */
bool binarise(Pixels image);

}  // namespace vantrel::segment

#endif
