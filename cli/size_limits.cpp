#include "size_limits.h"

#include <string>

#include "failure.h"
#include "reading_time.h"

namespace tool {
namespace {

constexpr std::int64_t kMega = 1000000;

/** What the rows of pictures are filled up to. */
constexpr std::int64_t kBitsOfStep = 32;

}  // namespace

void check_size(std::int64_t width, std::int64_t height, int bits, const Limits& limits) {
  if (width <= 0 || height <= 0) return;
  const std::string size = std::to_string(width) + " x " + std::to_string(height);
  if (width > limits.megapixels * kMega / height) {
    throw Failure(size + " are more than " + std::to_string(limits.megapixels) +
                  " megapixels (--most-megapixels allows more)");
  }
  const std::int64_t row = (width * bits + kBitsOfStep - 1) / kBitsOfStep * kBitsOfStep / 8;
  if (row > limits.megabytes * kMega / height) {
    throw Failure(size + " in " + std::to_string(bits) + " bits a pixel take more than " +
                  std::to_string(limits.megabytes) + " megabytes (--most-megabytes allows more)");
  }
  if (limits.time != nullptr) limits.time->expect(width * height);
}

void check_file_size(std::uint64_t bytes, int most_megabytes) {
  if (bytes <= static_cast<std::uint64_t>(most_megabytes * kMega)) return;
  throw Failure("the file has more than " + std::to_string(most_megabytes) +
                " megabytes (--most-megabytes allows more)");
}

}  // namespace tool
