#include <new>

#include "scale/resample.h"
#include "scale/row_stream.h"

namespace vantrel::scale {
namespace {

/** Rounded means of each pixel and the next one; the last pixel has no next one and stays. */
void means_along(const unsigned char* row, const Source& source, unsigned char* result) {
  const int step = source.channels;
  const int inner = source.row_bytes() - step;
  for (int i = 0; i < inner; ++i) result[i] = static_cast<unsigned char>((row[i] + row[i + step] + 1) >> 1);
  std::copy_n(row + inner, step, result + inner);
}

/** Rounded means of the pixels of two rows. */
void means_across(const unsigned char* a, const unsigned char* b, const Source& source, unsigned char* result) {
  const int bytes = source.row_bytes();
  for (int i = 0; i < bytes; ++i) result[i] = static_cast<unsigned char>((a[i] + b[i] + 1) >> 1);
}

/** Rounded means of four neighbours; of two at the last pixel. */
void means_of_four(const unsigned char* a, const unsigned char* b, const Source& source, unsigned char* result) {
  const int step = source.channels;
  const int inner = source.row_bytes() - step;
  for (int i = 0; i < inner; ++i) {
    result[i] = static_cast<unsigned char>((a[i] + a[i + step] + b[i] + b[i + step] + 2) >> 2);
  }
  for (int i = inner; i < inner + step; ++i) result[i] = static_cast<unsigned char>((a[i] + b[i] + 1) >> 1);
}

/** Makes the output rows; behind the last source row the last one is repeated. */
class LinearRows {
 public:
  explicit LinearRows(const Source& source) : source_(source) {}

  bool allocate() {
    halves_.reset(new (std::nothrow) unsigned char[2 * static_cast<std::size_t>(source_.row_bytes())]);
    return halves_ != nullptr;
  }

  Halves make(int y, bool between_rows) {
    const unsigned char* row = source_.row(std::min(y, source_.rows - 1));
    const unsigned char* next = source_.row(std::min(y + 1, source_.rows - 1));
    unsigned char* even = halves_.get();
    unsigned char* odd = even + source_.row_bytes();
    if (!between_rows) {
      means_along(row, source_, odd);
      return {row, odd};
    }
    means_across(row, next, source_, even);
    means_of_four(row, next, source_, odd);
    return {even, odd};
  }

 private:
  const Source& source_;
  std::unique_ptr<unsigned char[]> halves_;
};

}  // namespace
}  // namespace vantrel::scale

bool BiLinearMethod(BITMAPPTR* src, BITMAPPTR* dst, short factor) {
  return factor != 0 && vantrel::scale::resample<vantrel::scale::LinearRows>(src, dst, factor);
}
