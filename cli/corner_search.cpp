#include "corner_search.h"

#include <cmath>
#include <cstdio>
#include <new>

#include "image/convert.h"

namespace tool {
namespace {

constexpr std::array kSideNames = {"top", "bottom", "left", "right"};
constexpr std::array kCornerNames = {"top_left", "top_right", "bottom_left", "bottom_right"};
constexpr std::array kVerdictNames = {"corners-found", "corners-too-small", "lines-degenerate", "no-edges",
                                      "side-too-long", "out-of-memory",     "not-gray"};

bool has_lines(vantrel_verdict verdict) {
  return verdict == VANTREL_CORNERS_FOUND || verdict == VANTREL_CORNERS_TOO_SMALL ||
         verdict == VANTREL_LINES_DEGENERATE;
}

bool has_corners(vantrel_verdict verdict) {
  return verdict == VANTREL_CORNERS_FOUND || verdict == VANTREL_CORNERS_TOO_SMALL;
}

/** How far the middle between the upper and the lower edge is turned, in degrees; positive clockwise. */
double tilt_of(const Corners& c) {
  constexpr double kDegrees = 57.29577951308232;
  const double top = std::atan2(c[3] - c[1], c[2] - c[0]);
  const double bottom = std::atan2(c[7] - c[5], c[6] - c[4]);
  return (top + bottom) / 2 * kDegrees;
}

std::string one_decimal(double value) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f", value);
  return text.data();
}

/** " (top, left: the frame of the scan)", or nothing with all sides found. */
std::string defaulted_sides(const CornerSearch& search) {
  std::string names;
  for (std::size_t side = 0; side < 4; ++side) {
    if (search.found.side[side].found == 0) names += (names.empty() ? "" : ", ") + std::string(kSideNames[side]);
  }
  return names.empty() ? "" : " (" + names + ": the frame of the scan)";
}

std::string reason_without_card(vantrel_verdict verdict) {
  switch (verdict) {
    case VANTREL_CORNERS_FOUND:
      return "no side of a card was found";
    case VANTREL_CORNERS_TOO_SMALL:
      return "the corners found span less than half of the scan";
    case VANTREL_LINES_DEGENERATE:
      return "the border lines found do not meet in four corners";
    case VANTREL_NO_EDGES:
      return "no edge near the border of the scan: it is blank";
    case VANTREL_SIDE_TOO_LONG:
      return "a side is longer than 32767 pixels";
    default:
      return "the corners could not be searched";
  }
}

/** A border line across the whole picture, from edge to edge. */
void draw_line(const CornerSearch& search, const vantrel_border& line, Canvas& canvas) {
  // Pixel centres lie at whole numbers of the line's own coordinates, whose rows count from the bottom.
  const auto column = [&](double x) { return (x + 0.5) * search.scale; };
  const auto row = [&](double y) { return (search.height - (y + 0.5)) * search.scale; };
  const Colour colour = line.found != 0 ? kGreen : kAmber;
  if (std::abs(line.b) > std::abs(line.a)) {
    const double right = search.width - 1;
    canvas.line(column(0), row(line.c / line.b), column(right), row((line.c - line.a * right) / line.b), colour);
  } else {
    const double top = search.height - 1;
    canvas.line(column(line.c / line.a), row(0), column((line.c - line.b * top) / line.a), row(top), colour);
  }
}

void shade_bands(const CornerSearch& search, Canvas& canvas) {
  const int rows = search.height / 8 * search.scale;
  const int columns = search.width / 5 * search.scale;
  const int upper = 7 * search.height / 8 * search.scale;
  const int right = 4 * search.width / 5 * search.scale;
  canvas.shade(0, 0, canvas.width(), canvas.height() - upper, kBlue);
  canvas.shade(0, canvas.height() - rows, canvas.width(), rows, kBlue);
  canvas.shade(0, 0, columns, canvas.height(), kBlue);
  canvas.shade(right, 0, canvas.width() - right, canvas.height(), kBlue);
}

}  // namespace

int CornerSearch::sides_found() const {
  int count = 0;
  for (const vantrel_border& side : found.side) count += side.found;
  return count;
}

bool CornerSearch::has_card() const { return found.verdict == VANTREL_CORNERS_FOUND && sides_found() > 0; }

Corners CornerSearch::corners() const {
  Corners scaled{};
  for (std::size_t i = 0; i < 8; ++i) scaled[i] = found.corners[i] * static_cast<float>(scale);
  return scaled;
}

CornerSearch search_corners(Bitmap& image, int scale) {
  Bitmap gray;
  if (image.depth() == 24 && !Color2Gray(image.record(), gray.record())) throw std::bad_alloc();
  CornerSearch search{{}, image.width(), image.height(), scale};
  vantrel_find_corners(gray.empty() ? image.record() : gray.record(), &search.found);
  if (search.found.verdict == VANTREL_OUT_OF_MEMORY) throw std::bad_alloc();
  return search;
}

std::string words_of(const CornerSearch& search) {
  if (!search.has_card()) return reason_without_card(search.found.verdict);
  return std::to_string(search.sides_found()) + " of 4 sides found" + defaulted_sides(search) + ", tilt " +
         one_decimal(tilt_of(search.corners())) + " degrees";
}

Json json_of_corners(const Corners& corners) {
  Json json;
  for (std::size_t i = 0; i < 4; ++i) json[kCornerNames[i]] = {corners[2 * i], corners[2 * i + 1]};
  return json;
}

Json json_of(const CornerSearch& search) {
  const vantrel_corner_search& found = search.found;
  Json json = {{"result", search.result()},
               {"verdict", kVerdictNames[static_cast<std::size_t>(found.verdict)]},
               {"sides_found", search.sides_found()},
               {"sides", Json()},
               {"corners", Json()},
               {"box", Json()},
               {"tilt", Json()},
               {"scale", search.scale},
               {"searched", {{"width", search.width}, {"height", search.height}}}};
  if (has_lines(found.verdict)) {
    for (std::size_t side = 0; side < 4; ++side) {
      const vantrel_border& line = found.side[side];
      json["sides"][kSideNames[side]] = {{"a", line.a}, {"b", line.b}, {"c", line.c}, {"found", line.found != 0}};
    }
  }
  if (has_corners(found.verdict)) {
    const Corners corners = search.corners();
    json["corners"] = json_of_corners(corners);
    const auto scaled = [&](float value) { return static_cast<int>(value) * search.scale; };
    json["box"] = {{"left", scaled(found.box[0])},
                   {"top", scaled(found.box[1])},
                   {"right", scaled(found.box[6])},
                   {"bottom", scaled(found.box[7])}};
    json["tilt"] = std::round(tilt_of(corners) * 1000) / 1000;
  }
  return json;
}

void draw(const CornerSearch& search, Canvas& canvas) {
  shade_bands(search, canvas);
  if (has_lines(search.found.verdict)) {
    for (const vantrel_border& line : search.found.side) draw_line(search, line, canvas);
  }
  if (has_corners(search.found.verdict)) {
    const Corners corners = search.corners();
    for (std::size_t i = 0; i < 4; ++i) canvas.label(corners[2 * i], corners[2 * i + 1], std::to_string(i + 1), kRed);
  }
}

}  // namespace tool
