#include <array>
#include <cmath>
#include <vector>

#include "components/exports.h"
#include "contest.h"
#include "edges.h"
#include "lines/exports.h"
#include "scans.h"

#ifdef WITH_LEPTONICA
#include <leptonica/allheaders.h>
#endif

namespace contest {
namespace {

using benchmark_scans::EdgeMaps;
using benchmark_scans::Passed;
using support::Image;

Image scan_on_glass(const Size& size) {
  return benchmark_scans::card_scan(size.width, size.height, 8, benchmark_scans::kDarkGlass);
}

void enter_edges(const Size& size) {
  if (!takes_part("edges", size)) return;
  const auto maps = shared(EdgeMaps(scan_on_glass(size), Passed::kNothing));
  enter("edges", size, "vantrel", size.pixels(), [=] {
    maps->detect();
    // The card's lower border lies in the middle of its columns.
    const auto below = maps->edge.begin() + std::ptrdiff_t{maps->stride} * (maps->rows / 10 - 4) + maps->cols / 2;
    return *below == 255;
  });
  enter_limit("edges", size, size.pixels(), size.pixels(), 2 * size.pixels());
#ifdef WITH_OPENCV
  // Both gradients only, without a magnitude or a direction: less than is asked for.
  enter("edges", size, "opencv-sobel", size.pixels(), [=] {
    cv::Mat across, along;
    cv::Sobel(mat_of(maps->gray), across, CV_16S, 0, 1);
    cv::Sobel(mat_of(maps->gray), along, CV_16S, 1, 0);
    return across.rows == along.rows;
  });
  enter("edges", size, "opencv-canny", size.pixels(), [=] {
    cv::Mat edge;
    cv::Canny(mat_of(maps->gray), edge, 201, 201, 3, true);
    return edge.at<unsigned char>(maps->rows / 10 - 4, maps->cols / 2) == 0;
  });
#endif
}

void enter_components(const Size& size) {
  if (!takes_part("components", size)) return;
  const auto maps = shared(EdgeMaps(scan_on_glass(size), Passed::kNothing));
  const auto list = std::make_shared<benchmark_scans::ComponentList>();
  enter_limit("components", size, size.pixels(), size.pixels(), 0);
  enter("components", size, "vantrel", size.pixels(),
        [=] { return Gray2Bin(maps->edge.data(), list->list(), maps->rows, maps->cols) && list->clear(); });
#ifdef WITH_OPENCV
  enter("components", size, "opencv", size.pixels(), [=] {
    const cv::Mat edge(maps->rows, maps->cols, CV_8UC1, maps->edge.data(), static_cast<std::size_t>(maps->stride));
    cv::Mat labels, boxes, middles;
    return cv::connectedComponentsWithStats(~edge, labels, boxes, middles) > 1;
  });
#endif
#ifdef WITH_LEPTONICA
  // The map in bits: making them is not timed.
  const std::shared_ptr<Pix> bits(pixCreate(maps->cols, maps->rows, 1), [](Pix* pix) { pixDestroy(&pix); });
  for (int r = 0; r < maps->rows; ++r) {
    for (int c = 0; c < maps->cols; ++c) {
      const std::size_t at = static_cast<std::size_t>(r) * static_cast<std::size_t>(maps->stride);
      if (maps->edge[at + static_cast<std::size_t>(c)] == 0) pixSetPixel(bits.get(), c, r, 1);
    }
  }
  enter("components", size, "leptonica", size.pixels(), [=] {
    Boxa* boxes = pixConnCompBB(bits.get(), 8);
    const bool any = boxaGetCount(boxes) > 0;
    boxaDestroy(&boxes);
    return any;
  });
#endif
}

/** Two level lines among the angles of 70 to 109 degrees. Units are votes: a point and an angle. */
void enter_votes(const Size& size) {
  if (!takes_part("votes", size)) return;
  constexpr int kAngles = 40;
  const auto maps = shared(EdgeMaps(scan_on_glass(size), Passed::kInside));
  const auto points = shared(maps->points(0, maps->rows, 0, maps->cols, 0));
  const auto votes = static_cast<std::int64_t>(points->size()) * kAngles;
  const auto tables = shared(std::array<std::array<double, 180>, 2>{});
  for (std::size_t t = 0; t < 180; ++t) {
    (*tables)[0][t] = std::sin(static_cast<double>(t) * 0.01745329251994);
    (*tables)[1][t] = std::cos(static_cast<double>(t) * 0.01745329251994);
  }
  enter("votes", size, "vantrel", votes, [=] {
    std::vector<typePoint> moved = *points;
    std::array<double, 8> normal{};
    std::array<double, 4> distance{};
    return Compute_Hough_Angle(normal.data(), distance.data(), moved.data(), maps->rows, maps->cols,
                               static_cast<int>(moved.size()), 0, (*tables)[0].data(), (*tables)[1].data()) == 1;
  });
#ifdef WITH_OPENCV
  constexpr int kFirstAngle = 70;
  const auto places = shared(std::vector<cv::Point2f>());
  for (const typePoint& point : *points) {
    places->push_back({point.col - static_cast<float>(maps->cols / 2), point.row - static_cast<float>(maps->rows / 2)});
  }
  enter("votes", size, "opencv", votes, [=] {
    cv::Mat lines;
    const double reach = std::max(maps->rows, maps->cols);
    cv::HoughLinesPointSet(*places, lines, 2, 1, -reach, reach, 1, kFirstAngle * CV_PI / 180,
                           (kFirstAngle + kAngles - 0.5) * CV_PI / 180, CV_PI / 180);
    return lines.rows == 2;
  });
#endif
}

}  // namespace

void enter_line_rows() {
  for (const Size& size : kSizes) {
    enter_edges(size);
    enter_components(size);
    enter_votes(size);
  }
}

}  // namespace contest
