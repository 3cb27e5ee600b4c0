#include "reading_time.h"

namespace tool {
namespace {

/** For any file, before it is known what is in it. */
constexpr double kSecondsAside = 0.5;

/** Pictures take a tenth of this or less, scanned pages a seventh. The pixels of a page come of themselves. */
struct Rates {
  double byte;
  double pixel;
};
constexpr Rates kPictures{3e-6, 0.2e-6};
constexpr Rates kPages{0.4e-6, 0.05e-6};

/** A byte may be a line of a drawn map. */
constexpr double kSecondsOfDrawnByte = 9.6e-6;

const Rates& rates_of(Format format) { return format == Format::kPdf ? kPages : kPictures; }

}  // namespace

ReadingTime::ReadingTime(Format format, std::size_t bytes, std::optional<int> seconds)
    : by_size_(!seconds),
      bytes_(static_cast<double>(bytes)),
      seconds_of_pixel_(rates_of(format).pixel),
      deadline_(seconds ? *seconds : kSecondsAside + rates_of(format).byte * bytes_) {}

void ReadingTime::expect(std::int64_t pixels) {
  if (!by_size_ || pixels <= pixels_) return;
  deadline_.allow(seconds_of_pixel_ * static_cast<double>(pixels - pixels_));
  pixels_ = pixels;
}

void ReadingTime::expect_drawing() {
  if (by_size_) deadline_.allow(kSecondsOfDrawnByte * bytes_);
}

}  // namespace tool
