#include "memory.h"

#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <new>

#include "console.h"
#include "safe_file.h"

namespace tool {
namespace {

thread_local int foreign_depth = 0;
thread_local int bears_nothing = 0;
thread_local int missed = 0;
bool own_code_began = false;

/**
 * Where an exception cannot go on, as out of a destructor or of a thread, or has no memory for itself. Missing memory
 * is the one reason for it that is no mistake.
 */
[[noreturn]] void end_of_exceptions() {
  const std::exception_ptr current = std::current_exception();
  if (!current) end_without_memory();
  try {
    std::rethrow_exception(current);
  } catch (const std::bad_alloc&) {
    end_without_memory();
  } catch (...) {
    remove_temporaries();
    std::abort();
  }
}

/** Before the objects of other files are made: that takes memory too. */
struct Guard {
  Guard() { std::set_terminate(end_of_exceptions); }
};
[[gnu::init_priority(101)]] const Guard guard;

}  // namespace

ForeignCode::ForeignCode(Large large) : missed_before_(missed), bears_nothing_(large == Large::kCrashes ? 1 : 0) {
  ++foreign_depth;
  bears_nothing += bears_nothing_;
}

ForeignCode::~ForeignCode() {
  --foreign_depth;
  bears_nothing -= bears_nothing_;
}

bool ForeignCode::missed_memory() const { return missed != missed_before_; }

void begin_own_code() { own_code_began = true; }

void keep_memory() {
#if defined(__GLIBC__)
  // The most that the allocator takes from one heap; what is larger comes and goes by itself.
  mallopt(M_MMAP_THRESHOLD, 32 << 20);
  mallopt(M_TRIM_THRESHOLD, 256 << 20);
#endif
}

void end_without_memory() {
  remove_temporaries();
  print_error("vantrel: not enough memory\n");
  _exit(1);
}

}  // namespace tool

// The allocators of the whole process pass through here; a sanitizer has its own. A program's functions stand in for
// those of the libraries it is linked with.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define VANTREL_SANITIZED
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VANTREL_SANITIZED
#endif

#if defined(__GLIBC__) && !defined(VANTREL_SANITIZED)

namespace {

constexpr std::size_t kSmall = std::size_t{1} << 20;

/** Looks at what an allocator gave for so many bytes. */
void* judged(void* block, std::size_t bytes) {
  if (block != nullptr || bytes == 0 || (tool::foreign_depth == 0 && tool::own_code_began)) return block;
  ++tool::missed;
  if (bytes < kSmall || tool::bears_nothing > 0) tool::end_without_memory();
  return nullptr;
}

/** The function behind one of ours. Looking it up may ask for memory, which is then refused: it is not needed. */
template <class Function>
class Next {
 public:
  constexpr explicit Next(const char* name) : name_(name) {}

  Function* get() {
    if (function_ != nullptr) return function_;
    thread_local bool looking = false;
    if (looking) return nullptr;
    looking = true;
    function_ = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name_));
    looking = false;
    return function_;
  }

 private:
  const char* name_;
  Function* function_ = nullptr;
};

constinit Next<void*(std::size_t)> next_malloc("malloc");
constinit Next<void*(std::size_t, std::size_t)> next_calloc("calloc");
constinit Next<void*(void*, std::size_t)> next_realloc("realloc");

void* refused() {
  errno = ENOMEM;
  return nullptr;
}

}  // namespace

extern "C" {

void* malloc(std::size_t bytes) noexcept {
  auto* next = next_malloc.get();
  return next == nullptr ? refused() : judged(next(bytes), bytes);
}

void* calloc(std::size_t count, std::size_t bytes) noexcept {
  auto* next = next_calloc.get();
  return next == nullptr ? refused() : judged(next(count, bytes), count * bytes);
}

void* realloc(void* block, std::size_t bytes) noexcept {
  auto* next = next_realloc.get();
  return next == nullptr ? refused() : judged(next(block, bytes), bytes);
}
}

#endif
