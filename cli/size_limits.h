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

/** What one input may take, unless others are asked for. */
struct Limits {
  int megapixels = 300;       /**< a sheet of A3 at 1200 dots per inch has 279 */
  int megabytes = 500;        /**< of a file, and of the picture that is decoded from it */
  std::optional<int> seconds; /**< of the processor, to decode it */
};

/** Where nobody says how many, and the format's own work is judged beforehand. */
inline constexpr int kMostSeconds = 120;

/** @throws Failure a picture of that size, in so many bits a pixel, is larger than allowed. */
void check_size(std::int64_t width, std::int64_t height, int bits, const Limits& limits);

/** @throws Failure a file of so many bytes is larger than allowed. */
void check_file_size(std::uint64_t bytes, int most_megabytes);

}  // namespace tool

#endif
