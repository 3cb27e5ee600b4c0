#include "announced.h"

#include <allheaders.h>

#include <string>

#include "failure.h"

namespace tool {
namespace {

/** The least number of bytes that the samples of a PNM file take: packed, or as text with a space between two. */
std::int64_t least_pnm_bytes(int type, std::int64_t width, std::int64_t height, int bits, int samples) {
  switch (type) {
    case 1:  // digits of bits need no space
      return width * height;
    case 2:
    case 3:
      return 2 * width * height * samples - 1;
    case 4:
      return (width + 7) / 8 * height;
    default:
      return width * height * samples * (bits > 8 ? 2 : 1);
  }
}

void check_pnm(const std::vector<unsigned char>& file, int most_megapixels) {
  l_int32 width = 0;
  l_int32 height = 0;
  l_int32 depth = 0;
  l_int32 type = 0;
  l_int32 bits = 0;
  l_int32 samples = 0;
  if (readHeaderMemPnm(file.data(), file.size(), &width, &height, &depth, &type, &bits, &samples) != 0) return;
  if (least_pnm_bytes(type, width, height, bits, samples) > static_cast<std::int64_t>(file.size())) {
    throw Failure("the PNM data is truncated or damaged, or of an unknown kind");
  }
  check_size(width, height, most_megapixels);
}

}  // namespace

void check_size(std::int64_t width, std::int64_t height, int most_megapixels) {
  constexpr std::int64_t kMega = 1000000;
  if (width <= 0 || height <= 0 || width * height <= most_megapixels * kMega) return;
  throw Failure(std::to_string(width) + " x " + std::to_string(height) + " are more than " +
                std::to_string(most_megapixels) + " megapixels (--most-megapixels allows more)");
}

void check_announced(Format format, const std::vector<unsigned char>& file, int most_megapixels) {
  l_int32 width = 0;
  l_int32 height = 0;
  switch (format) {
    case Format::kPnm:
      return check_pnm(file, most_megapixels);
    case Format::kPng:
      readHeaderMemPng(file.data(), file.size(), &width, &height, nullptr, nullptr, nullptr);
      break;
    case Format::kJpeg:
      readHeaderMemJpeg(file.data(), file.size(), &width, &height, nullptr, nullptr, nullptr);
      break;
    case Format::kWebp: {
      l_int32 samples = 0;
      readHeaderMemWebP(file.data(), file.size(), &width, &height, &samples);
      break;
    }
    case Format::kTiff:  // each page has its own
    case Format::kBmp:   // not compressed: no larger than its file
      break;
  }
  check_size(width, height, most_megapixels);
}

}  // namespace tool
