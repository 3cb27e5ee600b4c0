/**
 * @file clip.h
 * @brief The card on the scan's own frame.
 */
#ifndef VANTREL_AUTOCLIP_CLIP_H
#define VANTREL_AUTOCLIP_CLIP_H

#include "autoclip/corners.h"
#include "image/view.h"

namespace vantrel::autoclip {

/** Whether single precision tells the frame, two pixels within the image, from the image itself: up to 2^24 pixels. */
bool has_frame(int rows, int cols);

/**
 * Maps the quadrilateral between the corners onto the frame of a picture of the scan's size: from (1, 1) to (w - 2,
 * h - 2), and written from the first column and the bottom row, so that the two rightmost columns and the two top rows
 * become white.
 *
 * @param channels bytes of a pixel in both.
 */
void clip_onto_frame(image::ConstPixels scan, image::Pixels target, int channels, const Corners& corners);

}  // namespace vantrel::autoclip

#endif
