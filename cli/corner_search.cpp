#include "corner_search.h"

#include <cmath>

#include "words.h"

namespace tool {
namespace {

/** What the JSON calls the outcome. */
Json verdict_of(vantrel_reason reason) {
  switch (reason) {
    case VANTREL_REASON_FOUND:
      return "corners-found";
    case VANTREL_REASON_NO_SIDE:
      return "no-side";
    case VANTREL_REASON_TOO_SMALL:
      return "corners-too-small";
    case VANTREL_REASON_DEGENERATE:
      return "lines-degenerate";
    case VANTREL_REASON_BLANK:
      return "no-edges";
    case VANTREL_REASON_SCAN_TOO_LARGE:
      return "side-too-long";
    default:
      return {};
  }
}

/**
 * A border line in pixels of the analysed copy, x a column and y a row counted from the bottom, both at whole numbers
 * in the middle of a pixel. There its distance has single precision.
 */
Json json_of_line(const vantrel_dark_glass& seen, const vantrel_dark_side& side) {
  const double a = side.line.a;
  const double b = 0.0 - side.line.b;  // which keeps a zero positive
  const double c = side.line.c / seen.reduction - a / 2 + b * (seen.height - 0.5);
  return {{"a", a}, {"b", b}, {"c", static_cast<float>(c)}, {"found", side.found != 0}};
}

Json json_of_sides(const vantrel_dark_glass& seen) {
  Json json;
  for (std::size_t side = 0; side < 4; ++side) json[kSideNames[side]] = json_of_line(seen, seen.sides[side]);
  return json;
}

/** A border line across the whole picture, from the middle of the copy's first pixel to that of its last. */
void draw_line(const CornerSearch& search, const vantrel_dark_side& side, Canvas& canvas) {
  const auto& [a, b, c] = side.line;
  const Colour colour = side.found != 0 ? kGreen : kAmber;
  const double first = 0.5 * search.seen.reduction;
  const auto last = [&](int pixels) { return (pixels - 0.5) * search.seen.reduction; };
  const int n = search.scale;
  if (std::abs(b) > std::abs(a)) {
    const double right = last(search.seen.width);
    canvas.line(first * n, (c - a * first) / b * n, right * n, (c - a * right) / b * n, colour);
  } else {
    const double bottom = last(search.seen.height);
    canvas.line((c - b * first) / a * n, first * n, (c - b * bottom) / a * n, bottom * n, colour);
  }
}

}  // namespace

int CornerSearch::sides_found() const {
  int count = 0;
  for (const vantrel_dark_side& side : seen.sides) count += side.found;
  return count;
}

vantrel_quad CornerSearch::corners() const { return scaled(seen.corners, scale); }

void choose_analysis(Analysis analysis, vantrel_image& view, vantrel_find_options& options) {
  if (analysis != Analysis::kAsItIs) return;
  // A copy is reduced to the resolution asked for: none, to that of the scan, or to any that both are said to have.
  if (view.dpi == 0) view.dpi = 1;
  options.analysis_dpi = view.dpi;
}

CornerSearch corner_search_of(const Cards& cards, const Bitmap& scan, int scale) {
  CornerSearch search{vantrel_cards_reason(cards.get(), VANTREL_METHOD_DARK_GLASS), dark_glass_of(cards), scale};
  if (search.seen.reduction == 0) {
    // It did not even look.
    search.seen.reduction = 1;
    search.seen.width = scan.width();
    search.seen.height = scan.height();
  }
  return search;
}

CornerSearch search_corners(const Bitmap& scan, Analysis analysis, int scale) {
  vantrel_image view = scan.view();
  vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
  choose_analysis(analysis, view, options);
  return corner_search_of(find(view, VANTREL_METHOD_DARK_GLASS, options), scan, scale);
}

std::string words_of_frame(const CornerSearch& search) {
  std::string names;
  for (std::size_t side = 0; side < 4; ++side) {
    if (search.seen.sides[side].found == 0) names += (names.empty() ? "" : ", ") + std::string(kSideNames[side]);
  }
  return names.empty() ? "" : " (" + names + ": the frame of the scan)";
}

std::string words_of(const CornerSearch& search) {
  if (!search.has_card()) return words_of(search.reason);
  return std::to_string(search.sides_found()) + " of 4 sides found" + words_of_frame(search) + ", tilt " +
         rounded(search.seen.tilt, "%.1f") + " degrees";
}

Json json_of(const vantrel_quad& corners) {
  const auto place = [](const vantrel_point& point) -> Json {
    return {static_cast<float>(point.x), static_cast<float>(point.y)};
  };
  return {{"top_left", place(corners.top_left)},
          {"top_right", place(corners.top_right)},
          {"bottom_left", place(corners.bottom_left)},
          {"bottom_right", place(corners.bottom_right)}};
}

Json json_of(const CornerSearch& search) {
  const vantrel_dark_glass& seen = search.seen;
  const bool corners = search.has_card() || search.reason == VANTREL_REASON_NO_SIDE;
  Json json = {{"result", corners ? 1 : 0},
               {"verdict", verdict_of(search.reason)},
               {"sides_found", search.sides_found()},
               {"sides", Json()},
               {"corners", Json()},
               {"box", Json()},
               {"tilt", Json()},
               {"scale", seen.reduction * search.scale},
               {"searched", {{"width", seen.width}, {"height", seen.height}}}};
  if (seen.has_lines != 0) json["sides"] = json_of_sides(seen);
  if (seen.has_corners != 0) {
    json["corners"] = json_of(search.corners());
    json["box"] = {{"left", seen.box.left * search.scale},
                   {"top", seen.box.top * search.scale},
                   {"right", seen.box.right * search.scale},
                   {"bottom", seen.box.bottom * search.scale}};
    json["tilt"] = std::round(seen.tilt * 1000) / 1000;
  }
  return json;
}

void draw(const CornerSearch& search, Canvas& canvas) {
  const vantrel_dark_glass& seen = search.seen;
  for (const vantrel_dark_side& side : seen.sides) {
    const auto& [left, top, right, bottom] = side.band;
    const int n = search.scale;
    canvas.shade(left * n, top * n, (right - left) * n, (bottom - top) * n, kBlue);
  }
  if (seen.has_lines != 0) {
    for (const vantrel_dark_side& side : seen.sides) draw_line(search, side, canvas);
  }
  if (seen.has_corners != 0) {
    const vantrel_quad q = search.corners();
    int number = 0;
    for (const vantrel_point& corner : {q.top_left, q.top_right, q.bottom_left, q.bottom_right}) {
      canvas.label(corner.x, corner.y, std::to_string(++number), kRed);
    }
  }
}

}  // namespace tool
