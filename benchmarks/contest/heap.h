/**
 * @file heap.h
 * @brief How much of the heap is taken: the contest has its own malloc, which counts and hands on.
 */
#ifndef VANTREL_BENCHMARKS_CONTEST_HEAP_H
#define VANTREL_BENCHMARKS_CONTEST_HEAP_H

#include <cstdint>

namespace contest::heap {

/** The bytes that are taken. */
std::int64_t taken();

/** The most that were since the last call. */
std::int64_t most_taken();

}  // namespace contest::heap

#endif
