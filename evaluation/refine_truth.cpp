/**
 * Lays the true borders of drawn scans onto these scans: what refinement makes of a start without any error.
 *
 *   vantrel_refine_truth SET FIRST_SEED COUNT
 *
 * Prints a line for each corner with two visible sides: how far it came to lie from the true one, in pixels of the
 * scan, and the lesser contrast of its two sides, in levels.
 */
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "anywhere/copy.h"
#include "anywhere/finalists.h"
#include "anywhere/refine.h"
#include "drawing/drawn_scan.h"

namespace {

using namespace vantrel;
using anywhere::Quad;
using anywhere::operator-;

void refine_card(const drawing::TrueCard& card, const anywhere::Scan& scan) {
  Quad truth;
  for (std::size_t i = 0; i < 4; ++i) truth.corners[i] = {card.corners[i].x, card.corners[i].y};
  const int factor = anywhere::reduction_factor(scan.pixels.rows, scan.pixels.cols);
  const anywhere::Refined refined = anywhere::refine(scan, truth, anywhere::kBorderReach * factor);
  for (std::size_t i = 0; i < 4; ++i) {
    const std::size_t before = (i + 3) % 4;
    if (!card.visible[before] || !card.visible[i]) continue;
    const double contrast = std::min(std::fabs(refined.contrasts[before]), std::fabs(refined.contrasts[i]));
    std::printf("%.4f %.2f\n", anywhere::length(refined.quad[i] - truth[i]), contrast);
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 4) {
    std::fputs("usage: vantrel_refine_truth SET FIRST_SEED COUNT\n", stderr);
    return 2;
  }
  const std::uint64_t first = std::stoull(arguments[2]), end = first + std::stoull(arguments[3]);
  for (std::uint64_t seed = first; seed < end; ++seed) {
    const drawing::DrawnScan drawn = drawing::draw_scan(arguments[1], seed);
    const anywhere::Scan scan = {{drawn.bgr.data(), drawn.height, drawn.width, std::ptrdiff_t{drawn.width} * 3},
                                 anywhere::Layout::kBgr};
    for (const drawing::TrueCard& card : drawn.cards) refine_card(card, scan);
  }
  return 0;
}
