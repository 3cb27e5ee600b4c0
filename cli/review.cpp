#include "review.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>

#include "failure.h"
#include "printable.h"
#include "safe_file.h"
#include "shown.h"
#include "words.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

constexpr int kPictureSide = 1000;

constexpr const char* kHead =
    "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>To be looked at</title>\n<style>\n"
    "body { font: 15px sans-serif; margin: 1.5em; background: #eee; }\n"
    "main { display: grid; grid-template-columns: repeat(auto-fill, minmax(320px, 1fr)); gap: 1em; }\n"
    "figure { margin: 0; padding: .6em; background: #fff; border-top: 6px solid #dc2828; }\n"
    "figure.doubtful { border-color: #ffaa00; }\nfigure.likely, figure.done { border-color: #00a03c; }\n"
    "img { max-width: 100%; max-height: 420px; }\nfigcaption { overflow-wrap: anywhere; }\n"
    "</style></head><body>\n";

std::string escaped(const std::string& text) {
  std::string html;
  for (const char c : printable(text)) {
    switch (c) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      default:
        html += c;
    }
  }
  return html;
}

/** By its number, since inputs of several folders may have the same name. */
std::string picture_name(std::size_t index) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%06zu.jpg", index + 1);
  return text.data();
}

}  // namespace

Review::Review(std::string folder, double below) : folder_(std::move(folder)), below_(below) {
  if (folder_.empty()) return;
  std::error_code error;
  fs::create_directories(folder_, error);
  if (error || !fs::is_directory(folder_))
    throw WrongUsage("--review " + folder_ + ": is no folder and cannot be made one");
}

void Review::add(std::size_t index, const Report& report, const Scan& scan, const Finding& finding) {
  const double confidence = finding.found ? finding.confidence : 0;
  if (folder_.empty() || confidence >= below_) return;
  const std::string name = picture_name(index);
  OutputFile((fs::path(folder_) / name).string(), {}, true)
      .commit(encode_image(small_overlay(scan, finding, kPictureSide), Format::kJpeg, scan.metadata));
  take(index, {title_of(report), std::string(name_of(report.outcome)) + ": " + report.message, name, confidence});
}

void Review::add_failed(std::size_t index, const Report& report) {
  if (folder_.empty()) return;
  take(index, {title_of(report), std::string(name_of(report.outcome)) + ": " + report.message, "", 0});
}

void Review::take(std::size_t index, Entry entry) {
  const std::lock_guard lock(mutex_);
  entries_.insert_or_assign(index, std::move(entry));
}

void Review::conclude(std::size_t inputs) {
  if (folder_.empty()) return;
  const std::lock_guard lock(mutex_);
  std::vector<const Entry*> ordered;
  for (const auto& [index, entry] : entries_) ordered.push_back(&entry);
  std::stable_sort(ordered.begin(), ordered.end(),
                   [](const Entry* a, const Entry* b) { return a->confidence < b->confidence; });
  std::string page = kHead;
  page += "<h1>" + std::to_string(ordered.size()) + " of " + std::to_string(inputs) +
          " scans to be looked at</h1>\n<p>What was not found, or with a confidence below " + rounded(below_, "%.2f") +
          "; the least sure first. Green sides were found, amber ones are weak, red ones guessed.</p>\n<main>\n";
  for (const Entry* entry : ordered) {
    page += "<figure class=\"" + entry->text.substr(0, entry->text.find(':')) + "\">";
    if (!entry->picture.empty()) {
      page += "<a href=\"" + entry->picture + "\"><img loading=\"lazy\" alt=\"\" src=\"" + entry->picture + "\"></a>";
    }
    page += "<figcaption><b>" + escaped(entry->title) + "</b><br>" + escaped(entry->text) + "</figcaption></figure>\n";
  }
  page += "</main></body></html>\n";
  OutputFile((fs::path(folder_) / "index.html").string(), {}, true).commit({page.begin(), page.end()});
}

}  // namespace tool
