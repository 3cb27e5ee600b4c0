#include "progress.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "console.h"
#include "memory.h"
#include "printable.h"
#include "safe_file.h"

namespace tool {
namespace {

constexpr std::size_t kBarCells = 30;

/** File names need not be UTF-8; JSON must be. */
std::string text_of(const Json& json, int indent) {
  return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

Progress::Progress(std::size_t inputs, Style style, bool quiet, bool document)
    : style_(style),
      quiet_(quiet),
      document_(document),
      bar_(inputs > 1 && !quiet && console_is_terminal()),
      reports_(inputs) {
  draw_bar();
}

void Progress::finish(std::size_t input, Report report) {
  const std::lock_guard lock(mutex_);
  reports_[input] = std::move(report);
  ++finished_;
  erase_bar();
  if (!document_) print_json(*reports_[input]);
  for (; printed_ < reports_.size() && reports_[printed_]; ++printed_) {
    if (document_) {
      number_pages(*reports_[printed_]);
      print_json(*reports_[printed_]);
    }
    print(*reports_[printed_]);
  }
  draw_bar();
}

void Progress::number_pages(Report& report) {
  for (WrittenPicture& output : report.outputs) output.page = ++last_page_;
}

void Progress::print_json(const Report& report) {
  if (style_ != Style::kJsonLines) return;
  const ForeignCode json(Large::kCrashes);
  print_out(text_of(json_of(report), -1) + "\n");
}

void Progress::lose_outputs(const std::string& reason) {
  for (auto& report : reports_) {
    if (report->outputs.empty()) continue;
    report->outputs.clear();
    report->outcome = Outcome::kFailed;
    report->message = reason;
  }
  print_error("vantrel: " + printable(reason) + "\n");
}

bool Progress::conclude(const std::string& lost) {
  if (!lost.empty()) lose_outputs(lost);
  const auto failed = std::count_if(reports_.begin(), reports_.end(), [](const auto& r) { return !r->succeeded(); });
  erase_bar();
  if (style_ == Style::kJson) {
    const ForeignCode json(Large::kCrashes);
    Json all = Json::array();
    for (const auto& report : reports_) all.push_back(json_of(*report));
    print_out(text_of(all, 2) + "\n");
  }
  if (reports_.size() > 1 && !quiet_) print_error(summary(static_cast<std::size_t>(failed)));
  if (output_failed_) print_error("vantrel: standard output: cannot be written\n");
  return failed == 0 && !output_failed_;
}

std::string Progress::summary(std::size_t failed) const {
  const auto count = [&](Outcome outcome) {
    return std::count_if(reports_.begin(), reports_.end(), [&](const auto& r) { return r->outcome == outcome; });
  };
  std::string doubts;
  for (const Outcome outcome : {Outcome::kLikely, Outcome::kDoubtful, Outcome::kSkipped}) {
    if (count(outcome) == 0) continue;
    doubts += (doubts.empty() ? " (" : ", ") + std::to_string(count(outcome)) + " of them " + name_of(outcome);
  }
  return "vantrel: " + std::to_string(reports_.size()) + " inputs: " + std::to_string(reports_.size() - failed) +
         " done" + (doubts.empty() ? "" : doubts + ")") + ", " + std::to_string(failed) + " failed\n";
}

void Progress::print(const Report& report) {
  if (quiet_ && report.succeeded()) return;
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
