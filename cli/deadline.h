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
  explicit Deadline(int seconds);
  ~Deadline();
  Deadline(const Deadline&) = delete;
  Deadline& operator=(const Deadline&) = delete;

 private:
  double now() const;
  void watch();

  clockid_t clock_;
  double end_;
  std::string last_words_;
  std::mutex mutex_;
  std::condition_variable ended_;
  bool in_time_ = false;
  std::thread watcher_;
};

}  // namespace tool

#endif
