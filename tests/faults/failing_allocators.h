/**
 * @file failing_allocators.h
 * @brief Makes one of the coming allocations of the library fail.
 */
#ifndef VANTREL_TESTS_FAILING_ALLOCATORS_H
#define VANTREL_TESTS_FAILING_ALLOCATORS_H

namespace failing {

/** From now on the allocation with this number, counted from 0, fails; a negative number lets all succeed. */
void fail_allocation(int number);

/** Whether that allocation has come. */
bool has_failed();

}  // namespace failing

#endif
