#include "image/gray.h"

#include "image/kernels.h"

namespace vantrel::image {

void plain::gray_row(const unsigned char* pixels, unsigned char* levels, int count) {
  row_to_gray<3, 0>(pixels, levels, count);
}

void to_gray(ConstPixels colour, Pixels gray) {
  for (int r = 0; r < gray.rows; ++r) kernels->gray_row(colour.row(r), gray.row(r), gray.cols);
}

void split_planes(ConstPixels colour, const std::array<unsigned char*, 3>& planes, std::ptrdiff_t plane_stride) {
  const auto [first, second, third] = planes;
  for (int r = 0; r < colour.rows; ++r) {
    const unsigned char* pixel = colour.row(r);
    const std::ptrdiff_t row = std::ptrdiff_t{r} * plane_stride;
    for (int c = 0; c < colour.cols; ++c, pixel += 3) {
      first[row + c] = pixel[0];
      second[row + c] = pixel[1];
      third[row + c] = pixel[2];
    }
  }
}

}  // namespace vantrel::image
