/**
 * @file memory.h
 * @brief Where memory is missing, or a library gives up: the tool says so and leaves nothing behind.
 *
 * The tool's own code throws std::bad_alloc, which ends the work on one input. The libraries that decode and encode do
 * not all bear a null pointer, and some take it for a damaged file. So while they work, the tool looks at the requests
 * itself.
 */
#ifndef VANTREL_CLI_MEMORY_H
#define VANTREL_CLI_MEMORY_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

namespace tool {

inline constexpr const char* kNotEnoughMemory = "not enough memory";

/** What other people's code makes of a large request that is refused. */
enum class Large { kBears, kCrashes };

/**
 * As long as one of these lives, other people's code runs on this thread. A small request that it cannot be given ends
 * the tool in good order: without so little, nothing goes on. A large one, as for pixels, is refused as usual, where
 * that code bears it.
 */
class ForeignCode {
 public:
  explicit ForeignCode(Large large = Large::kBears);
  ~ForeignCode();
  ForeignCode(const ForeignCode&) = delete;
  ForeignCode& operator=(const ForeignCode&) = delete;

  /** Whether a request was refused since this one was made. */
  bool missed_memory() const;

 private:
  int missed_before_;
  int bears_nothing_;
};

/**
 * As long as one of these lives, what runs on this thread, and on the threads that foreign code starts there, may have
 * so much memory at a time. Where it asks for more the tool ends in good order: a decoder takes that much more than the
 * picture needs only of a file that was made for it, and not all of them bear to be stopped in another way.
 */
class Budget {
 public:
  static constexpr std::int64_t kMega = 1000000;

  /** @param most_megabytes what a picture may take by the limits: with a higher one the budget grows. */
  Budget(std::int64_t bytes, int most_megabytes);
  ~Budget();
  Budget(const Budget&) = delete;
  Budget& operator=(const Budget&) = delete;

  /** So many more. */
  void allow(std::int64_t bytes);

  /** To be told before so many are taken. */
  void check(std::size_t bytes);
  /** So many were taken; less than 0: given back. */
  void count(std::int64_t bytes) { taken_ += bytes; }

 private:
  Budget* outer_;
  int most_megabytes_;
  std::atomic<std::int64_t> allowed_ = 0;
  std::atomic<std::int64_t> taken_ = 0;
  std::string last_words_;
};

/**
 * As long as one of these lives, this thread is given so much memory in all, whatever it gives back, and nothing more
 * after that: for foreign code that bears it.
 */
class Allowance {
 public:
  explicit Allowance(std::int64_t bytes);
  ~Allowance();
  Allowance(const Allowance&) = delete;
  Allowance& operator=(const Allowance&) = delete;

  /** Whether something was refused. */
  bool spent() const { return spent_; }

  /** Whether so many more are given. */
  bool gives(std::size_t bytes);

 private:
  Allowance* outer_;
  std::int64_t left_;
  bool spent_ = false;
};

/**
 * From now on a library that gives up where it works for the tool, as by an assertion that does not hold, ends it in
 * good order.
 */
void expect_libraries_to_give_up();

/** To be called first in main: before that everything counts as foreign code, as what other libraries do at loading. */
void begin_own_code();

/**
 * Keeps the memory of one picture for the next: to give it back and to ask for it again costs more than to read a file.
 */
void keep_memory();

}  // namespace tool

#endif
