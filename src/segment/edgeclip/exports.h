/**
 * @file exports.h
 * @brief Doors: the edge map behind ClipImg. (ClipImg and the two projections are declared in vantrel.h.)
 */
#ifndef VANTREL_SEGMENT_EDGECLIP_EXPORTS_H
#define VANTREL_SEGMENT_EDGECLIP_EXPORTS_H

#include "vantrel.h"

/**
 * Sets to 255 every byte of `edge` at which the Sobel gradient of `source` exceeds the threshold, in rows
 * max(band1From, 1) to band1To - 1 and band2From to band2To - 1 and columns 0 to columns - 1; all others stay. Trusts
 * its arguments: it reads the byte before and behind each row's range and the rows next to each band.
 *
 * @param source, edge same geometry, `stride` bytes from row to row.
 * @return always 1.
 */
VANTREL_API int Sobel_Edge(unsigned char* source, unsigned char* edge, int stride, int band1From, int band1To,
                           int band2From, short threshold, short band2To, short columns);

#endif
