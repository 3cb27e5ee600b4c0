/**
 * @file row_stream.h
 * @brief The stream of rows that both resamplers write: source rows in, twice as wide output rows out.
 */
#ifndef VANTREL_SCALE_ROW_STREAM_H
#define VANTREL_SCALE_ROW_STREAM_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "vantrel.h"

namespace vantrel::scale {

/** A source image as rows of bytes, `channels` of them a pixel. Its sides have been cut to signed 16-bit values. */
struct Source {
  const unsigned char* pixels = nullptr;
  std::ptrdiff_t stride = 0;
  int rows = 0;
  int cols = 0;
  int channels = 1;
  std::unique_ptr<unsigned char[]> extended;  // the pixels, when the image's own block is too short

  const unsigned char* row(int r) const { return pixels + r * stride; }
  int row_bytes() const { return cols * channels; }
};

/** The size of the output, whose columns are a multiple of 4. */
struct OutputSize {
  std::int64_t rows;
  std::int64_t cols;

  bool empty() const { return rows <= 0 || cols <= 0; }
};

/** An output row taken apart: the pixels of its even columns and those of its odd columns. */
struct Halves {
  const unsigned char* even;
  const unsigned char* odd;
};

/** Whether both images are there at all. */
bool present(const BITMAPPTR* src, const BITMAPPTR* dst);

/** The source's geometry; its pixels are not yet safe to read. */
Source source_of(const BITMAPPTR& image);

/** Makes every row of the source safe to read; false when there is no such image or no memory. */
bool make_readable(const BITMAPPTR& image, Source& source);

/** The sides of `factor` times the source, its width rounded up. */
OutputSize enlarged(const Source& source, int factor);

/** Puts an output row together, repeating its last even pixel up to `cols`; returns where the next row begins. */
unsigned char* write_row(const Halves& halves, const Source& source, std::int64_t cols, unsigned char* out);

/**
 * Fills `dst` with `factor` times the source, one row behind the other.
 *
 * `Rows` makes them: it is constructed from the source; `allocate()` tells whether it has its memory; `make(y,
 * between)` gives the row at source row y or, when `between` is set, halfway to the next. y runs on beyond the source's
 * rows where the output is longer than twice the source.
 */
template <class Rows>
bool resample(const BITMAPPTR* src, BITMAPPTR* dst, int factor) {
  if (!present(src, dst)) return false;
  Source source = source_of(*src);
  if (source.rows < 0) return false;
  const OutputSize size = enlarged(source, factor);
  if (size.empty()) return true;
  if (!make_readable(*src, source)) return false;
  Rows rows(source);
  if (!rows.allocate()) return false;

  unsigned char* out = dst->pBits;
  for (std::int64_t r = 0; r < size.rows; ++r) {
    out = write_row(rows.make(static_cast<int>(r >> 1), (r & 1) != 0), source, size.cols, out);
  }
  return true;
}

}  // namespace vantrel::scale

#endif
