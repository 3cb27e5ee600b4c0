#include "memory.h"

#include <dlfcn.h>
#include <malloc.h>
#include <pthread.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <string_view>

#include "deadline.h"
#include "ending.h"
#include "size_limits.h"

namespace tool {
namespace {

thread_local int foreign_depth = 0;
thread_local int bears_nothing = 0;
thread_local int missed = 0;
thread_local Budget* budget = nullptr;
thread_local Allowance* allowance = nullptr;
bool own_code_began = false;

/** The library may be within an allocator: nothing is asked for. */
void end_of_library(int) {
  if (foreign_depth == 0) return;  // it is the tool itself, and ends as it would
  std::array<char, 2 * InputName().size()> text{};
  char* end = text.data();
  for (const std::string_view part :
       {std::string_view("vantrel: "), std::string_view(input_name().data()),
        std::string_view(": a library that works on it gave up (is the file damaged?)\n")}) {
    end = std::copy(part.begin(), part.end(), end);
  }
  end_with({text.data(), static_cast<std::size_t>(end - text.data())});
}

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

Budget::Budget(std::int64_t bytes, int most_megabytes)
    : outer_(budget),
      most_megabytes_(std::max(most_megabytes, Limits().megabytes)),
      last_words_(message_of_input(
          "reading it takes more memory than a picture of its size needs (--most-megabytes allows more)")) {
  allow(bytes);
  budget = this;
}

Budget::~Budget() { budget = outer_; }

void Budget::allow(std::int64_t bytes) {
  const double share = static_cast<double>(most_megabytes_) / Limits().megabytes;
  allowed_ += static_cast<std::int64_t>(static_cast<double>(bytes) * share);
}

void Budget::check(std::size_t bytes) {
  const std::int64_t left = allowed_ - taken_;
  if (left > 0 && bytes <= static_cast<std::size_t>(left)) return;
  budget = nullptr;
  end_with(last_words_);
}

Allowance::Allowance(std::int64_t bytes) : outer_(allowance), left_(bytes) { allowance = this; }

Allowance::~Allowance() { allowance = outer_; }

bool Allowance::gives(std::size_t bytes) {
  spent_ = spent_ || left_ < 0 || bytes > static_cast<std::size_t>(left_);
  if (!spent_) left_ -= static_cast<std::int64_t>(bytes);
  return !spent_;
}

void expect_libraries_to_give_up() { std::signal(SIGABRT, end_of_library); }

void begin_own_code() { own_code_began = true; }

void keep_memory() {
#if defined(__GLIBC__)
  // The most that the allocator takes from one heap; what is larger comes and goes by itself.
  mallopt(M_MMAP_THRESHOLD, 32 << 20);
  mallopt(M_TRIM_THRESHOLD, 256 << 20);
#endif
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

/** Whether so much may be asked for; where it is beyond a budget, the tool ends. */
bool allowed(std::size_t bytes) {
  if (tool::allowance != nullptr && !tool::allowance->gives(bytes)) return false;
  if (tool::budget != nullptr) tool::budget->check(bytes);
  return true;
}

/** What an allocator set aside, 0 for none. */
std::int64_t size_of(void* block) { return static_cast<std::int64_t>(malloc_usable_size(block)); }

/** Looks at what an allocator gave for so many bytes. */
void* judged(void* block, std::size_t bytes) {
  if (block != nullptr && tool::budget != nullptr) tool::budget->count(size_of(block));
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

using ThreadMain = void*(void*);
using PthreadCreate = int(pthread_t*, const pthread_attr_t*, ThreadMain*, void*);

constinit Next<void*(std::size_t)> next_malloc("malloc");
constinit Next<void*(std::size_t, std::size_t)> next_calloc("calloc");
constinit Next<void*(void*, std::size_t)> next_realloc("realloc");
constinit Next<void*(std::size_t, std::size_t)> next_memalign("memalign");
constinit Next<void(void*)> next_free("free");
constinit Next<PthreadCreate> next_pthread_create("pthread_create");

void* refused() {
  errno = ENOMEM;
  return nullptr;
}

/** A thread that foreign code starts. */
struct ForeignThread {
  ThreadMain* main;
  void* argument;
  tool::Budget* budget;
  tool::InputName input;
  tool::CountedThread time{};

  void end() {
    this->~ForeignThread();
    free(this);
  }
};

void* run_foreign_thread(void* given) {
  struct Run {
    ForeignThread* thread;
    ~Run() { thread->end(); }  // also where the thread ends itself in the middle
  };
  const Run run{static_cast<ForeignThread*>(given)};
  const tool::ForeignCode foreign(tool::Large::kCrashes);
  tool::budget = run.thread->budget;
  tool::input_name() = run.thread->input;
  run.thread->time.begin();
  return run.thread->main(run.thread->argument);
}

}  // namespace

extern "C" {

void* malloc(std::size_t bytes) noexcept {
  auto* next = next_malloc.get();
  if (next == nullptr || !allowed(bytes)) return refused();
  return judged(next(bytes), bytes);
}

void* calloc(std::size_t count, std::size_t bytes) noexcept {
  auto* next = next_calloc.get();
  std::size_t all = 0;
  if (next == nullptr || __builtin_mul_overflow(count, bytes, &all) || !allowed(all)) return refused();
  return judged(next(count, bytes), all);
}

void* realloc(void* block, std::size_t bytes) noexcept {
  auto* next = next_realloc.get();
  if (next == nullptr || !allowed(bytes)) return refused();
  if (tool::budget == nullptr) return judged(next(block, bytes), bytes);
  const std::int64_t before = size_of(block);
  void* const moved = judged(next(block, bytes), bytes);
  if (moved != nullptr || bytes == 0) tool::budget->count(-before);
  return moved;
}

void* memalign(std::size_t alignment, std::size_t bytes) noexcept {
  auto* next = next_memalign.get();
  if (next == nullptr || !allowed(bytes)) return refused();
  return judged(next(alignment, bytes), bytes);
}

void* aligned_alloc(std::size_t alignment, std::size_t bytes) noexcept { return memalign(alignment, bytes); }

int posix_memalign(void** block, std::size_t alignment, std::size_t bytes) noexcept {
  if (alignment < sizeof(void*) || (alignment & (alignment - 1)) != 0) return EINVAL;
  const int before = errno;
  void* const given = memalign(alignment, bytes);
  errno = before;
  if (given == nullptr) return ENOMEM;
  *block = given;
  return 0;
}

void free(void* block) noexcept {
  if (tool::budget != nullptr) tool::budget->count(-size_of(block));
  if (auto* next = next_free.get()) next(block);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, ThreadMain* main, void* argument) noexcept {
  auto* next = next_pthread_create.get();
  if (next == nullptr) return EAGAIN;
  if (tool::foreign_depth == 0) return next(thread, attributes, main, argument);
  void* const memory = malloc(sizeof(ForeignThread));
  if (memory == nullptr) return EAGAIN;
  auto* const foreign = new (memory) ForeignThread{main, argument, tool::budget, tool::input_name()};
  const int error = next(thread, attributes, run_foreign_thread, foreign);
  if (error != 0) foreign->end();
  return error;
}
}

#endif
