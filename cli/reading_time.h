/**
 * @file reading_time.h
 * @brief How long a file may take to be read, by its size.
 */
#ifndef VANTREL_CLI_READING_TIME_H
#define VANTREL_CLI_READING_TIME_H

#include <cstddef>
#include <cstdint>
#include <optional>

#include "deadline.h"
#include "image_format.h"

namespace tool {

/** A deadline that bytes and pixels justify, unless the user says how long. */
class ReadingTime {
 public:
  /** To begin with, for a file of so many bytes. */
  ReadingTime(Format format, std::size_t bytes, std::optional<int> seconds);

  /** A picture of so many pixels is announced: the largest one counts. */
  void expect(std::int64_t pixels);

  /** What the file holds was judged, and is drawn now. */
  void expect_drawing();

 private:
  bool by_size_;
  double bytes_;
  double seconds_of_pixel_;
  std::int64_t pixels_ = 0;
  Deadline deadline_;
};

}  // namespace tool

#endif
