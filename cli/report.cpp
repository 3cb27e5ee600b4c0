#include "report.h"

#include <array>
#include <cmath>

#include "printable.h"

namespace tool {
namespace {

/** Counts what programs have to be rewritten for: members that are gone, or mean something else. */
constexpr int kJsonVersion = 1;

Json json_of(const PictureInfo& picture) {
  return {{"width", picture.width},
          {"height", picture.height},
          {"depth", picture.depth},
          {"dpi", {picture.resolution.x, picture.resolution.y}}};
}

/** What a name really is, where JSON cannot hold it. */
Json bytes_of(const std::string& name) { return is_utf8(name) ? Json() : Json(hexadecimal(name)); }

std::string outputs_of(const Report& report) {
  if (report.outputs.empty()) return "";
  const WrittenPicture& first = report.outputs.front();
  const WrittenPicture& last = report.outputs.back();
  std::string text = " -> " + first.path;
  if (first.page > 0 && first.page == last.page) return text + ", page " + std::to_string(first.page);
  if (first.page > 0) return text + ", pages " + std::to_string(first.page) + " to " + std::to_string(last.page);
  if (report.outputs.size() > 1) text += " ... " + last.path;
  return text;
}

}  // namespace

const char* name_of(Outcome outcome) {
  constexpr std::array kNames = {"done", "likely", "doubtful", "kept", "skipped", "nothing-found", "failed"};
  return kNames[static_cast<std::size_t>(outcome)];
}

PictureInfo::PictureInfo(const Bitmap& image)
    : width(image.width()), height(image.height()), depth(image.depth()), resolution(image.resolution()) {}

std::string line_of(const Report& report) {
  std::string line = report.input + ": ";
  if (report.pages > 1) line += "page " + std::to_string(report.page) + " of " + std::to_string(report.pages) + ": ";
  line += report.message;
  if (report.outcome == Outcome::kLikely || report.outcome == Outcome::kDoubtful) {
    line += std::string(" (") + name_of(report.outcome) + ")";
  }
  if (!report.advice.empty()) line += " (try " + report.advice + ")";
  if (!report.succeeded()) return "vantrel: " + printable(line) + "\n";
  if (report.outcome == Outcome::kSkipped) return printable(line) + "\n";
  if (report.outcome == Outcome::kKept) line += ", kept as it is";
  line = printable(line + outputs_of(report));
  return report.timed ? line + " (" + std::to_string(std::lround(report.milliseconds)) + " ms)\n" : line + "\n";
}

Json json_of(const Report& report) {
  Json json = {{"version", kJsonVersion},
               {"file", report.input},
               {"file_bytes", bytes_of(report.input)},
               {"page", report.page},
               {"pages", report.pages}};
  json["outcome"] = name_of(report.outcome);
  json["error"] = report.succeeded() && report.outcome != Outcome::kKept && report.outcome != Outcome::kSkipped
                      ? Json()
                      : Json(report.message);
  json["advice"] = report.advice.empty() ? Json() : Json(report.advice);
  json["scan"] = report.scan ? json_of(*report.scan) : Json();
  if (report.scan) json["scan"]["reduced"] = report.reduced;
  json["outputs"] = Json::array();
  for (const WrittenPicture& output : report.outputs) {
    Json picture = json_of(output.picture);
    picture["path"] = output.path;
    picture["path_bytes"] = bytes_of(output.path);
    picture["page"] = output.page > 0 ? Json(output.page) : Json();
    json["outputs"].push_back(picture);
  }
  json["overlay"] = report.overlay.empty() ? Json() : Json(report.overlay);
  json["milliseconds"] = std::round(report.milliseconds * 1000) / 1000;
  if (report.details.is_object()) json.update(report.details);
  return json;
}

}  // namespace tool
