#include "segment/sheet_layout.h"

#include <algorithm>

namespace vantrel::segment {

float dots_per_inch(int x_pels_per_metre, int y_pels_per_metre) {
  return static_cast<float>(std::min(x_pels_per_metre, y_pels_per_metre)) / 39.37f;
}

int reduction_factor(float dots_per_inch) {
  return static_cast<int>(static_cast<double>(dots_per_inch / 100.0f) + 0.5);
}

CardSize card_size(float dots_per_inch, int factor) {
  const auto pixels = [&](double inches) { return static_cast<int>(double{dots_per_inch} * inches / factor); };
  CardSize size{};
  size.height = pixels(2.2);
  size.length = pixels(3.55);
  size.bridged_gap = pixels(0.18);
  size.least_gap = 4 * pixels(0.375) / 5;
  size.dense_count = size.length / 24;
  return size;
}

bool has_two_columns(image::ConstPixels sheet, const CardSize& size) {
  if (sheet.cols <= 2 * size.length) return false;
  int marked_rows = 0;
  for (int r = 0; r < sheet.rows; ++r) {
    const unsigned char* middle = sheet.row(r) + sheet.cols / 2;
    if (std::count(middle - 5, middle + 5, 0) > 0) ++marked_rows;
  }
  return marked_rows <= size.height / 8;
}

}  // namespace vantrel::segment
