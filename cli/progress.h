/**
 * @file progress.h
 * @brief Results in the order of the inputs, with a progress bar and a summary.
 */
#ifndef VANTREL_CLI_PROGRESS_H
#define VANTREL_CLI_PROGRESS_H

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "report.h"

namespace tool {

/**
 * Takes reports as they come, from any thread, and prints them in the order of the inputs; lines of JSON at once.
 *
 * Lines go to standard output, or to standard error when that carries a picture; errors always go to standard error.
 * The bar is drawn on standard error, when it is a terminal and there are several inputs.
 */
class Progress {
 public:
  enum class Style { kLines, kLinesOnConsole, kJson, kJsonLines };

  /** @param quiet tells of errors alone; JSON is printed all the same. */
  /** @param document the pictures are pages of one document, to be numbered; then no report overtakes another. */
  Progress(std::size_t inputs, Style style, bool quiet, bool document);

  void finish(std::size_t input, Report report);

  /**
   * Prints the JSON document and the summary once all inputs are finished; false when some failed.
   *
   * @param lost why what counted as written could not be in the end; empty: it is there.
   */
  bool conclude(const std::string& lost);

 private:
  void number_pages(Report& report);
  void print_json(const Report& report);
  void lose_outputs(const std::string& reason);
  void print(const Report& report);
  std::string summary(std::size_t failed) const;
  void print_out(const std::string& text);
  void draw_bar();
  void erase_bar();

  std::mutex mutex_;
  Style style_;
  bool quiet_;
  bool document_;
  bool bar_;
  int last_page_ = 0;
  bool output_failed_ = false;
  std::size_t finished_ = 0;
  std::size_t printed_ = 0;
  std::vector<std::optional<Report>> reports_;
};

}  // namespace tool

#endif
