/**
 * @file summary.h
 * @brief A measure of four sides as a few numbers that do not depend on their order.
 */
#ifndef VANTREL_ANYWHERE_SUMMARY_H
#define VANTREL_ANYWHERE_SUMMARY_H

#include <algorithm>
#include <array>
#include <cstddef>

namespace vantrel::anywhere {

/** Which sides do not lie on the frame. */
using SeenSides = std::array<bool, 4>;

struct Summary {
  double mean = 0.0, least = 0.0, second = 0.0, most = 0.0;
};

/** Of the seen sides alone; all 0 where none is seen. */
inline Summary summarise(const std::array<double, 4>& values, const SeenSides& seen) {
  std::array<double, 4> rising{};
  std::size_t count = 0;
  double sum = 0.0;
  for (std::size_t i = 0; i < 4; ++i) {
    if (!seen[i]) continue;
    sum += values[i];
    std::size_t at = count++;
    for (; at > 0 && rising[at - 1] > values[i]; --at) rising[at] = rising[at - 1];
    rising[at] = values[i];
  }
  if (count == 0) return {};
  return {sum / static_cast<double>(count), rising[0], rising[std::min<std::size_t>(1, count - 1)], rising[count - 1]};
}

}  // namespace vantrel::anywhere

#endif
