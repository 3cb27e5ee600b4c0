#include "faults/failing_allocators.h"

#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>

namespace {

int remaining = -1;
bool failed = false;
std::size_t largest = 0;
std::int64_t bytes_taken = 0;
std::int64_t bytes_most = 0;

/** Counts the bytes of a block that the allocator gave. */
void* counted(void* block) {
  if (block != nullptr) bytes_taken += static_cast<std::int64_t>(malloc_usable_size(block));
  bytes_most = std::max(bytes_most, bytes_taken);
  return block;
}

/** Counts an allocation; true for the one that is to fail. */
bool fails_now(std::size_t bytes) {
  largest = std::max(largest, bytes);
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
  largest = 0;
}

bool has_failed() { return failed; }

std::size_t largest_request() { return largest; }

std::int64_t taken() { return bytes_taken; }

std::int64_t most_taken() {
  const std::int64_t most = bytes_most;
  bytes_most = bytes_taken;
  return most;
}

}  // namespace failing

// The linker sends the library's calls of an allocator to __wrap_..., and calls of __real_... to the allocator.
#define JOIN_(a, b) a##b
#define JOIN(a, b) JOIN_(a, b)

extern "C" {

void* __real_malloc(std::size_t bytes);
void* __real_calloc(std::size_t count, std::size_t bytes);
void __real_free(void* block);
void* JOIN(__real_, NEW_ARRAY)(std::size_t bytes, const std::nothrow_t& tag);
void* JOIN(__real_, NEW_ONE)(std::size_t bytes, const std::nothrow_t& tag);

/** What malloc gives is full of old contents. */
void* __wrap_malloc(std::size_t bytes) {
  void* block = fails_now(bytes) ? nullptr : counted(__real_malloc(bytes));
  if (block != nullptr) std::memset(block, 0xA5, bytes);
  return block;
}
void* __wrap_calloc(std::size_t count, std::size_t bytes) {
  return fails_now(count * bytes) ? nullptr : counted(__real_calloc(count, bytes));
}
void __wrap_free(void* block) {
  if (block != nullptr) bytes_taken -= static_cast<std::int64_t>(malloc_usable_size(block));
  __real_free(block);
}
void* JOIN(__wrap_, NEW_ARRAY)(std::size_t bytes, const std::nothrow_t& tag) {
  return fails_now(bytes) ? nullptr : JOIN(__real_, NEW_ARRAY)(bytes, tag);
}
void* JOIN(__wrap_, NEW_ONE)(std::size_t bytes, const std::nothrow_t& tag) {
  return fails_now(bytes) ? nullptr : JOIN(__real_, NEW_ONE)(bytes, tag);
}
}
