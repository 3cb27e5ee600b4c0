#include "cards/dark_glass.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "autoclip/corner_finder.h"
#include "cards/find.h"
#include "cards/quad.h"
#include "cards/reduce.h"
#include "cards/reduction.h"
#include "cards/source.h"

namespace vantrel::cards {
namespace {

using autoclip::CornerSearch;
using autoclip::FoundSide;
using autoclip::Verdict;
using geometry::Side;

/** The analysed copy. */
struct Analysed {
  int rows;
  int cols;
  int times;
};

/** The core's sides by vantrel_side_index. */
constexpr Side core_side(int side) {
  switch (side) {
    case VANTREL_SIDE_TOP:
      return Side::kTop;
    case VANTREL_SIDE_BOTTOM:
      return Side::kBottom;
    case VANTREL_SIDE_LEFT:
      return Side::kLeft;
    default:
      return Side::kRight;
  }
}

/**
 * A line of columns and memory rows, pixel centres at whole numbers, in the coordinates of the scan: with
 * col = X - 1/2 and row = rows - Y - 1/2, a col + b row = c becomes a X - b Y = c + a / 2 - b (rows - 1/2).
 */
vantrel_line line_in_scan(const geometry::Line& line, const Analysed& analysed) {
  const double c = line.c + 0.5 * line.a - line.b * (analysed.rows - 0.5);
  return {line.a, 0.0 - line.b, c * analysed.times};
}

vantrel_rect box_in_scan(const autoclip::CornerBox& box, int times) {
  return {box.left * times, box.top * times, box.right * times, box.bottom * times};
}

/** A side's band, and, once lines were looked for, what was found there. */
vantrel_dark_side side_in_scan(Side side, const CornerSearch& search, const Analysed& analysed) {
  vantrel_dark_side result{};
  result.band =
      rect_in_scan(autoclip::side_band(side, analysed.rows, analysed.cols).area, analysed.rows, analysed.times);
  if (!search.has_lines()) return result;
  const FoundSide& found = search.sides[side];
  result.line = line_in_scan(found.line, analysed);
  result.found = found.found ? 1 : 0;
  result.votes = found.found ? found.votes : 0.0;
  return result;
}

/** The share of an edge that lies on border pixels. */
vantrel_side evidence(const FoundSide& side, double length) {
  if (!side.found) return {0, 0.0};
  return {1, side.votes < length ? side.votes / length : 1.0};
}

vantrel_dark_glass details_of(const CornerSearch& search, const Analysed& analysed) {
  vantrel_dark_glass details{};
  details.size = sizeof details;
  details.reduction = analysed.times;
  details.width = analysed.cols;
  details.height = analysed.rows;
  details.has_lines = search.has_lines() ? 1 : 0;
  details.has_corners = search.has_corners() ? 1 : 0;
  for (int side = 0; side < 4; ++side) details.sides[side] = side_in_scan(core_side(side), search, analysed);
  if (search.has_corners()) {
    details.corners = scaled(quad_of(search.corners), analysed.times);
    details.box = box_in_scan(search.box, analysed.times);
    details.tilt = tilt(details.corners);
  }
  return details;
}

vantrel_card card_of(const CornerSearch& search, const Analysed& analysed) {
  const vantrel_quad corners = quad_of(search.corners);
  const std::array<double, 4> lengths = edge_lengths(corners);
  vantrel_card card = VANTREL_CARD_INIT;
  card.corners = scaled(corners, analysed.times);
  for (int side = 0; side < 4; ++side) {
    card.sides[side] = evidence(search.sides[core_side(side)], lengths[static_cast<std::size_t>(side)]);
  }
  card.tilt = tilt(card.corners);
  card.confidence = mean_confidence(card.sides);
  card.method = VANTREL_METHOD_DARK_GLASS;
  return card;
}

bool has_found_side(const CornerSearch& search) {
  const auto& sides = search.sides.values;
  return std::any_of(sides.begin(), sides.end(), [](const FoundSide& side) { return side.found; });
}

/** By the verdict of a search that had memory. */
constexpr std::array kReasons = {VANTREL_REASON_FOUND, VANTREL_REASON_TOO_SMALL, VANTREL_REASON_DEGENERATE,
                                 VANTREL_REASON_BLANK, VANTREL_REASON_SCAN_TOO_LARGE};
static_assert(static_cast<std::size_t>(Verdict::kNoMemory) == kReasons.size());

vantrel_reason reason_of(const CornerSearch& search) {
  // Without any side the corners are those of the scan's frame.
  if (search.verdict == Verdict::kFound && !has_found_side(search)) return VANTREL_REASON_NO_SIDE;
  return kReasons[static_cast<std::size_t>(search.verdict)];
}

/** How much a search saw: a card before none, then by the sides found. */
int evidence_of(const DarkGlass& search) {
  const bool found = search.reason == VANTREL_REASON_FOUND;
  return found ? 1 + count_found(search.card.sides) : 0;
}

/**
 * Searches the scan as it is, where borders are placed most exactly, and unless all four were found also at the reduced
 * resolution, where those between two whole degrees are not missed. Of equals the former counts.
 */
vantrel_status search_at_both_resolutions(const vantrel_image& scan, DarkGlass& search) {
  const vantrel_status status = search_dark_glass(scan, 1, search);
  const int times = reduction_for_dark_glass(scan);
  if (status != VANTREL_OK || times == 1 || evidence_of(search) == 5) return status;
  DarkGlass reduced;
  const vantrel_status reduced_status = search_dark_glass(scan, times, reduced);
  const bool searched_at_all = search.reason != VANTREL_REASON_SCAN_TOO_LARGE;
  if (!searched_at_all || evidence_of(reduced) > evidence_of(search)) search = reduced;
  return reduced_status;
}

}  // namespace

vantrel_status search_dark_glass(const vantrel_image& scan, int times, DarkGlass& search) {
  const Analysed analysed = {scan.height / times, scan.width / times, times};
  if (std::max(analysed.rows, analysed.cols) > kMostFinderSide) {
    search.reason = VANTREL_REASON_SCAN_TOO_LARGE;
    return VANTREL_OK;
  }
  // The search looks a little beyond the ends of rows, where it expects them to be padded with white.
  const Copy gray(scan, VANTREL_FORMAT_GRAY, times, Padding::kWhite);
  if (!gray.ready()) return VANTREL_ERROR_MEMORY;
  const CornerSearch corners = autoclip::find_corners({gray.memory_rows(), gray.row_bytes()});
  if (corners.verdict == Verdict::kNoMemory || !corners.complete) return VANTREL_ERROR_MEMORY;
  search.reason = reason_of(corners);
  search.details = details_of(corners, analysed);
  if (search.reason == VANTREL_REASON_FOUND) search.card = card_of(corners, analysed);
  return VANTREL_OK;
}

vantrel_status find_on_dark_glass(const vantrel_image& scan, const Request& request, vantrel_cards& found) {
  vantrel_reason& reason = found.reasons[index_of(VANTREL_METHOD_DARK_GLASS)];
  reason = VANTREL_REASON_BILEVEL;
  if (scan.format == VANTREL_FORMAT_BILEVEL) return VANTREL_OK;
  DarkGlass search;
  const bool chosen = request.analysis_dpi > 0.0 && scan.dpi > 0.0;
  const vantrel_status status = chosen ? search_dark_glass(scan, reduction_to(scan, request.analysis_dpi), search)
                                       : search_at_both_resolutions(scan, search);
  if (status != VANTREL_OK) return status;
  reason = search.reason;
  found.dark_glass = search.details;
  if (reason == VANTREL_REASON_FOUND) add_card(found, search.card);
  return VANTREL_OK;
}

}  // namespace vantrel::cards
