#include <algorithm>
#include <cstring>
#include <vector>

#include "cardcut/exports.h"
#include "contest.h"
#include "scans.h"
#include "segment/exports.h"

namespace contest {
namespace {

using support::Image;

/** The library works in place, so that a copy is made each time; the peer writes to another image. */
void enter_running_mean(const Size& size) {
  const auto scan = shared(benchmark_scans::card_scan(size.width, size.height, 8));
  const auto levels = shared(*scan);
  enter("running mean", size, "vantrel", size.pixels(), [=] {
    std::memcpy(levels->ptr()->pBits, scan->ptr()->pBits, scan->header().biSizeImage);
    return Moving_Average(levels->ptr()->pBits, size.width, size.height, levels->stride());
  });
#ifdef WITH_OPENCV
  enter("running mean", size, "opencv", size.pixels(), [=] {
    cv::Mat binary;
    cv::adaptiveThreshold(mat_of(*scan), binary, 255, cv::ADAPTIVE_THRESH_MEAN_C, cv::THRESH_BINARY, 31, 20);
    return !binary.empty();
  });
#endif
}

template <bool (*kFind)(BITMAPPTR*, MYRECT&)>
void enter_card_cut(const std::string& row, const Size& size, int bit_count) {
  const auto scan = shared(benchmark_scans::card_scan(size.width, size.height, bit_count));
  enter(row, size, "vantrel", size.pixels(), [=] {
    MYRECT rect{};
    return kFind(scan->ptr(), rect);
  });
#ifdef WITH_OPENCV
  enter(row, size, "opencv", size.pixels(), [=] {
    cv::Mat gray = mat_of(*scan), bright;
    if (bit_count == 24) cv::cvtColor(mat_of(*scan), gray, cv::COLOR_BGR2GRAY);
    cv::threshold(gray, bright, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU);
    std::vector<std::vector<cv::Point>> outlines;
    cv::findContours(bright, outlines, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_SIMPLE);
    return std::any_of(outlines.begin(), outlines.end(), [&](const auto& outline) {
      return 10 * cv::boundingRect(outline).area() > 6 * size.width * size.height;
    });
  });
#endif
}

void enter_sheet(int bit_count) {
  const auto sheet = shared(benchmark_scans::sheet_of_cards(bit_count));
  enter("sheet " + std::to_string(bit_count), kSheet, "vantrel", kSheet.pixels(), [=] {
    RectRegions regions{};
    return CardSeg(sheet->ptr(), regions) == 1 && regions.firstCount + regions.secondCount == 8;
  });
}

}  // namespace

void enter_card_rows() {
  for (const Size& size : kSizes) enter_running_mean(size);
  for (const Size& size : {kCard, kLargeCard}) {
    enter_card_cut<CutCard>("cut card 8", size, 8);
    enter_card_cut<CutCard24>("cut card 24", size, 24);
  }
  for (const int bit_count : {8, 24}) enter_sheet(bit_count);
}

}  // namespace contest
