#include <gtest/gtest.h>

#include <cmath>

#include "lines/edges.h"

namespace vantrel::lines {
namespace {

/** The class by the angle itself, in single precision, folded into half a turn. */
int class_by_angle(int across_rows, int along_rows) {
  double angle = static_cast<float>(std::atan2(static_cast<double>(along_rows), static_cast<double>(across_rows)));
  if (angle < -3.14159) {
    angle += 6.28318;
  } else if (angle < 0) {
    angle += 3.14159;
  } else if (angle > 3.14159) {
    angle -= 3.14159;
  }
  if (angle < 0.39269 || angle >= 2.74883) return 0;
  if (angle < 1.17809) return 1;
  return angle < 1.96345 ? 2 : 3;
}

TEST(DirectionClass, IsThatOfTheAngleForEveryGradientThatBytesCanMake) {
  constexpr int kMost = 4 * 255;
  for (int across = -kMost; across <= kMost; ++across) {
    for (int along = -kMost; along <= kMost; ++along) {
      ASSERT_EQ(static_cast<int>(direction_of(across, along)), class_by_angle(across, along))
          << across << ", " << along;
    }
  }
}

}  // namespace
}  // namespace vantrel::lines
