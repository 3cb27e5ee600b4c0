/**
 * @file deadline.h
 * @brief How long a decoder may compute.
 */
#ifndef VANTREL_CLI_DEADLINE_H
#define VANTREL_CLI_DEADLINE_H

#include <condition_variable>
#include <cstddef>
#include <ctime>
#include <mutex>
#include <string>
#include <thread>

namespace tool {

class Deadline;

/**
 * A thread that foreign code starts, as long as it runs: its time counts for the deadline of the thread that started
 * it. It may live longer than that does, and takes no memory of its own.
 */
class CountedThread {
 public:
  /** By the thread that starts it. */
  CountedThread();
  ~CountedThread();
  CountedThread(const CountedThread&) = delete;
  CountedThread& operator=(const CountedThread&) = delete;

  /** By itself, which is also to destroy this then. */
  void begin();

 private:
  friend class Deadline;

  Deadline* deadline_; /**< that it counts for */
  bool runs_ = false;
  clockid_t clock_{};
  CountedThread* next_ = nullptr;
  CountedThread* previous_ = nullptr;
};

/**
 * As long as this lives, the thread that made it, and the threads that foreign code starts there, may take so much time
 * of the processor. After that the tool ends in good order: a small file can be made that is decoded or drawn
 * for hours, and no decoder lets itself be stopped. A thread has one at a time.
 */
class Deadline {
 public:
  /** @throws std::bad_alloc there is nothing left to watch with. */
  explicit Deadline(double seconds);
  ~Deadline();
  Deadline(const Deadline&) = delete;
  Deadline& operator=(const Deadline&) = delete;

  /** So many more. */
  void allow(double seconds);

 private:
  friend class CountedThread;

  /** What was taken until now, and by how many threads. */
  struct Taken {
    double seconds;
    std::size_t threads;
  };

  Taken taken() const;
  std::string last_words() const;
  void watch();

  clockid_t clock_;
  double taken_by_ended_threads_ = 0;
  double seconds_;
  double end_;
  std::mutex mutex_; /**< for what stands below, and the end */
  std::string last_words_;
  std::condition_variable ended_;
  bool in_time_ = false;
  std::thread watcher_;
};

}  // namespace tool

#endif
