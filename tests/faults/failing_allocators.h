/**
 * @file failing_allocators.h
 * @brief Makes one of the coming allocations of the library fail.
 */
#ifndef VANTREL_TESTS_FAILING_ALLOCATORS_H
#define VANTREL_TESTS_FAILING_ALLOCATORS_H

#include <cstddef>

namespace failing {

/** From now on the allocation with this number, counted from 0, fails; a negative number lets all succeed. */
void fail_allocation(int number);

/** Whether that allocation has come. */
bool has_failed();

/** The largest number of bytes asked for at once since the last call of fail_allocation. */
std::size_t largest_request();

}  // namespace failing

#endif
