/**
 * @file size_limits.h
 * @brief How large a picture may be, judged before anything is decoded or memory is taken for it; and how long that may
 * take.
 */
#ifndef VANTREL_CLI_SIZE_LIMITS_H
#define VANTREL_CLI_SIZE_LIMITS_H

#include <cstdint>
#include <optional>

namespace tool {

class ReadingTime;

/** What one input may take, unless others are asked for. */
struct Limits {
  int megapixels = 300;         /**< a sheet of A3 at 1200 dots per inch has 279 */
  int megabytes = 500;          /**< of a file, and of the picture that is decoded from it */
  std::optional<int> seconds{}; /**< of the processor, to decode it, rather than by its size */
  ReadingTime* time = nullptr;  /**< of the input that is read */
};

/**
 * Judges a picture that is announced, in so many bits a pixel, and lets it take its time.
 *
 * @throws Failure it is larger than allowed.
 */
void check_size(std::int64_t width, std::int64_t height, int bits, const Limits& limits);

/** @throws Failure a file of so many bytes is larger than allowed. */
void check_file_size(std::uint64_t bytes, int most_megabytes);

}  // namespace tool

#endif
