/**
 * @file random.h
 * @brief Random numbers for tests, the same with every standard library.
 */
#ifndef VANTREL_TESTS_SUPPORT_RANDOM_H
#define VANTREL_TESTS_SUPPORT_RANDOM_H

#include <cstddef>
#include <cstdint>
#include <random>

namespace support {

/** A seeded source. Take one number a statement where the order matters: compilers differ in the order of arguments. */
class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  /** What was given, four bytes a number, and behind its end numbers seeded by how much it was: what a fuzzer steers.
   */
  Random(const unsigned char* given, std::size_t size)
      : engine_(static_cast<unsigned>(size)), given_(given), left_(size) {}

  /** 32 random bits. */
  std::uint32_t bits() {
    if (left_ == 0) return static_cast<std::uint32_t>(engine_());
    std::uint32_t number = 0;
    for (int shift = 0; shift < 32 && left_ > 0; shift += 8, --left_) number |= std::uint32_t{*given_++} << shift;
    return number;
  }
  unsigned char byte() { return static_cast<unsigned char>(bits()); }

  /** A whole number from `low` to `high`. */
  int pick(int low, int high) { return low + static_cast<int>(bits() % static_cast<std::uint32_t>(high - low + 1)); }
  /** A number from `low` to `high`. */
  double real(double low, double high) { return low + (high - low) * (static_cast<double>(bits()) / 4294967295.0); }
  /** True `percent` times of a hundred. */
  bool chance(int percent) { return pick(1, 100) <= percent; }
  /** True once in `n` times. */
  bool one_in(int n) { return pick(1, n) == 1; }
  /** One of the elements of an array or a vector. */
  template <class Elements>
  auto& one_of(Elements& elements) {
    return elements[bits() % elements.size()];
  }

 private:
  std::mt19937 engine_;
  const unsigned char* given_ = nullptr;
  std::size_t left_ = 0;
};

}  // namespace support

#endif
