// One card that nearly fills its dark glass.
#include <gtest/gtest.h>

#include "cards/scans.h"

namespace {

using pictures::card_on_glass;
using pictures::Cards;
using pictures::coordinates;
using pictures::Memory;
using pictures::Only;
using pictures::Picture;
using pictures::Rows;

using Numbers = std::array<double, 8>;

vantrel_dark_glass dark_glass_of(const Cards& cards) {
  vantrel_dark_glass details = {};
  details.size = sizeof details;
  EXPECT_EQ(vantrel_cards_dark_glass(cards.get(), &details), VANTREL_OK);
  return details;
}

void expect_line(const vantrel_line& line, double a, double b, double c) {
  EXPECT_EQ(line.a, a);
  EXPECT_EQ(line.b, b);
  EXPECT_EQ(line.c, c);
}

TEST(DarkGlass, FindsTheCornersInEveryFormatAndOrderOfRows) {
  for (const Rows rows : {Rows::kFromTop, Rows::kFromBottom}) {
    for (const vantrel_format format : pictures::kByteFormats) {
      for (const int gap : {0, 7}) {
        const Memory memory = card_on_glass(format, rows, gap);
        const Only options(VANTREL_METHOD_DARK_GLASS);
        const Cards cards(memory.image(), &options);
        ASSERT_EQ(cards.count(), 1u);
        const vantrel_card card = cards[0];
        EXPECT_EQ(coordinates(card.corners), (Numbers{29.5, 19.5, 370.5, 19.5, 370.5, 280.5, 29.5, 280.5}));
        EXPECT_EQ(card.tilt, 0.0);
        for (const vantrel_side& side : card.sides) {
          EXPECT_EQ(side.found, 1);
          EXPECT_NEAR(side.confidence, 0.997, 0.001);
        }
        EXPECT_NEAR(card.confidence, 0.9966, 0.0001);
      }
    }
  }
}

TEST(DarkGlass, TellsLinesAndBandsInTheCoordinatesOfTheScan) {
  const Memory memory = card_on_glass();
  const Only options(VANTREL_METHOD_DARK_GLASS);
  const Cards cards(memory.image(), &options);
  const vantrel_dark_glass details = dark_glass_of(cards);
  EXPECT_EQ(details.reduction, 1);
  EXPECT_EQ(details.width, 400);
  EXPECT_EQ(details.height, 300);
  EXPECT_EQ(details.has_lines, 1);
  EXPECT_EQ(details.has_corners, 1);
  expect_line(details.sides[VANTREL_SIDE_TOP].line, 0, -1, -19.5);
  expect_line(details.sides[VANTREL_SIDE_BOTTOM].line, 0, -1, -280.5);
  expect_line(details.sides[VANTREL_SIDE_LEFT].line, 1, 0, 29.5);
  expect_line(details.sides[VANTREL_SIDE_RIGHT].line, 1, 0, 370.5);
  EXPECT_EQ(pictures::bounds(details.sides[VANTREL_SIDE_TOP].band), (std::array{0, 0, 400, 38}));
  EXPECT_EQ(pictures::bounds(details.sides[VANTREL_SIDE_BOTTOM].band), (std::array{0, 263, 400, 300}));
  EXPECT_EQ(pictures::bounds(details.sides[VANTREL_SIDE_LEFT].band), (std::array{0, 0, 80, 300}));
  EXPECT_EQ(pictures::bounds(details.sides[VANTREL_SIDE_RIGHT].band), (std::array{320, 0, 400, 300}));
  EXPECT_NEAR(details.sides[VANTREL_SIDE_TOP].votes, 340, 1e-6);
  EXPECT_NEAR(details.sides[VANTREL_SIDE_LEFT].votes, 260, 1e-6);
  EXPECT_EQ(coordinates(details.corners), (Numbers{29.5, 19.5, 370.5, 19.5, 370.5, 280.5, 29.5, 280.5}));
  EXPECT_EQ(pictures::bounds(details.box), (std::array{29, 19, 370, 280}));
}

TEST(DarkGlass, LaysASideThatIsNotFoundOnTheFrame) {
  const Memory memory = Memory(400, 300, VANTREL_FORMAT_GRAY).draw([](int x, int y) {
    return pictures::Colour{0, x < 370 && y >= 20 && y < 280 ? 200 : 30, 0};
  });
  const Only options(VANTREL_METHOD_DARK_GLASS);
  const Cards cards(memory.image(), &options);
  ASSERT_EQ(cards.count(), 1u);
  const vantrel_card card = cards[0];
  EXPECT_EQ(coordinates(card.corners), (Numbers{0.5, 19.5, 370.5, 19.5, 370.5, 280.5, 0.5, 280.5}));
  EXPECT_EQ(card.sides[VANTREL_SIDE_LEFT].found, 0);
  EXPECT_EQ(card.sides[VANTREL_SIDE_LEFT].confidence, 0.0);
  EXPECT_EQ(card.sides[VANTREL_SIDE_RIGHT].found, 1);
  EXPECT_NEAR(card.confidence, 0.7477, 0.0001);
  const vantrel_dark_side left = dark_glass_of(cards).sides[VANTREL_SIDE_LEFT];
  EXPECT_EQ(left.found, 0);
  EXPECT_EQ(left.votes, 0.0);
  expect_line(left.line, 1, 0, 0.5);
}

TEST(DarkGlass, IsSureOfASideWhoseLineRunsOnBeyondTheCard) {
  // Beside the card, from its upper border on, lies something as light.
  const Memory memory = Memory(400, 300, VANTREL_FORMAT_GRAY).draw([](int x, int y) {
    const bool card = x >= 30 && x < 370 && y >= 20 && y < 280;
    return pictures::Colour{0, card || (x >= 370 && x < 395 && y >= 20 && y < 120) ? 200 : 30, 0};
  });
  const Only options(VANTREL_METHOD_DARK_GLASS);
  const Cards cards(memory.image(), &options);
  ASSERT_EQ(cards.count(), 1u);
  EXPECT_EQ(coordinates(cards[0].corners), (Numbers{29.5, 19.5, 369.5, 19.5, 369.5, 280.5, 29.5, 280.5}));
  EXPECT_NEAR(dark_glass_of(cards).sides[VANTREL_SIDE_TOP].votes, 365, 1e-6);
  EXPECT_EQ(cards[0].sides[VANTREL_SIDE_TOP].confidence, 1.0);
}

/** The reduction, and the width of what was analysed. */
std::array<int, 2> analysed(const Memory& memory, double dpi, double analysis_dpi = 0) {
  Only options(VANTREL_METHOD_DARK_GLASS);
  options.analysis_dpi = analysis_dpi;
  const Cards cards(memory.image(dpi), &options);
  const vantrel_dark_glass details = dark_glass_of(cards);
  return {details.reduction, details.width};
}

/** A scan at 300 dots per inch of a card of 85 x 55 mm that nearly fills its glass. */
Memory scan_of_tilted_card(double degrees) {
  const support::Corners corners = support::turned_card(620, 420, 1004, 650, degrees);
  return pictures::copy_of(support::scan_of(corners, 1240, 840), VANTREL_FORMAT_GRAY);
}

/** The sides found, and the reduction at which. */
std::array<int, 2> sides_found(const Memory& memory, double dpi, double analysis_dpi = 0) {
  Only options(VANTREL_METHOD_DARK_GLASS);
  options.analysis_dpi = analysis_dpi;
  const Cards cards(memory.image(dpi), &options);
  int found = 0;
  for (const vantrel_dark_side& side : dark_glass_of(cards).sides) found += side.found;
  return {found, dark_glass_of(cards).reduction};
}

TEST(DarkGlass, IsSearchedOnTheScanItselfWhereThatShowsAllSides) {
  EXPECT_EQ(sides_found(scan_of_tilted_card(0), 300), (std::array{4, 1}));
  EXPECT_EQ(sides_found(scan_of_tilted_card(3), 300), (std::array{4, 1}));
}

TEST(DarkGlass, IsSearchedOnAReducedCopyWhereThatShowsMoreSides) {
  // Half-way between two whole degrees a border's votes are spread over so many cells that the sides are missed.
  const Memory memory = scan_of_tilted_card(2.5);
  EXPECT_EQ(sides_found(memory, 300, 300), (std::array{0, 1}));
  EXPECT_EQ(sides_found(memory, 300, 150), (std::array{4, 2}));
  EXPECT_EQ(sides_found(memory, 300), (std::array{4, 2}));
  EXPECT_EQ(sides_found(memory, 0), (std::array{4, 2}));    // judged by its size
  EXPECT_EQ(sides_found(memory, 200), (std::array{0, 1}));  // too coarse to be reduced
}

TEST(DarkGlass, IsSearchedOnAReducedCopyOfAScanTooLargeItself) {
  Memory memory(32768, 50, VANTREL_FORMAT_GRAY);
  memory.draw([](int, int) { return pictures::Colour{0, 30, 0}; });
  EXPECT_EQ(analysed(memory, 0), (std::array{41, 799}));
  const Only options(VANTREL_METHOD_DARK_GLASS);
  EXPECT_EQ(Cards(memory.image(), &options).reason(VANTREL_METHOD_DARK_GLASS), VANTREL_REASON_BLANK);
}

TEST(DarkGlass, IsToldAsSeenOnTheScanItselfWhereNeitherShowsACard) {
  EXPECT_EQ(analysed(Memory(1100, 800, VANTREL_FORMAT_GRAY), 300), (std::array{1, 1100}));
}

TEST(DarkGlass, IsSearchedAtTheResolutionThatIsAskedFor) {
  const Memory memory(1100, 8, VANTREL_FORMAT_GRAY);
  EXPECT_EQ(analysed(memory, 600, 600), (std::array{1, 1100}));
  EXPECT_EQ(analysed(memory, 600, 150), (std::array{4, 275}));
  EXPECT_EQ(analysed(memory, 600, 170), (std::array{4, 275}));
  EXPECT_EQ(analysed(memory, 600, 180), (std::array{3, 366}));
  EXPECT_EQ(analysed(memory, 600, 2000), (std::array{1, 1100}));
  EXPECT_EQ(analysed(memory, 0, 150), (std::array{1, 1100}));
}

TEST(DarkGlass, IsToldInTheCoordinatesOfTheScanAfterAReduction) {
  for (const vantrel_format format : pictures::kByteFormats) {
    const Memory memory = card_on_glass(format, Rows::kFromBottom, 3, 2);
    Only options(VANTREL_METHOD_DARK_GLASS);
    options.analysis_dpi = 150;
    const Cards cards(memory.image(300), &options);
    ASSERT_EQ(cards.count(), 1u);
    EXPECT_EQ(coordinates(cards[0].corners), (Numbers{59, 39, 741, 39, 741, 561, 59, 561}));
    EXPECT_NEAR(cards[0].confidence, 0.9966, 0.0001);
    const vantrel_dark_glass details = dark_glass_of(cards);
    EXPECT_EQ(details.reduction, 2);
    expect_line(details.sides[VANTREL_SIDE_BOTTOM].line, 0, -1, -561);
    expect_line(details.sides[VANTREL_SIDE_LEFT].line, 1, 0, 59);
    EXPECT_EQ(pictures::bounds(details.sides[VANTREL_SIDE_BOTTOM].band), (std::array{0, 526, 800, 600}));
    EXPECT_EQ(pictures::bounds(details.box), (std::array{58, 38, 740, 560}));
  }
}

TEST(DarkGlass, TellsTheTiltClockwise) {
  for (const double degrees : {-4.0, 2.0, 5.0}) {
    const support::Corners corners = support::turned_card(400, 300, 660, 480, degrees);
    const Memory memory = pictures::copy_of(support::scan_of(corners, 800, 600), VANTREL_FORMAT_GRAY);
    const Only options(VANTREL_METHOD_DARK_GLASS);
    const Cards cards(memory.image(), &options);
    ASSERT_EQ(cards.count(), 1u);
    const vantrel_card card = cards[0];
    EXPECT_NEAR(card.tilt, degrees, 0.3);
    EXPECT_NEAR(card.corners.top_left.x, corners[0], 2);
    EXPECT_NEAR(card.corners.top_left.y, corners[1], 2);
    EXPECT_NEAR(card.corners.bottom_right.x, corners[6], 2);
    EXPECT_NEAR(card.corners.bottom_right.y, corners[7], 2);
    // the lines of the sides run through the corners
    const vantrel_dark_glass details = dark_glass_of(cards);
    EXPECT_EQ(details.tilt, card.tilt);
    for (const int side : {VANTREL_SIDE_TOP, VANTREL_SIDE_LEFT}) {
      const vantrel_line& line = details.sides[side].line;
      EXPECT_NEAR(line.a * card.corners.top_left.x + line.b * card.corners.top_left.y, line.c, 0.2);
    }
  }
}

TEST(DarkGlass, CutsTheCardUprightWithoutTheGlass) {
  const support::Corners corners = support::turned_card(400, 300, 660, 480, 3);
  const support::Image drawn = support::scan_of(corners, 800, 600);
  for (const vantrel_format format : pictures::kByteFormats) {
    const Memory memory = pictures::copy_of(drawn, format, Rows::kFromBottom, 1);
    const vantrel_image scan = memory.image();
    const Only options(VANTREL_METHOD_DARK_GLASS);
    const Cards cards(scan, &options);
    ASSERT_EQ(cards.count(), 1u);
    const vantrel_quad quad = cards[0].corners;
    Picture picture;
    ASSERT_EQ(vantrel_cut(&scan, &quad, VANTREL_MARGIN_TIGHT, &picture), VANTREL_OK);
    EXPECT_NEAR(picture.width, 660, 2);
    EXPECT_NEAR(picture.height, 480, 2);
    const int channels = vantrel_format_bits(format) / 8;
    const auto level = [&](int x, int y) { return static_cast<int>(picture.row(y)[x * channels]); };
    EXPECT_EQ(level(100, 100), support::kQuarters[0]);
    EXPECT_EQ(level(500, 100), support::kQuarters[1]);
    EXPECT_EQ(level(100, 400), support::kQuarters[2]);
    EXPECT_EQ(level(500, 400), support::kQuarters[3]);
    for (int x = 2; x < picture.width - 2; ++x) {
      EXPECT_GT(level(x, 1), 190);
      EXPECT_GT(level(x, picture.height - 2), 190);
    }
  }
}

TEST(DarkGlass, SeesNothingButTheFrameAroundASpeck) {
  Memory memory(400, 300, VANTREL_FORMAT_GRAY);
  memory.draw([](int x, int y) { return pictures::Colour{0, x == 200 && y == 290 ? 255 : 0, 0}; });
  const Only options(VANTREL_METHOD_DARK_GLASS);
  const Cards cards(memory.image(), &options);
  EXPECT_EQ(cards.count(), 0u);
  EXPECT_EQ(cards.reason(VANTREL_METHOD_DARK_GLASS), VANTREL_REASON_NO_SIDE);
  const vantrel_dark_glass details = dark_glass_of(cards);
  EXPECT_EQ(details.has_lines, 1);
  EXPECT_EQ(details.has_corners, 1);
  EXPECT_EQ(coordinates(details.corners), (Numbers{0.5, 1.5, 398.5, 1.5, 398.5, 298.5, 0.5, 298.5}));
  expect_line(details.sides[VANTREL_SIDE_TOP].line, 0, -1, -1.5);
  expect_line(details.sides[VANTREL_SIDE_BOTTOM].line, 0, -1, -298.5);
}

TEST(DarkGlass, HasNothingToTellOfABlankScan) {
  Memory memory(400, 300, VANTREL_FORMAT_GRAY);
  const Only options(VANTREL_METHOD_DARK_GLASS);
  const Cards cards(memory.image(), &options);
  const vantrel_dark_glass details = dark_glass_of(cards);
  EXPECT_EQ(details.reduction, 1);
  EXPECT_EQ(details.width, 400);
  EXPECT_EQ(details.has_lines, 0);
  EXPECT_EQ(details.has_corners, 0);
  expect_line(details.sides[VANTREL_SIDE_TOP].line, 0, 0, 0);
  // But where it looked.
  EXPECT_EQ(pictures::bounds(details.sides[VANTREL_SIDE_TOP].band), (std::array{0, 0, 400, 38}));
  EXPECT_EQ(pictures::bounds(details.sides[VANTREL_SIDE_RIGHT].band), (std::array{320, 0, 400, 300}));
}

TEST(DarkGlass, GivesTheSameForAPartOfAScanAsForAScan) {
  // Widths that are no multiple of 4, where the rows of a copy would be padded.
  const Memory memory = card_on_glass(VANTREL_FORMAT_GRAY, Rows::kFromTop, 0, 2);
  for (const int width : {783, 784, 785, 786}) {
    vantrel_image part = memory.image();
    part.width = width;
    Memory copy(width, 600, VANTREL_FORMAT_GRAY, Rows::kFromBottom, 0);
    copy.draw([&](int x, int y) {
      return pictures::Colour{0, static_cast<const unsigned char*>(part.data)[y * part.stride + x], 0};
    });
    const Only options(VANTREL_METHOD_DARK_GLASS);
    const Cards seen(part, &options);
    const Cards expected(copy.image(), &options);
    ASSERT_EQ(seen.count(), 1u);
    EXPECT_EQ(coordinates(seen[0].corners), coordinates(expected[0].corners));
    EXPECT_EQ(seen[0].confidence, expected[0].confidence);
  }
}

}  // namespace
