#include "anywhere/reliefs.h"

#include <algorithm>
#include <cstdlib>

namespace vantrel::anywhere {
namespace {

/** Sobel's slope over two pixels, the larger of across and down; the outermost pixels are repeated. */
void lower_by_slope(const Copy& copy, std::size_t plane, int row, std::uint16_t* flatness) {
  const std::int16_t* const here = copy.planes[plane].get() + copy.index(row, 0);
  const std::int16_t* const above = row > 0 ? here - copy.cols : here;
  const std::int16_t* const below = row + 1 < copy.rows ? here + copy.cols : here;
  for (int col = 0; col < copy.cols; ++col) {
    const int left = std::max(col - 1, 0);
    const int right = std::min(col + 1, copy.cols - 1);
    const int across = above[right] - above[left] + 2 * (here[right] - here[left]) + below[right] - below[left];
    const int down = below[left] - above[left] + 2 * (below[col] - above[col]) + below[right] - above[right];
    const int slope = std::max(std::abs(across), std::abs(down)) / 4;
    flatness[col] = std::min(flatness[col], static_cast<std::uint16_t>(std::max(0, kFlattest - slope)));
  }
}

}  // namespace

void write_difference(const Copy& copy, const Colour& colour, std::span<std::uint16_t> relief) {
  std::fill(relief.begin(), relief.end(), std::uint16_t{0});
  for (std::size_t plane = 0; plane < copy.plane_count; ++plane) {
    const std::int16_t* const values = copy.planes[plane].get();
    for (std::size_t i = 0; i < relief.size(); ++i) {
      const auto away = static_cast<std::uint16_t>(std::abs(values[i] - colour[plane]));
      relief[i] = std::max(relief[i], away);
    }
  }
}

void write_flatness(const Copy& copy, std::span<std::uint16_t> relief) {
  std::fill(relief.begin(), relief.end(), static_cast<std::uint16_t>(kFlattest));
  for (std::size_t plane = 0; plane < copy.plane_count; ++plane)
    for (int row = 0; row < copy.rows; ++row) lower_by_slope(copy, plane, row, relief.data() + copy.index(row, 0));
}

}  // namespace vantrel::anywhere
