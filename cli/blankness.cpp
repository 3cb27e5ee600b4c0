#include "blankness.h"

#include <array>
#include <cstdint>

#include "gray_copy.h"

namespace tool {
namespace {

constexpr int kCopySide = 400;
/** The means of neighbouring pixels have little noise left, and a lid is not lit alike all over. */
constexpr int kMostSpread = 24;
/** one in so many pixels of the copy may be a speck. */
constexpr std::int64_t kSpecks = 5000;

/** The level that no more than `left_out` pixels lie below; from above, with `step` -1. */
int level_after(const std::array<std::int64_t, 256>& count, int first, int step, std::int64_t left_out) {
  int level = first;
  for (std::int64_t below = count[static_cast<std::size_t>(level)]; below <= left_out;) {
    level += step;
    below += count[static_cast<std::size_t>(level)];
  }
  return level;
}

}  // namespace

bool is_blank(const Bitmap& scan) {
  const GrayCopy copy = gray_copy(scan, kCopySide);
  std::array<std::int64_t, 256> count{};
  for (int y = 0; y < copy.height(); ++y) {
    const unsigned char* row = copy.row(y);
    for (int x = 0; x < copy.width(); ++x) ++count[row[x]];
  }
  const std::int64_t specks = std::int64_t{copy.width()} * copy.height() / kSpecks;
  return level_after(count, 255, -1, specks) - level_after(count, 0, 1, specks) <= kMostSpread;
}

}  // namespace tool
