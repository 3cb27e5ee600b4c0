#include "report.h"

#include <array>
#include <cmath>

namespace tool {
namespace {

/** Counts what programs have to be rewritten for: members that are gone, or mean something else. */
constexpr int kJsonVersion = 1;

const char* name_of(Outcome outcome) {
  constexpr std::array kNames = {"done", "likely", "doubtful", "kept", "nothing-found", "failed"};
  return kNames[static_cast<std::size_t>(outcome)];
}

Json json_of(const PictureInfo& picture) {
  return {{"width", picture.width},
          {"height", picture.height},
          {"depth", picture.depth},
          {"dpi", {picture.resolution.x, picture.resolution.y}}};
}

std::string outputs_of(const Report& report) {
  if (report.outputs.empty()) return "";
  std::string text = " -> " + report.outputs.front().path;
  if (report.outputs.size() > 1) text += " ... " + report.outputs.back().path;
  return text;
}

}  // namespace

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
  if (!report.succeeded()) return "vantrel: " + line + "\n";
  if (report.outcome == Outcome::kKept) line += ", kept as it is";
  return line + outputs_of(report) + " (" + std::to_string(std::lround(report.milliseconds)) + " ms)\n";
}

Json json_of(const Report& report) {
  Json json = {{"version", kJsonVersion}, {"file", report.input}, {"page", report.page}, {"pages", report.pages}};
  json["outcome"] = name_of(report.outcome);
  json["error"] = report.succeeded() && report.outcome != Outcome::kKept ? Json() : Json(report.message);
  json["advice"] = report.advice.empty() ? Json() : Json(report.advice);
  json["scan"] = report.scan ? json_of(*report.scan) : Json();
  json["outputs"] = Json::array();
  for (const WrittenPicture& output : report.outputs) {
    Json picture = json_of(output.picture);
    picture["path"] = output.path;
    json["outputs"].push_back(picture);
  }
  json["overlay"] = report.overlay.empty() ? Json() : Json(report.overlay);
  json["milliseconds"] = std::round(report.milliseconds * 1000) / 1000;
  if (report.details.is_object()) json.update(report.details);
  return json;
}

}  // namespace tool
