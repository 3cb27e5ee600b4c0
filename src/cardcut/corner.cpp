#include "cardcut/corner.h"

namespace vantrel::cardcut {

Moments& Moments::operator+=(const Moments& other) {
  xx += other.xx;
  xy += other.xy;
  yy += other.yy;
  return *this;
}

std::int64_t corner_measure(const Moments& window) {
  constexpr std::int64_t kPixels = kWindowSide * kWindowSide;
  const std::int64_t xx = window.xx / kPixels;
  const std::int64_t xy = window.xy / kPixels;
  const std::int64_t yy = window.yy / kPixels;
  const std::int64_t trace = xx + yy;
  return xx * yy - xy * xy - trace * trace / 10;
}

}  // namespace vantrel::cardcut
