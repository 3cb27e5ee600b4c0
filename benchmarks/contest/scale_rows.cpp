#include "contest.h"
#include "scans.h"

namespace contest {
namespace {

using support::Image;

/** Twice as wide and high. Units are pixels of the result. */
template <int (*kEnlarge)(void**, BITMAPPTR*)>
void enter_enlargement(const std::string& kind, const Size& size, int bit_count, [[maybe_unused]] int method) {
  const std::string row = kind + " " + std::to_string(bit_count);
  if (!takes_part(row, size)) return;
  const int bytes = bit_count / 8;
  enter_limit(row, size, 4 * size.pixels(), bytes * size.pixels(), 4 * bytes * size.pixels());
  const auto scan = shared(benchmark_scans::card_scan(size.width, size.height, bit_count));
  enter(
      row, size, "vantrel", 4 * size.pixels(),
      [=] {
        Image twice;
        return kEnlarge(scan->handle(), twice.ptr()) == 1;
      },
      bytes);
#ifdef WITH_OPENCV
  enter(
      row, size, "opencv", 4 * size.pixels(),
      [=] {
        cv::Mat twice;
        cv::resize(mat_of(*scan), twice, {}, 2, 2, method);
        return twice.rows == 2 * size.height;
      },
      bytes);
#endif
}

}  // namespace

void enter_scale_rows() {
#ifdef WITH_OPENCV
  constexpr int kLinear = cv::INTER_LINEAR, kCubic = cv::INTER_CUBIC;
#else
  constexpr int kLinear = 0, kCubic = 0;
#endif
  // Larger scans are not enlarged.
  for (const int bit_count : {8, 24}) {
    enter_enlargement<BiLinear>("linear", kCard, bit_count, kLinear);
    enter_enlargement<BiCubic>("cubic", kCard, bit_count, kCubic);
  }
}

}  // namespace contest
