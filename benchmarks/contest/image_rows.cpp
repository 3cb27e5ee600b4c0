#include "contest.h"
#include "image/exports.h"
#include "scans.h"

namespace contest {
namespace {

using support::Image;

void enter_gray(const Size& size) {
  if (!takes_part("gray", size)) return;
  const auto scan = shared(benchmark_scans::card_scan(size.width, size.height, 24));
  enter(
      "gray", size, "vantrel", size.pixels(),
      [=] {
        Image gray;
        return Color2Gray(scan->ptr(), gray.ptr()) && gray.at(0, 0) > 0;
      },
      1);
#ifdef WITH_OPENCV
  enter(
      "gray", size, "opencv", size.pixels(),
      [=] {
        cv::Mat gray;
        cv::cvtColor(mat_of(*scan), gray, cv::COLOR_BGR2GRAY);
        return gray.at<unsigned char>(0, 0) > 0;
      },
      1);
#endif
  enter_limit("gray", size, size.pixels(), 3 * size.pixels(), size.pixels());
}

/** All but the outermost pixels. */
void enter_crop(const Size& size, int bit_count) {
  const std::string row = "crop " + std::to_string(bit_count);
  if (!takes_part(row, size)) return;
  const int bytes = bit_count / 8;
  enter_limit(row, size, size.pixels(), bytes * size.pixels(), bytes * size.pixels());
  const auto scan = shared(benchmark_scans::card_scan(size.width, size.height, bit_count));
  const MYRECT rect{1, static_cast<std::int16_t>(size.height - 2), static_cast<std::int16_t>(size.width - 2), 1, 0};
  enter(
      row, size, "vantrel", size.pixels(),
      [=] {
        Image part;
        return CutRectImage(scan->ptr(), part.ptr(), rect) == 1 && part.at(0, 0) == scan->at(1, bytes);
      },
      bytes);
#ifdef WITH_OPENCV
  enter(
      row, size, "opencv", size.pixels(),
      [=] {
        const cv::Mat part = mat_of(*scan)(cv::Rect(1, 1, size.width - 2, size.height - 2)).clone();
        return part.data[0] == scan->at(1, bytes);
      },
      bytes);
#endif
}

}  // namespace

void enter_image_rows() {
  for (const Size& size : kSizes) {
    enter_gray(size);
    for (const int bit_count : {8, 24}) enter_crop(size, bit_count);
  }
}

}  // namespace contest
