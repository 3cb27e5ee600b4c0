#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "autoclip/exports.h"
#include "contest.h"
#include "scans.h"

namespace contest {
namespace {

using support::Image;

Image scan_on_glass(const Size& size, int bit_count) {
  return benchmark_scans::card_scan(size.width, size.height, bit_count, benchmark_scans::kDarkGlass);
}

/** The frame two pixels within the scan shows the card, whose corners lie a little askew. */
struct Task {
  std::array<float, 8> frame;
  std::array<float, 8> corners;
  std::array<double, 8> mapping{};
  std::array<double, 4> rect;

  explicit Task(const Size& size) {
    const auto w = static_cast<float>(size.width), h = static_cast<float>(size.height);
    frame = {1, 1, w - 2, 1, 1, h - 2, w - 2, h - 2};
    corners = {40, 30, w - 30, 50, 30, h - 50, w - 40, h - 30};
    rect = {1, 1, size.width - 2.0, size.height - 2.0};
    SolveMultiUnknownFunc(mapping.data(), frame.data(), corners.data(), 8);
  }
};

void enter_warp(const Size& size, int bit_count) {
  const std::string row = "warp " + std::to_string(bit_count);
  if (!takes_part(row, size)) return;
  enter_limit(row, size, size.pixels(), bit_count / 8 * size.pixels(), bit_count / 8 * size.pixels());
  const auto scan = shared(scan_on_glass(size, bit_count));
  const auto task = shared(Task(size));
  const auto shown = shared(Image(size.width, size.height, bit_count));
  const auto middle = [=](const unsigned char* bytes) { return bytes[size.width / 2 * bit_count / 8]; };
  enter(row, size, "vantrel", size.pixels(), [=] {
    ConvertImg2(scan->ptr(), shown->ptr(), task->mapping.data(), task->rect.data(), bit_count);
    return middle(shown->row(size.height / 2)) > 0;
  });
#ifdef WITH_OPENCV
  enter(row, size, "opencv", size.pixels(), [=] {
    const auto points = [](const std::array<float, 8>& c) {
      return std::array<cv::Point2f, 4>{cv::Point2f{c[0], c[1]}, {c[2], c[3]}, {c[4], c[5]}, {c[6], c[7]}};
    };
    const auto to = points(task->frame), from = points(task->corners);
    cv::Mat warped = mat_of(*shown);
    cv::warpPerspective(mat_of(*scan), warped, cv::getPerspectiveTransform(to.data(), from.data()), warped.size(),
                        cv::INTER_LINEAR | cv::WARP_INVERSE_MAP, cv::BORDER_REPLICATE);
    return middle(warped.ptr(size.height / 2)) > 0;
  });
#endif
}

#ifdef WITH_OPENCV
/** Four corners of the largest outline of what is bright, in a quarter of the size; empty where it has not four. */
std::vector<cv::Point2f> outlined_card(const cv::Mat& scan) {
  constexpr double kThinned = 0.25;
  cv::Mat thinned, gray, bright;
  cv::resize(scan, thinned, {}, kThinned, kThinned, cv::INTER_NEAREST);
  cv::cvtColor(thinned, gray, cv::COLOR_BGR2GRAY);
  cv::threshold(gray, bright, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU);
  std::vector<std::vector<cv::Point>> outlines;
  cv::findContours(bright, outlines, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_SIMPLE);
  const auto largest = std::max_element(outlines.begin(), outlines.end(), [](const auto& a, const auto& b) {
    return cv::contourArea(a) < cv::contourArea(b);
  });
  std::vector<cv::Point> corners;
  if (largest != outlines.end()) cv::approxPolyDP(*largest, corners, 0.02 * cv::arcLength(*largest, true), true);
  if (corners.size() != 4) return {};
  std::vector<cv::Point2f> found;
  for (const cv::Point& corner : corners) found.push_back(cv::Point2f(corner) * static_cast<float>(1 / kThinned));
  return found;
}

/** Whether each corner of the drawn card is near one of those. */
bool near_card(const Size& size, const std::vector<cv::Point2f>& found) {
  const auto left = static_cast<float>(size.width / 16), low = static_cast<float>(size.height / 10);
  const auto right = static_cast<float>(size.width) - left, high = static_cast<float>(9 * size.height / 10);
  const cv::Point2f wanted[] = {{left, low}, {right, low}, {right, high}, {left, high}};
  return std::all_of(std::begin(wanted), std::end(wanted), [&](const cv::Point2f& corner) {
    return std::any_of(found.begin(), found.end(), [&](const cv::Point2f& p) { return cv::norm(p - corner) < 12; });
  });
}
#endif

/** From the scan to the card on its own: find it, and map it onto the frame. */
void enter_main(const Size& size) {
  if (!takes_part("main 24", size)) return;
  // The scan is read to find the card and to map it.
  enter_limit("main 24", size, size.pixels(), 6 * size.pixels(), 3 * size.pixels());
  const auto scan = shared(scan_on_glass(size, 24));
  enter(
      "main 24", size, "vantrel", size.pixels(),
      [=] {
        Image card;
        return AutoClipRedundantImg(scan->handle(), nullptr, card.ptr(), 1) == 1;
      },
      3);
#ifdef WITH_OPENCV
  enter(
      "main 24", size, "opencv", size.pixels(),
      [=] {
        const std::vector<cv::Point2f> corners = outlined_card(mat_of(*scan));
        if (!near_card(size, corners)) return false;
        // In the order in which they were met, round the card.
        const auto w = static_cast<float>(size.width), h = static_cast<float>(size.height);
        const std::vector<cv::Point2f> frame = {{1, 1}, {1, h - 2}, {w - 2, h - 2}, {w - 2, 1}};
        cv::Mat card;
        cv::warpPerspective(mat_of(*scan), card, cv::getPerspectiveTransform(corners, frame),
                            cv::Size(size.width, size.height), cv::INTER_LINEAR, cv::BORDER_REPLICATE);
        return !card.empty();
      },
      3);
#endif
}

}  // namespace

void enter_warp_rows() {
  for (const Size& size : kSizes) {
    for (const int bit_count : {8, 24}) enter_warp(size, bit_count);
    enter_main(size);
  }
}

}  // namespace contest
