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

  /** 32 random bits. */
  std::uint32_t bits() { return static_cast<std::uint32_t>(engine_()); }
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
};

}  // namespace support

#endif
