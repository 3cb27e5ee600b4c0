// The searches for border lines over points of any kind, against the second implementation.
#include <gtest/gtest.h>

#include "fuzz/check.h"
#include "reference/lines_search_pair.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  using namespace reference::lines;
  support::Random random(data, size);
  switch (random.pick(0, 4)) {
    case 0: {
      const int rows = random.pick(1, 70);
      const int cols = random.pick(1, 70);
      const int dir_class = random.one_in(9) ? random.pick(1, 4) : 2 * random.pick(0, 1);
      compare_two_lines(random_points(random, rows, cols, dir_class == 0), rows, cols, dir_class);
      break;
    }
    case 1:
    case 2:
      compare_on_any_points(Compute_Hough_Angle2, side_line, random);
      break;
    default:
      compare_on_any_points(Compute_Hough_Angle3, level_side_line, random);
      break;
  }
  FUZZ_CHECK(!testing::Test::HasFailure());
  return 0;
}
