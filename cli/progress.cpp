#include "progress.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "console.h"
#include "memory.h"
#include "safe_file.h"

namespace tool {
namespace {

constexpr std::size_t kBarCells = 30;

}  // namespace

Progress::Progress(std::size_t inputs, Style style)
    : style_(style), bar_(inputs > 1 && console_is_terminal()), reports_(inputs) {
  draw_bar();
}

void Progress::finish(std::size_t input, Report report) {
  const std::lock_guard lock(mutex_);
  reports_[input] = std::move(report);
  ++finished_;
  erase_bar();
  while (printed_ < reports_.size() && reports_[printed_]) print(*reports_[printed_++]);
  draw_bar();
}

bool Progress::conclude() {
  const auto failed = std::count_if(reports_.begin(), reports_.end(), [](const auto& r) { return !r->succeeded(); });
  erase_bar();
  if (style_ == Style::kJson) {
    const ForeignCode json(Large::kCrashes);
    Json all = Json::array();
    for (const auto& report : reports_) all.push_back(json_of(*report));
    // File names need not be UTF-8; JSON must be.
    print_out(all.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
  }
  if (reports_.size() > 1) {
    const auto total = static_cast<std::ptrdiff_t>(reports_.size());
    print_error("vantrel: " + std::to_string(total) + " inputs: " + std::to_string(total - failed) + " done, " +
                std::to_string(failed) + " failed\n");
  }
  if (output_failed_) print_error("vantrel: standard output: cannot be written\n");
  return failed == 0 && !output_failed_;
}

void Progress::print(const Report& report) {
  if (!report.succeeded() || style_ == Style::kLinesOnConsole) {
    print_error(line_of(report));
  } else if (style_ == Style::kLines) {
    print_out(line_of(report));
  }
}

void Progress::print_out(const std::string& text) {
  if (!write_all(STDOUT_FILENO, text.data(), text.size())) output_failed_ = true;
}

void Progress::draw_bar() {
  if (!bar_ || finished_ == reports_.size()) return;
  const std::size_t full = kBarCells * finished_ / reports_.size();
  print_error("\r[" + std::string(full, '#') + std::string(kBarCells - full, '.') + "] " + std::to_string(finished_) +
              " of " + std::to_string(reports_.size()));
}

void Progress::erase_bar() {
  if (bar_) print_error("\r\033[K");
}

}  // namespace tool
