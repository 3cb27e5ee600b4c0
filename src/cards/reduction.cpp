#include "cards/reduction.h"

#include <algorithm>

#include "cards/reduce.h"

namespace vantrel::cards {
namespace {

/** Times as often as a scan allows: of a smaller one nothing would be left. */
int allowed(const vantrel_image& scan, double times) {
  const int most = std::min({scan.width, scan.height, kMostTimes});
  return times <= most ? std::max(1, static_cast<int>(times)) : 1;
}

double rounded_up(double value) {
  constexpr double kMost = 1 << 30;
  if (!(value < kMost)) return value;
  const int whole = static_cast<int>(value);
  return whole < value ? whole + 1 : whole;
}

/** What is `least` or more becomes no more than `most`, by as little as possible. */
double times_to(double measure, double most, double least) {
  return measure < least ? 1.0 : rounded_up(measure / most);
}

}  // namespace

int reduction_to(const vantrel_image& scan, double analysis_dpi) {
  return scan.dpi > 0.0 && analysis_dpi > 0.0 ? allowed(scan, scan.dpi / analysis_dpi + 0.5) : 1;
}

int reduction_for_dark_glass(const vantrel_image& scan) {
  if (scan.dpi > 0.0) return allowed(scan, times_to(scan.dpi, 210.0, 280.0));
  return allowed(scan, times_to(std::max(scan.width, scan.height), 800.0, 1200.0));
}

}  // namespace vantrel::cards
