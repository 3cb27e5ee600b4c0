/**
 * @file deadline.h
 * @brief How long a decoder may compute.
 */
#ifndef VANTREL_CLI_DEADLINE_H
#define VANTREL_CLI_DEADLINE_H

#include <condition_variable>
#include <ctime>
#include <mutex>
#include <string>
#include <thread>

namespace tool {

/**
 * As long as one of these lives, the thread that made it may take so much time of the processor. After that the tool
 * ends in good order: a small file can be made that is decoded or drawn for hours, and no decoder lets itself be
 * stopped.
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
  double now() const;
  std::string last_words() const;
  void watch();

  clockid_t clock_;
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
