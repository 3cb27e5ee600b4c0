#include <algorithm>
#include <cstring>
#include <vector>

#include "anywhere/copy.h"
#include "anywhere/edges.h"
#include "cardcut/exports.h"
#include "contest.h"
#include "scans.h"
#include "segment/exports.h"

#ifdef WITH_LEPTONICA
#include <leptonica/allheaders.h>
#endif

namespace contest {
namespace {

using support::Image;

/** The library works in place, so that a copy is made each time; the peer writes to another image. */
void enter_running_mean(const Size& size) {
  if (!takes_part("running mean", size)) return;
  enter_limit("running mean", size, size.pixels(), 2 * size.pixels(), 2 * size.pixels());
  const auto scan = shared(benchmark_scans::card_scan(size.width, size.height, 8));
  const auto levels = shared(*scan);
  enter("running mean", size, "vantrel", size.pixels(), [=] {
    std::memcpy(levels->ptr()->pBits, scan->ptr()->pBits, scan->header().biSizeImage);
    return Moving_Average(levels->ptr()->pBits, size.width, size.height, levels->stride());
  });
#ifdef WITH_OPENCV
  enter(
      "running mean", size, "opencv", size.pixels(),
      [=] {
        cv::Mat binary;
        cv::adaptiveThreshold(mat_of(*scan), binary, 255, cv::ADAPTIVE_THRESH_MEAN_C, cv::THRESH_BINARY, 31, 20);
        return !binary.empty();
      },
      1);
#endif
}

template <bool (*kFind)(BITMAPPTR*, MYRECT&)>
void enter_card_cut(const std::string& row, const Size& size, int bit_count) {
  if (!takes_part(row, size)) return;
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
  if (!takes_part("sheet " + std::to_string(bit_count), kSheet)) return;
  const auto sheet = shared(benchmark_scans::sheet_of_cards(bit_count));
  enter("sheet " + std::to_string(bit_count), kSheet, "vantrel", kSheet.pixels(), [=] {
    RectRegions regions{};
    return CardSeg(sheet->ptr(), regions) == 1 && regions.firstCount + regions.secondCount == 8;
  });
#ifdef WITH_LEPTONICA
  // The sheet thinned as much, in black and white, closed over the gaps between lines of text, and its blocks' boxes.
  const std::shared_ptr<Pix> pix(pixCreate(kSheet.width, kSheet.height, bit_count == 24 ? 32 : 8),
                                 [](Pix* made) { pixDestroy(&made); });
  for (int r = 0; r < kSheet.height; ++r) {
    for (int c = 0; c < kSheet.width; ++c) {
      const auto at = [&](int k) { return static_cast<l_uint32>(sheet->at(r, c * bit_count / 8 + k)); };
      pixSetPixel(pix.get(), c, r, bit_count == 24 ? at(2) << 24 | at(1) << 16 | at(0) << 8 : at(0));
    }
  }
  enter("sheet " + std::to_string(bit_count), kSheet, "leptonica", kSheet.pixels(), [=] {
    Pix* thinned = pixScaleBySampling(pix.get(), 1.0F / 3, 1.0F / 3);
    Pix* gray = bit_count == 24 ? pixConvertRGBToGray(thinned, 0, 0, 0) : pixClone(thinned);
    Pix* bits = pixThresholdToBinary(gray, 128);
    Pix* closed = pixCloseBrick(nullptr, bits, 15, 35);
    Boxa* boxes = pixConnCompBB(closed, 8);
    const int count = boxaGetCount(boxes);
    boxaDestroy(&boxes);
    for (Pix* made : {thinned, gray, bits, closed}) pixDestroy(&made);
    return count == 8;
  });
#endif
}

/**
 * What the finder of cards anywhere looks at: the scan made small, its gradients and its edges. Ours takes out the
 * stripes of a scanner and looks at colours, too.
 */
void enter_finder_copy() {
  const std::string row = "finder's copy 24";
  if (!takes_part(row, kSheet)) return;
  const auto sheet = shared(benchmark_scans::sheet_of_cards(24));
  enter_limit(row, kSheet, kSheet.pixels(), 3 * kSheet.pixels(), 0);
  enter(row, kSheet, "vantrel", kSheet.pixels(), [=] {
    using namespace vantrel::anywhere;
    const Copy copy = reduce({{sheet->row(0), sheet->height(), sheet->width(), sheet->stride()}, Layout::kBgr});
    const auto gradients = find_gradients(copy);
    return find_edges(copy, gradients.all()).count > 100;
  });
#ifdef WITH_OPENCV
  const int factor = vantrel::anywhere::reduction_factor(kSheet.height, kSheet.width);
  enter(row, kSheet, "opencv", kSheet.pixels(), [=] {
    cv::Mat small, gray, smooth, edges;
    cv::resize(mat_of(*sheet), small, cv::Size(kSheet.width / factor, kSheet.height / factor), 0, 0, cv::INTER_AREA);
    cv::cvtColor(small, gray, cv::COLOR_BGR2GRAY);
    cv::GaussianBlur(gray, smooth, cv::Size(5, 5), 0);
    cv::Canny(smooth, edges, 50, 150);
    return cv::countNonZero(edges) > 100;
  });
#endif
}

}  // namespace

void enter_card_rows() {
  for (const Size& size : kSizes) enter_running_mean(size);
  for (const Size& size : {kCard, kLargeCard}) {
    enter_card_cut<CutCard>("cut card 8", size, 8);
    enter_card_cut<CutCard24>("cut card 24", size, 24);
  }
  for (const int bit_count : {8, 24}) enter_sheet(bit_count);
  enter_finder_copy();
}

}  // namespace contest
