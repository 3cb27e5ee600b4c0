#include "image/work_array.h"
#include "scale/enlarge.h"
#include "scale/interleave.h"

namespace vantrel::scale {
namespace {

unsigned char mean(int a, int b) { return static_cast<unsigned char>((a + b + 1) >> 1); }

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
    means_across(row, next, even);
    means_of_four(row, next, odd);
    return {even, odd};
  }

 private:
  void means_along(const unsigned char* row, unsigned char* result) const {
    const int step = step_;
    const int inner = bytes_ - step;
    for (int i = 0; i < inner; ++i) result[i] = mean(row[i], row[i + step]);
    std::copy_n(row + inner, step, result + inner);
  }

  void means_across(const unsigned char* a, const unsigned char* b, unsigned char* result) const {
    const int bytes = bytes_;
    for (int i = 0; i < bytes; ++i) result[i] = mean(a[i], b[i]);
  }

  void means_of_four(const unsigned char* a, const unsigned char* b, unsigned char* result) const {
    const int step = step_;
    const int inner = bytes_ - step;
    for (int i = 0; i < inner; ++i) {
      result[i] = static_cast<unsigned char>((a[i] + a[i + step] + b[i] + b[i + step] + 2) >> 2);
    }
    for (int i = inner; i < inner + step; ++i) result[i] = mean(a[i], b[i]);
  }

  ConstPixels source_;
  int step_;
  int bytes_;  // in a row
  image::WorkArray<unsigned char> halves_;
};

}  // namespace

bool enlarge_bilinear(ConstPixels source, Pixels target, int channels) {
  if (source.empty()) return true;
  LinearRows rows(source, channels);
  if (!rows.ready()) return false;
  write_rows(rows, source, target, channels);
  return true;
}

}  // namespace vantrel::scale
