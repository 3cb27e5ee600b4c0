#include "faults/failing_allocators.h"

#include <cstddef>
#include <new>

namespace {

int remaining = -1;
bool failed = false;

/** Counts an allocation; true for the one that is to fail. */
bool fails_now() {
  if (remaining < 0) return false;
  if (remaining-- > 0) return false;
  failed = true;
  return true;
}

}  // namespace

namespace failing {

void fail_allocation(int number) {
  remaining = number;
  failed = false;
}

bool has_failed() { return failed; }

}  // namespace failing

// The linker sends the library's calls of an allocator to __wrap_..., and calls of __real_... to the allocator.
#define JOIN_(a, b) a##b
#define JOIN(a, b) JOIN_(a, b)

extern "C" {

void* __real_malloc(std::size_t bytes);
void* __real_calloc(std::size_t count, std::size_t bytes);
void* JOIN(__real_, NEW_ARRAY)(std::size_t bytes, const std::nothrow_t& tag);
void* JOIN(__real_, NEW_ONE)(std::size_t bytes, const std::nothrow_t& tag);

void* __wrap_malloc(std::size_t bytes) { return fails_now() ? nullptr : __real_malloc(bytes); }
void* __wrap_calloc(std::size_t count, std::size_t bytes) {
  return fails_now() ? nullptr : __real_calloc(count, bytes);
}
void* JOIN(__wrap_, NEW_ARRAY)(std::size_t bytes, const std::nothrow_t& tag) {
  return fails_now() ? nullptr : JOIN(__real_, NEW_ARRAY)(bytes, tag);
}
void* JOIN(__wrap_, NEW_ONE)(std::size_t bytes, const std::nothrow_t& tag) {
  return fails_now() ? nullptr : JOIN(__real_, NEW_ONE)(bytes, tag);
}
}
