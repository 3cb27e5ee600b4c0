/**
 * @file report.h
 * @brief What the tool says about one input, for people and for programs.
 */
#ifndef VANTREL_CLI_REPORT_H
#define VANTREL_CLI_REPORT_H

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "bitmap.h"

namespace tool {

/** Keeps its members in the order in which they were added. */
using Json = nlohmann::ordered_json;

enum class Outcome {
  kDone,     /**< found for sure, and written unless only detection was asked for */
  kLikely,   /**< the same, not quite as sure */
  kDoubtful, /**< the same; somebody should look at it */
  kKept,     /**< nothing found, the scan written as it is on request */
  kSkipped,  /**< left alone, for its output was there */
  kNothing,  /**< nothing found, nothing written */
  kFailed    /**< an error */
};

/** "nothing-found" and so on. */
const char* name_of(Outcome outcome);

/** Sizes of a picture, in pixels and bits, and its resolution. */
struct PictureInfo {
  int width;
  int height;
  int depth;
  Resolution resolution;

  explicit PictureInfo(const Bitmap& image);
};

struct WrittenPicture {
  std::string path;
  PictureInfo picture;
  int page = 0; /**< in the PDF file of all cards, from 1 */
};

struct Report {  // NOLINT(bugprone-exception-escape): no null JSON throws
  std::string input;
  int page = 1;
  int pages = 0; /**< 0 when the file could not be read */
  Outcome outcome = Outcome::kFailed;
  std::string message; /**< what was found, or why nothing came of it */
  std::string advice;  /**< what to try where nothing was found */
  Json details;        /**< the command's own members, where JSON is asked for */
  std::optional<PictureInfo> scan;
  bool reduced = false; /**< the scan, from more than 8 bits a sample */
  std::vector<WrittenPicture> outputs;
  std::string overlay;
  double milliseconds = 0; /**< of finding and cutting, without reading and writing files */
  bool timed = false;      /**< whether its line tells the time */

  bool succeeded() const { return outcome != Outcome::kNothing && outcome != Outcome::kFailed; }
};

/** One readable line, with its end. */
std::string line_of(const Report& report);

Json json_of(const Report& report);

}  // namespace tool

#endif
