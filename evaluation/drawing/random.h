// Random numbers that do not depend on the standard library: a seed draws the same scan with every one of them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace vantrel::drawing {

// xoshiro256++ of Blackman and Vigna, "Scrambled linear pseudorandom number generators", 2021; its state is filled by
// splitmix64 (Steele, Lea and Flood, "Fast splittable pseudorandom number generators", 2014).
class Random {
 public:
  explicit Random(std::uint64_t seed);
  Random(const std::string& name, std::uint64_t seed);

  std::uint64_t bits();
  double uniform();                           // in [0, 1)
  double uniform(double least, double most);  // in [least, most)
  double between(double least, double most);  // the same in ratio: as often below the geometric mean as above
  double normal();                            // mean 0, deviation 1
  int integer(int least, int most);           // both included
  bool chance(double probability) { return uniform() < probability; }
  double sign() { return chance(0.5) ? 1 : -1; }

  template <class Value, std::size_t Count>
  const Value& pick(const std::array<Value, Count>& values) {
    return values[static_cast<std::size_t>(integer(0, static_cast<int>(Count) - 1))];
  }

 private:
  std::array<std::uint64_t, 4> state_;
};

// Normal deviates made once, to be read from any place: noise for millions of pixels at the price of a load.
inline constexpr std::size_t kDeviates = 1 << 16;
const float* normal_deviates();

}  // namespace vantrel::drawing
