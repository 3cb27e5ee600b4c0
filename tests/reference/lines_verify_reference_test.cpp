/** The tests of candidate lines against the plain ones. */
#include <gtest/gtest.h>

#include "lines/exports.h"
#include "reference/components_nodes.h"
#include "reference/lines_verify.h"
#include "support/random.h"
#include "support/scans.h"
#include "support/tally.h"

namespace {

using reference::components::BlockList;
using reference::components::Character;
using support::Picture;
using support::Random;
using Characters = reference::lines::Characters;
namespace tally = support::tally;

/** Components in or near the image: thin, square and long ones, crowded towards one line. */
Characters random_characters(Random& random, int rows, int cols, int at, bool vertical) {
  Characters all;
  const int most = std::array<int, 4>{3, 8, 30, 80}.at(random.bits() % 4);
  const int largest = std::array<int, 4>{4, 12, 40, 150}.at(random.bits() % 4);
  for (int count = random.pick(0, most); count > 0; --count) {
    Character c;
    const int w = random.chance(20) ? random.pick(1, 3) : random.pick(1, largest);
    const int h = random.chance(20) ? random.pick(1, 3) : random.pick(1, largest);
    c.left = vertical && random.chance(70) ? at + random.pick(-w - 8, 8) : random.pick(0, cols - 1);
    c.bottom = !vertical && random.chance(70) ? at + random.pick(-h - 8, 8) : random.pick(0, rows - 1);
    c.right = c.left + w - 1;
    c.top = c.bottom + h - 1;
    all.push_back(c);
  }
  return all;
}

/** About half a dozen wide components across one row: the limits of the cut tests. */
Characters characters_across(Random& random, int cols, int at) {
  Characters all;
  for (int count = random.pick(4, 8); count > 0; --count) {
    Character c;
    c.left = random.pick(0, cols - 1);
    c.right = c.left + random.pick(cols / 8, cols / 3);
    c.bottom = at - random.pick(1, 6);
    c.top = at + random.pick(1, 6);
    all.push_back(c);
  }
  return all;
}

/** Two components that fill half of the band below row `at`, or nearly so. */
Characters half_of_band(Random& random, int cols, int at) {
  Characters all;
  for (int half = 0; half < 2; ++half) {
    Character c;
    c.right = cols / 2 - 1;
    c.top = (at + 1) / 2 - 1;
    if (random.chance(20)) --c.right;
    all.push_back(c);
  }
  return all;
}

TEST(VerifiersReference, HalfCoveredBand) {
  Random random(45);
  tally::reset();
  for (int round = 0; round < 2000; ++round) {
    const int rows = random.pick(2, 39);
    const int cols = random.pick(30, 60) * 2;
    const int at = random.pick(1, rows - 1) | 1;
    const Characters characters = half_of_band(random, cols, at);
    BlockList list;
    for (const Character& c : characters) list.append(c);
    ASSERT_EQ(VerifyCorrectLineV_2(list.line(), at, rows, cols, 1, 0),
              reference::lines::verify_v2(characters, at, rows, cols, 1))
        << "round " << round << ": " << cols << " x " << rows << ", row " << at;
  }
  tally::expect("V2 few: true", 200);
  tally::expect("V2 few: false", 100);
}

struct Size {
  int rows;
  int cols;
};

Size random_size(Random& random) {
  const int most = std::array<int, 4>{6, 60, 200, 500}.at(random.bits() % 4);
  return {random.pick(1, most), random.pick(1, most)};
}

TEST(VerifiersReference, HorizontalByComponents) {
  Random random(41);
  tally::reset();
  for (int round = 0; round < 20000; ++round) {
    const auto [rows, cols] = random_size(random);
    const int at = random.pick(0, rows + (random.chance(10) ? 20 : -1));
    const int side = random.pick(0, 1);
    const auto wb_class = static_cast<short>(random.pick(0, 2));
    const Characters characters =
        random.chance(15) ? characters_across(random, cols, at) : random_characters(random, rows, cols, at, false);
    BlockList list;
    for (const Character& c : characters) list.append(c);
    _BNODE* line = list.line();
    SCOPED_TRACE(testing::Message() << "round " << round << ": " << cols << " x " << rows << ", row " << at << ", side "
                                    << side);
    ASSERT_EQ(VerifyCorrectLineV_2(line, at, rows, cols, side, wb_class),
              reference::lines::verify_v2(characters, at, rows, cols, side));
    ASSERT_EQ(VerifyCorrectLineV_3(line, at, rows, cols, side, wb_class),
              reference::lines::verify_v3(characters, at, rows, cols));
    ASSERT_EQ(VerifyCorrectLineV_3_ORVA(line, at, rows, cols, side, wb_class),
              reference::lines::verify_v3_orva(characters, at, rows, cols));
  }
  for (const char* branch : {"V2 clean: true", "V2 moderate: false", "V2 many: true", "V2 few: true", "V2 few: false",
                             "V3 many cut: false", "V3 wide cut: false", "V3 few cut: true", "V3_ORVA many cut: false",
                             "V3_ORVA wide cut: false", "V3_ORVA few cut: true"}) {
    tally::expect(branch, 40);
  }
}

TEST(VerifiersReference, VerticalByComponents) {
  Random random(42);
  tally::reset();
  for (int round = 0; round < 20000; ++round) {
    const auto [rows, cols] = random_size(random);
    const int at = random.pick(0, cols + (random.chance(10) ? 20 : -1));
    const int side = random.pick(2, 3);
    const Characters characters = random_characters(random, rows, cols, at, true);
    BlockList list;
    for (const Character& c : characters) list.append(c);
    ASSERT_EQ(VerifyCorrectLineH_0(list.line(), at, rows, cols, side, 0),
              reference::lines::verify_h0(characters, at, rows, cols, side))
        << "round " << round << ": " << cols << " x " << rows << ", column " << at << ", side " << side;
  }
  for (const char* branch : {"H0 moderate: false", "H0 large: false", "H0 else: true", "H0 upright piece"}) {
    tally::expect(branch, 100);
  }
}

/** Rows that are empty, sparse, dense or full; padding bytes are of any value and count too. */
Picture random_rows(Random& random, int rows, int cols) {
  Picture edge(cols, rows, 8, 255);
  const int usual = std::array<int, 3>{0, 3, 30}.at(random.bits() % 3);
  for (int row = 0; row < rows; ++row) {
    const int percent = random.chance(60) ? usual : std::array<int, 4>{0, 10, 60, 100}.at(random.bits() % 4);
    for (int byte = 0; byte < edge.stride(); ++byte) {
      edge.at(row, byte) = static_cast<unsigned char>(random.chance(percent) ? 0 : random.pick(1, 255));
    }
  }
  return edge;
}

TEST(VerifiersReference, ChoiceOfTwoByDensity) {
  Random random(43);
  tally::reset();
  for (int round = 0; round < 10000; ++round) {
    const int rows = random.pick(1, 60);
    const int cols = random.pick(1, 40);
    Picture edge = random_rows(random, rows, cols);
    const int first = random.pick(0, rows + (random.chance(10) ? 15 : -1));
    const int second = random.pick(0, rows + (random.chance(10) ? 15 : -1));
    const int side = random.pick(0, 1);
    ASSERT_EQ(VerifyCorrectLineV_0(edge.bytes.data(), nullptr, nullptr, first, second, rows, cols, side),
              reference::lines::verify_v0(edge, first, second, side))
        << "round " << round << ": " << cols << " x " << rows << ", rows " << first << " and " << second << ", side "
        << side;
  }
  for (const char* branch :
       {"V0 near: false", "V0 both high: false", "V0 side 0, first above: true", "V0 side 0, first above: false",
        "V0 side 0, first below: true", "V0 side 0, first below: false", "V0 side 1, first below: true",
        "V0 side 1, first below: false", "V0 side 1, first above: true", "V0 side 1, first above: false"}) {
    tally::expect(branch, 50);
  }
}

TEST(VerifiersReference, Density) {
  Random random(44);
  tally::reset();
  for (int round = 0; round < 10000; ++round) {
    const int rows = random.pick(1, 40);
    const int row_bytes = random.pick(1, 40);
    std::vector<unsigned char> edge(static_cast<std::size_t>(rows * row_bytes), 255);
    const int per_mille = std::array<int, 5>{0, 30, 50, 60, 300}.at(random.bits() % 5);
    for (unsigned char& byte : edge) byte = static_cast<unsigned char>(random.pick(1, 1000) <= per_mille ? 0 : 9);
    const int at = random.pick(0, rows + 3);
    const int side = random.pick(0, 1);
    ASSERT_EQ(VerifyCorrectLineV_1(edge.data(), nullptr, nullptr, at, rows, row_bytes, side),
              reference::lines::verify_v1(edge, at, rows, row_bytes, side))
        << "round " << round << ": " << row_bytes << " x " << rows << ", row " << at << ", side " << side;
  }
  for (const char* branch :
       {"V1 no band: true", "V1 side 0: true", "V1 side 0: false", "V1 side 1: true", "V1 side 1: false"}) {
    tally::expect(branch, 100);
  }
}

}  // namespace
