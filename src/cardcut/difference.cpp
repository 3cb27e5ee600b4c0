#include "cardcut/difference.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "cardcut/kernels.h"

namespace vantrel::cardcut {
namespace {

constexpr int kColours = ColourPixel::kBytes;

void squared_differences(const unsigned char* a, const unsigned char* b, int bytes, std::uint16_t* squares) {
  for (int i = 0; i < bytes; ++i) {
    const int difference = a[i] - b[i];
    squares[i] = static_cast<std::uint16_t>(difference * difference);
  }
}

// NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult): the caller has filled them
int sum_of_colours(const std::uint16_t* squares) { return squares[0] + squares[1] + squares[2]; }

/** Up to 3 * 255 * 255 the root in single precision has the same whole part as that in double precision. */
int truncated_root(int square) { return static_cast<int>(std::sqrt(static_cast<float>(square))); }

int largest_magnitude(const std::int16_t* values, int count) {
  std::int16_t largest = 0;
  for (int i = 0; i < count; ++i) largest = std::max(largest, static_cast<std::int16_t>(std::abs(values[i])));
  return largest;
}

}  // namespace

int ColourPixel::difference(const unsigned char* a, const unsigned char* b) {
  std::uint16_t squares[kColours];
  squared_differences(a, b, kColours, squares);
  const int distance = truncated_root(sum_of_colours(squares));
  return b[0] + b[1] + b[2] < a[0] + a[1] + a[2] ? -distance : distance;
}

bool plain::any_far(const unsigned char* a, const unsigned char* b, int count, int least) {
  std::uint16_t squares[kMostCompared];
  squared_differences(a, b, count, squares);
  for (int i = 0; i + kColours <= count; ++i) {
    if (sum_of_colours(squares + i) >= least) return true;
  }
  return false;
}

int gray_row_contrasts(const Run& run, int count, int /*edge*/, std::int16_t* result) {
  const auto [before, here, after] = run;
  for (int i = 0; i < count; ++i) result[i] = static_cast<std::int16_t>(std::abs(after[i] - before[i]));
  return largest_magnitude(result, count);
}

int gray_contrasts(const Run& run, int count, int /*edge*/, std::int16_t* result) {
  const auto [before, here, after] = run;
  for (int i = 0; i < count; ++i) {
    result[i] = static_cast<std::int16_t>(std::abs(after[i] - before[i]) - std::abs(here[i + 1] - here[i - 1]));
  }
  return largest_magnitude(result, count);
}

int colour_contrasts(const Run& run, int count, int edge, std::int16_t* result) {
  static_assert(kColours * kRunLength == kMostCompared);
  // Most pixels lie on flat ground: their distances are compared as squares and need no root.
  const int least = (edge + 1) * (edge + 1);
  const int bytes = kColours * count;
  const unsigned char* right = run.here + kColours;
  const unsigned char* left = run.here - kColours;
  if (!kernels->any_far(run.after, run.before, bytes, least) && !kernels->any_far(right, left, bytes, least)) {
    std::fill_n(result, count, std::int16_t{0});
    return 0;
  }
  std::uint16_t across_rows[kMostCompared];
  std::uint16_t across_columns[kMostCompared];
  squared_differences(run.after, run.before, bytes, across_rows);
  squared_differences(right, left, bytes, across_columns);
  for (int i = 0; i < count; ++i) {
    const int rows = sum_of_colours(across_rows + kColours * i);
    const int columns = sum_of_colours(across_columns + kColours * i);
    const bool flat = rows < least && columns < least;
    result[i] = flat ? std::int16_t{0} : static_cast<std::int16_t>(truncated_root(rows) - truncated_root(columns));
  }
  return largest_magnitude(result, count);
}

}  // namespace vantrel::cardcut
