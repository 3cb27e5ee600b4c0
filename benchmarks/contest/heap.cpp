#include "heap.h"

#include <malloc.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

namespace {

// One thread only: the contenders have no others.
std::int64_t bytes_taken = 0;
std::int64_t bytes_most = 0;

void* counted(void* block) {
  if (block != nullptr) bytes_taken += static_cast<std::int64_t>(malloc_usable_size(block));
  bytes_most = std::max(bytes_most, bytes_taken);
  return block;
}

void uncount(void* block) {
  if (block != nullptr) bytes_taken -= static_cast<std::int64_t>(malloc_usable_size(block));
}

}  // namespace

namespace contest::heap {

std::int64_t taken() { return bytes_taken; }

std::int64_t most_taken() {
  const std::int64_t most = bytes_most;
  bytes_most = bytes_taken;
  return most;
}

}  // namespace contest::heap

// The C library's own, by the names that it has for those who define theirs.
extern "C" {

void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);
void* __libc_realloc(void* block, std::size_t bytes);
void* __libc_memalign(std::size_t alignment, std::size_t bytes);
void __libc_free(void* block);

void* malloc(std::size_t bytes) { return counted(__libc_malloc(bytes)); }
void* calloc(std::size_t count, std::size_t bytes) { return counted(__libc_calloc(count, bytes)); }
void* realloc(void* block, std::size_t bytes) {
  uncount(block);
  return counted(__libc_realloc(block, bytes));
}
void* aligned_alloc(std::size_t alignment, std::size_t bytes) { return counted(__libc_memalign(alignment, bytes)); }
void* memalign(std::size_t alignment, std::size_t bytes) { return counted(__libc_memalign(alignment, bytes)); }
int posix_memalign(void** block, std::size_t alignment, std::size_t bytes) {
  *block = counted(__libc_memalign(alignment, bytes));
  return *block == nullptr ? ENOMEM : 0;
}
void free(void* block) {
  uncount(block);
  __libc_free(block);
}
}
