#include "twin_scan.h"

#include <algorithm>
#include <cstdlib>

#include "failure.h"
#include "image_file.h"
#include "safe_file.h"

namespace tool {
namespace {

bool fits(int reduced, int full, int scale) {
  const double difference = static_cast<double>(reduced) * scale - full;
  return std::abs(difference) <= std::max(0.02 * full, static_cast<double>(scale));
}

std::string size_of(const Bitmap& image) {
  return std::to_string(image.width()) + " x " + std::to_string(image.height());
}

}  // namespace

Bitmap read_twin(const Options& options, const std::string& path, const Bitmap& scan, TwinRole role, int scale) {
  try {
    Bitmap twin = decode_image(read_file(path, options.limits.megabytes), 1, options.limits).image;
    const Bitmap& reduced = role == TwinRole::kReduced ? twin : scan;
    const Bitmap& full = role == TwinRole::kReduced ? scan : twin;
    if (!fits(reduced.width(), full.width(), scale) || !fits(reduced.height(), full.height(), scale)) {
      throw Failure("does not fit: " + size_of(reduced) + " times " + std::to_string(scale) + " is not " +
                    size_of(full));
    }
    return twin;
  } catch (const Failure& failure) {
    throw Failure(path + ": " + failure.what());
  }
}

void check_twin(const Options& options, const std::string& path, const std::string& option, int scale) {
  if (path.empty()) return;
  if (options.inputs.size() > 1) throw WrongUsage(option + " goes with one input");
  if (scale < 2) throw WrongUsage(option + " needs --scale 2 or more");
  if (path == kPipe && options.inputs.front() == kPipe) throw WrongUsage("standard input can be read only once");
}

}  // namespace tool
