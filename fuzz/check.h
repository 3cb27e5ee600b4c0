/**
 * @file check.h
 * @brief What the targets share: a check that ends the program, and an input read as random numbers.
 */
#ifndef VANTREL_FUZZ_CHECK_H
#define VANTREL_FUZZ_CHECK_H

#include <cstdio>
#include <cstdlib>

/** Ends the program where something is not as it must be; a fuzzer then keeps the input. */
#define FUZZ_CHECK(condition)                                                      \
  do {                                                                             \
    if (!(condition)) {                                                            \
      std::fprintf(stderr, "%s:%d: not so: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                \
    }                                                                              \
  } while (false)

#endif
