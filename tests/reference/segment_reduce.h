/**
 * @file segment_reduce.h
 * @brief Reduced gray copies, running-mean binarisation and the edge clip, the naive way.
 */
#ifndef VANTREL_TESTS_REFERENCE_SEGMENT_REDUCE_H
#define VANTREL_TESTS_REFERENCE_SEGMENT_REDUCE_H

#include <vector>

#include "support/picture.h"

namespace reference {

using support::Picture;

/** Every n-th pixel of every n-th row of a 24-, 8- or 1-bit picture as gray; padding bytes are 255. */
Picture reduced(const Picture& source, int n);

/** How many pixels became what. */
struct Binarised {
  int black = 0;
  int white = 0;
};

/** In place over `rows` rows of `width` bytes in a buffer of `stride` bytes a row. */
void moving_average(std::vector<unsigned char>& pixels, int width, int rows, int stride, Binarised& counts);

struct ClipRows {
  int first;
  int second;
};

/** The border rows of a gray picture whose sides fit in 16 bits. */
ClipRows clip_rows(const Picture& image);

}  // namespace reference

#endif
