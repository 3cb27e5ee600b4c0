#include "deadline.h"

#include <pthread.h>

#include <chrono>
#include <iomanip>
#include <new>
#include <sstream>
#include <system_error>

#include "memory.h"

namespace tool {

Deadline::Deadline(double seconds) : seconds_(seconds), last_words_(last_words()) {
  if (pthread_getcpuclockid(pthread_self(), &clock_) != 0) throw std::bad_alloc();
  end_ = now() + seconds;
  try {
    watcher_ = std::thread([this] { watch(); });
  } catch (const std::system_error&) {
    throw std::bad_alloc();
  }
}

Deadline::~Deadline() {
  {
    const std::lock_guard lock(mutex_);
    in_time_ = true;
  }
  ended_.notify_one();
  watcher_.join();
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

double Deadline::now() const {
  timespec time{};
  clock_gettime(clock_, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/** Looks as soon as the time may be over: the thread takes no more of it than passes. */
void Deadline::watch() {
  std::unique_lock lock(mutex_);
  double left = end_ - now();
  while (left > 0) {
    if (ended_.wait_for(lock, std::chrono::duration<double>(left), [this] { return in_time_; })) return;
    left = end_ - now();
  }
  end_with(last_words_);
}

}  // namespace tool
