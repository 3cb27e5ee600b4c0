#include "image/work_array.h"
#include "scale/enlarge.h"
#include "scale/interleave.h"
#include "scale/kernels.h"

namespace vantrel::scale {
namespace {

/** Makes the target's rows. Behind the source's last row the last one is repeated, and so is each row's last pixel. */
class LinearRows {
 public:
  LinearRows(ConstPixels source, int channels)
      : source_(source),
        step_(channels),
        bytes_(source.cols * channels),
        halves_(2 * static_cast<std::size_t>(bytes_)) {}

  bool ready() const { return halves_.ready(); }

  Halves make(int y, bool between_rows) {
    const unsigned char* row = source_.row(y);
    const unsigned char* next = source_.row(std::min(y + 1, source_.rows - 1));
    unsigned char* even = halves_.get();
    unsigned char* odd = even + bytes_;
    if (!between_rows) {
      means_along(row, odd);
      return {row, odd};
    }
    kernels->means(row, next, bytes_, even);
    means_of_four(row, next, odd);
    return {even, odd};
  }

 private:
  void means_along(const unsigned char* row, unsigned char* result) const {
    const int inner = bytes_ - step_;
    kernels->means(row, row + step_, inner, result);
    std::copy_n(row + inner, step_, result + inner);
  }

  void means_of_four(const unsigned char* a, const unsigned char* b, unsigned char* result) const {
    const int inner = bytes_ - step_;
    kernels->means_of_four(a, b, step_, inner, result);
    kernels->means(a + inner, b + inner, step_, result + inner);
  }

  ConstPixels source_;
  int step_;
  int bytes_;  // in a row
  image::WorkArray<unsigned char> halves_;
};

}  // namespace

void plain::means(const unsigned char* a, const unsigned char* b, int count, unsigned char* result) {
  for (int i = 0; i < count; ++i) result[i] = static_cast<unsigned char>((a[i] + b[i] + 1) / 2);
}

void plain::means_of_four(const unsigned char* a, const unsigned char* b, int step, int count, unsigned char* result) {
  for (int i = 0; i < count; ++i) {
    result[i] = static_cast<unsigned char>((a[i] + a[i + step] + b[i] + b[i + step] + 2) / 4);
  }
}

bool enlarge_bilinear(ConstPixels source, Pixels target, int channels) {
  if (source.empty()) return true;
  LinearRows rows(source, channels);
  if (!rows.ready()) return false;
  write_rows(rows, source, target, channels);
  return true;
}

}  // namespace vantrel::scale
