/**
 * @file meter.h
 * @brief Counts what a call of the library takes: basic blocks that it runs, and bytes that it holds at once.
 */
#ifndef VANTREL_TESTS_BOUNDS_METER_H
#define VANTREL_TESTS_BOUNDS_METER_H

#include <cstdint>

namespace meter {

struct Reading {
  std::int64_t steps;      /**< basic blocks of the library that ran */
  std::int64_t peak_bytes; /**< the most that was allocated at one time */
};

/** Sets both to 0. */
void start();
Reading read();

}  // namespace meter

#endif
