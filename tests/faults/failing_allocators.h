/**
 * @file failing_allocators.h
 * @brief Makes one of the coming allocations of the library fail, and counts what they take.
 */
#ifndef VANTREL_TESTS_FAILING_ALLOCATORS_H
#define VANTREL_TESTS_FAILING_ALLOCATORS_H

#include <cstddef>
#include <cstdint>

namespace failing {

/** From now on the allocation with this number, counted from 0, fails; a negative number lets all succeed. */
void fail_allocation(int number);

/** Whether that allocation has come. */
bool has_failed();

/** The largest number of bytes asked for at once since the last call of fail_allocation. */
std::size_t largest_request();

/** The bytes that malloc and calloc gave and that are not given back, and the most that were since the last call. */
std::int64_t taken();
std::int64_t most_taken();

}  // namespace failing

#endif
