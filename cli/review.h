/**
 * @file review.h
 * @brief A folder for a person's eyes: what was drawn on each scan that was not surely worked on, on one page.
 */
#ifndef VANTREL_CLI_REVIEW_H
#define VANTREL_CLI_REVIEW_H

#include <map>
#include <mutex>
#include <string>

#include "batch.h"
#include "report.h"

namespace tool {

/** Takes what is doubtful, from any thread. The page needs no network and no script. */
class Review {
 public:
  /**
   * @param folder made where it is not there; empty: nothing is reviewed.
   * @param below  what has a lower confidence is taken, and what was not found or failed.
   * @throws WrongUsage the folder cannot be made.
   */
  Review(std::string folder, double below);

  /** Keeps the overlay of one input where it is doubtful. @throws Failure, std::bad_alloc */
  void add(std::size_t index, const Report& report, const Scan& scan, const Finding& finding);

  /** An input that failed has no overlay. */
  void add_failed(std::size_t index, const Report& report);

  /** Writes index.html of what was taken so far, of so many inputs. @throws Failure */
  void conclude(std::size_t inputs);

 private:
  struct Entry {
    std::string title;
    std::string text;
    std::string picture; /**< in the folder; empty: none */
    double confidence;
  };

  void take(std::size_t index, Entry entry);

  std::string folder_;
  double below_;
  std::mutex mutex_;
  std::map<std::size_t, Entry> entries_;
};

}  // namespace tool

#endif
