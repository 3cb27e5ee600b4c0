#include "anywhere/directions.h"

#include <algorithm>
#include <cmath>

namespace vantrel::anywhere {

int direction_of(double x, double y) {
  const double across = std::abs(x), down = std::abs(y);
  const double larger = std::max(across, down);
  if (larger == 0.0) return 0;
  // The arc tangent of a ratio up to 1: M. Abramowitz and I. A. Stegun, "Handbook of Mathematical Functions", 1964,
  // 4.4.49; good to 1e-5, where a bin is 0.012 wide.
  const double r = std::min(across, down) / larger, s = r * r;
  double angle = r * (0.9998660 + s * (-0.3302995 + s * (0.1801410 + s * (-0.0851330 + s * 0.0208351))));
  constexpr double kPi = 3.141592653589793;
  if (down > across) angle = kPi / 2 - angle;
  if ((x < 0.0) != (y < 0.0)) angle = kPi - angle;
  return static_cast<int>(angle * (kDirections / kPi) + 0.5) % kDirections;
}

}  // namespace vantrel::anywhere
