#include "deadline.h"

#include <pthread.h>

#include <algorithm>
#include <chrono>
#include <iomanip>
#include <new>
#include <sstream>
#include <system_error>

#include "ending.h"

namespace tool {

namespace {

/** For the list of threads and all that they change; nothing is asked for while it is held, memory least of all. */
constinit std::mutex threads_mutex;
constinit CountedThread* threads = nullptr;

thread_local Deadline* current = nullptr;
thread_local CountedThread* counted = nullptr; /**< this thread, where foreign code started it */

double seconds_of(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

}  // namespace

CountedThread::CountedThread() {
  const std::lock_guard lock(threads_mutex);
  deadline_ = current != nullptr ? current : counted != nullptr ? counted->deadline_ : nullptr;
  next_ = threads;
  if (next_ != nullptr) next_->previous_ = this;
  threads = this;
}

CountedThread::~CountedThread() {
  const double seconds = runs_ ? seconds_of(clock_) : 0;
  const std::lock_guard lock(threads_mutex);
  if (deadline_ != nullptr) deadline_->taken_by_ended_threads_ += seconds;
  (previous_ != nullptr ? previous_->next_ : threads) = next_;
  if (next_ != nullptr) next_->previous_ = previous_;
  if (counted == this) counted = nullptr;
}

void CountedThread::begin() {
  const std::lock_guard lock(threads_mutex);
  runs_ = pthread_getcpuclockid(pthread_self(), &clock_) == 0;
  counted = this;
}

Deadline::Deadline(double seconds) : seconds_(seconds), last_words_(last_words()) {
  if (pthread_getcpuclockid(pthread_self(), &clock_) != 0) throw std::bad_alloc();
  end_ = seconds_of(clock_) + seconds;
  try {
    watcher_ = std::thread([this] { watch(); });
  } catch (const std::system_error&) {
    throw std::bad_alloc();
  }
  current = this;
}

Deadline::~Deadline() {
  {
    const std::lock_guard lock(mutex_);
    in_time_ = true;
  }
  ended_.notify_one();
  watcher_.join();
  const std::lock_guard lock(threads_mutex);
  for (CountedThread* thread = threads; thread != nullptr; thread = thread->next_) {
    if (thread->deadline_ == this) thread->deadline_ = nullptr;
  }
  current = nullptr;
}

void Deadline::allow(double seconds) {
  const std::lock_guard lock(mutex_);
  seconds_ += seconds;
  end_ += seconds;
  last_words_ = last_words();
}

std::string Deadline::last_words() const {
  std::ostringstream text;
  text << "reading it takes more than " << std::fixed << std::setprecision(1) << seconds_
       << " seconds of the processor (--most-seconds allows more)";
  return message_of_input(text.str());
}

Deadline::Taken Deadline::taken() const {
  const std::lock_guard lock(threads_mutex);
  Taken taken{seconds_of(clock_) + taken_by_ended_threads_, 1};
  for (const CountedThread* thread = threads; thread != nullptr; thread = thread->next_) {
    if (thread->deadline_ != this) continue;
    ++taken.threads;
    if (thread->runs_) taken.seconds += seconds_of(thread->clock_);
  }
  return taken;
}

/** Looks as soon as the time may be over: each of the threads takes no more of it than passes, but others may begin. */
void Deadline::watch() {
  constexpr double kShortest = 0.001;
  constexpr double kLongest = 0.1;
  std::unique_lock lock(mutex_);
  for (;;) {
    const Taken taken = this->taken();
    const double left = end_ - taken.seconds;
    if (left <= 0) end_with(last_words_);
    const double pause = std::clamp(left / static_cast<double>(taken.threads), kShortest, kLongest);
    if (ended_.wait_for(lock, std::chrono::duration<double>(pause), [this] { return in_time_; })) return;
  }
}

}  // namespace tool
