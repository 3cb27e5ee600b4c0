// Drawn scans with exact truth: on them a finder of cards is fitted and judged.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace vantrel::drawing {

struct Point {
  double x, y;  // pixel i reaches from i to i + 1; y runs down
};

struct TrueCard {
  // Clockwise from the top left as the card lies. They may lie beyond the scan, where the frame cuts the card; of round
  // corners, it is where the straight sides would meet.
  std::array<Point, 4> corners;
  std::array<bool, 4> visible;  // top, right, bottom, left: whether the side is on the scan, with some contrast
};

struct DrawnScan {
  int width = 0, height = 0;
  double dpi = 0;
  std::vector<unsigned char> bgr;  // rows from the top, no gaps
  std::vector<TrueCard> cards;
  std::string set, ground, card, place;  // what was drawn, in words
  std::vector<std::string> effects;
};

// The kinds of scans; README.md describes them.
std::vector<std::string> sets();

// The same bytes for the same set and seed; many threads may draw at once. Throws std::invalid_argument for a set that
// there is not.
DrawnScan draw_scan(const std::string& set, std::uint64_t seed);

// The same scene as it is: without what optics, sensor and file do to it. Its borders can be measured exactly.
DrawnScan draw_crisp_scan(const std::string& set, std::uint64_t seed);

}  // namespace vantrel::drawing
