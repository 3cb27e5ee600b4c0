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

/** What a reduction aims at: from `least` on a scan is reduced, by as little as brings it to no more than `most`. */
struct Aim {
  double least;
  double most;

  double times(double measure) const { return measure < least ? 1.0 : rounded_up(measure / most); }
};

/** Borders on dark glass are found best at 140 to 210 dots per inch. */
constexpr Aim kResolution{280.0, 210.0};

/** A card with a rim of glass is then 600 to 800 pixels long. */
constexpr Aim kLongerSide{1200.0, 800.0};

}  // namespace

int reduction_to(const vantrel_image& scan, double analysis_dpi) {
  return scan.dpi > 0.0 && analysis_dpi > 0.0 ? allowed(scan, scan.dpi / analysis_dpi + 0.5) : 1;
}

int reduction_for_dark_glass(const vantrel_image& scan) {
  return allowed(scan,
                 scan.dpi > 0.0 ? kResolution.times(scan.dpi) : kLongerSide.times(std::max(scan.width, scan.height)));
}

}  // namespace vantrel::cards
