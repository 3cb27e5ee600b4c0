/**
 * @file numbers.h
 * @brief Numbers that are none.
 */
#ifndef VANTREL_TESTS_SUPPORT_NUMBERS_H
#define VANTREL_TESTS_SUPPORT_NUMBERS_H

#include <limits>

namespace support {

inline constexpr double kInfinite = std::numeric_limits<double>::infinity();
inline constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

}  // namespace support

#endif
