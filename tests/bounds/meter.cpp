#include "bounds/meter.h"

#include <malloc.h>

#include <algorithm>
#include <cstddef>

namespace {

std::int64_t steps = 0;
std::int64_t held = 0;
std::int64_t peak = 0;

void* taken(void* block) {
  held += static_cast<std::int64_t>(malloc_usable_size(block));
  peak = std::max(peak, held);
  return block;
}

}  // namespace

namespace meter {

void start() { steps = held = peak = 0; }
Reading read() { return {steps, peak}; }

}  // namespace meter

extern "C" {

/** The compiler puts a call of this into every basic block of the library. */
void __sanitizer_cov_trace_pc() { ++steps; }

// The linker sends the library's calls of an allocator to __wrap_..., and calls of __real_... to the allocator.
void* __real_malloc(std::size_t bytes);
void* __real_calloc(std::size_t count, std::size_t bytes);
void __real_free(void* block);

void* __wrap_malloc(std::size_t bytes) { return taken(__real_malloc(bytes)); }
void* __wrap_calloc(std::size_t count, std::size_t bytes) { return taken(__real_calloc(count, bytes)); }
void __wrap_free(void* block) {
  held -= static_cast<std::int64_t>(malloc_usable_size(block));
  __real_free(block);
}
}
