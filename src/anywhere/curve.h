/**
 * @file curve.h
 * @brief Sums of piecewise linear curves, one for each feature: what was fitted, and how it is read.
 */
#ifndef VANTREL_ANYWHERE_CURVE_H
#define VANTREL_ANYWHERE_CURVE_H

#include <array>
#include <cstddef>
#include <span>

namespace vantrel::anywhere {

/** A curve through points, level before the first and after the last. */
struct Curve {
  static constexpr std::size_t kKnots = 8;
  std::array<float, kKnots> at{}; /**< rising */
  std::array<float, kKnots> value{};

  double operator()(double x) const {
    if (!(x > at[0])) return value[0];
    for (std::size_t i = 1; i < kKnots; ++i) {
      if (x >= at[i]) continue;
      const double low = at[i - 1], high = at[i];
      return value[i - 1] + (static_cast<double>(value[i]) - value[i - 1]) * ((x - low) / (high - low));
    }
    return value[kKnots - 1];
  }
};

/** A generalised additive model: T. Hastie and R. Tibshirani, Statistical Science 1, 1986. */
template <std::size_t kCount>
struct AdditiveModel {
  double offset = 0.0;
  std::array<Curve, kCount> curves{};

  double operator()(std::span<const float, kCount> features) const {
    double sum = offset;
    for (std::size_t i = 0; i < kCount; ++i) sum += curves[i](features[i]);
    return sum;
  }
};

}  // namespace vantrel::anywhere

#endif
