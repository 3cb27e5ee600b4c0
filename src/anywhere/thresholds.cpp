#include "anywhere/thresholds.h"

#include <algorithm>
#include <cmath>

#include "anywhere/copy.h"
#include "anywhere/reliefs.h"

namespace vantrel::anywhere {
namespace {

/** Cells of a quarter of a level; what lies above the last is counted in it. */
constexpr int kCell = kLevel / 4;
constexpr std::size_t kCells = 1024;
/** No border is told from noise below this. */
constexpr int kLeast = kLevel * 3 / 2;

/** How many thresholds rise from the noise to what stands out. */
constexpr std::size_t kRising = 5;
/** The slopes that enclose flat regions, in halves of what is typical, as ascending thresholds of flatness. */
constexpr int kHalves[] = {24, 16, 10, 7, 5, 3};
/** No slope below this is a border's, in kLevel-ths over two pixels. */
constexpr int kLeastTypical = kLevel / 4;

class Histogram {
 public:
  explicit Histogram(const Relief& relief) : size_(relief.size()) {
    for (std::size_t i = 0; i < size_; ++i) ++counts_[std::min<std::size_t>(relief.values[i] / kCell, kCells - 1)];
  }
  /** The value that so many of 100 pixels lie below. */
  int percentile(std::size_t percent) const {
    const std::size_t below = size_ * percent / 100;
    std::size_t sum = 0;
    std::size_t cell = 0;
    while (cell + 1 < kCells && sum + counts_[cell] <= below) sum += counts_[cell++];
    return static_cast<int>(cell) * kCell + kCell / 2;
  }

 private:
  std::size_t size_;
  std::array<std::uint32_t, kCells> counts_{};
};

}  // namespace

Thresholds thresholds_of(const Relief& relief) {
  const Histogram histogram(relief);
  const double low = std::max(kLeast, std::min(2 * histogram.percentile(10), histogram.percentile(40)));
  const double high = 0.8 * histogram.percentile(98);
  Thresholds thresholds;
  const double factor = high > low ? std::sqrt(std::sqrt(high / low)) : 1.0;  // four steps from low to high
  double value = low;
  for (std::size_t i = 0; i < kRising; ++i, value *= factor) {
    const int threshold = static_cast<int>(value);
    if (thresholds.count > 0 && threshold < thresholds.values[thresholds.count - 1] + kLevel / 2) continue;
    thresholds.values[thresholds.count++] = threshold;
  }
  return thresholds;
}

Thresholds flatness_thresholds_of(const Relief& relief) {
  const Histogram histogram(relief);
  const int typical = std::max(kLeastTypical, kFlattest - histogram.percentile(60));
  Thresholds thresholds;
  for (const int halves : kHalves)
    thresholds.values[thresholds.count++] = std::max(0, kFlattest - halves * typical / 2);
  return thresholds;
}

}  // namespace vantrel::anywhere
