/** Component extraction against a flood fill and against plain run rules. */
#include <gtest/gtest.h>

#include <algorithm>

#include "components/exports.h"
#include "reference/components_flood.h"
#include "reference/components_nodes.h"
#include "support/random.h"
#include "support/scans.h"
#include "support/tally.h"

namespace {

using reference::components::BlockList;
using reference::components::Character;
using reference::components::sorted_without_labels;
using support::Picture;
using support::Random;
using Characters = std::vector<Character>;
namespace tally = support::tally;

/** Noise of a share of foreground; padding bytes are foreground too, which nothing may look at. */
Picture noise(Random& random, int cols, int rows, int percent) {
  Picture edge(cols, rows, 8, 0);
  for (int row = 0; row < rows; ++row) {
    for (int col = 0; col < cols; ++col) {
      edge.at(row, col) = static_cast<unsigned char>(random.chance(percent) ? 0 : random.pick(1, 255));
    }
  }
  return edge;
}

/** Horizontal and vertical strokes: combs, ladders and U shapes that merge late. */
Picture strokes(Random& random, int cols, int rows) {
  Picture edge(cols, rows, 8, 255);
  for (int stroke = random.pick(1, 25); stroke > 0 && cols > 0 && rows > 0; --stroke) {
    const int row = random.pick(0, rows - 1);
    const int col = random.pick(0, cols - 1);
    const bool lies = random.chance(50);
    const int length = random.pick(1, lies ? cols - col : rows - row);
    for (int i = 0; i < length; ++i) edge.at(lies ? row : row + i, lies ? col + i : col) = 0;
  }
  return edge;
}

Picture random_edge(Random& random) {
  const int cols = random.pick(0, 70);
  const int rows = random.pick(0, 40);
  if (random.chance(40)) return strokes(random, cols, rows);
  return noise(random, cols, rows, std::array<int, 8>{0, 2, 10, 30, 45, 60, 90, 100}.at(random.bits() % 8));
}

void expect_same(const Characters& expected, const Characters& actual) {
  ASSERT_EQ(expected.size(), actual.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const Character& e = expected.at(i);
    const Character& a = actual.at(i);
    ASSERT_TRUE(e == a) << "character " << i << ": " << e.left << " " << e.right << " " << e.bottom << " " << e.top
                        << ", " << e.pixels << " pixels, label " << e.label << " and " << a.left << " " << a.right
                        << " " << a.bottom << " " << a.top << ", " << a.pixels << " pixels, label " << a.label;
  }
}

TEST(ComponentsReference, EdgeMaps) {
  Random random(31);
  tally::reset();
  int empty = 0;
  for (int round = 0; round < 3000; ++round) {
    SCOPED_TRACE(round);
    Picture edge = random_edge(random);
    BlockList list;
    const Characters expected = reference::components::by_runs(edge);
    ASSERT_EQ(Gray2Bin(edge.bytes.data(), *list, edge.rows, edge.cols), !expected.empty());
    const Characters actual = list.characters();
    expect_same(expected, actual);
    expect_same(sorted_without_labels(reference::components::flood(edge)), sorted_without_labels(actual));
    if (HasFatalFailure()) return;
    ASSERT_EQ(list->TotalCharacters(), actual.size());
    ASSERT_EQ(list->TotalGroups(), actual.empty() ? 0u : 1u);
    ASSERT_EQ(list->TotalLines(), actual.empty() ? 0u : 1u);
    ASSERT_EQ(list->used, actual.empty() ? 0u : actual.size() + 2);
    empty += actual.empty() ? 1 : 0;
  }
  EXPECT_GE(empty, 100);
  tally::expect("runs: the first owner survives", 1000);
  tally::expect("runs: the later owner survives", 1000);
}

/** The same pixels with one bit each; the bits behind the last column are noise. */
support::Image bilevel_of(const Picture& edge, Random& random) {
  support::Image image(edge.cols, edge.rows, 1);
  support::randomise(image, random);
  for (int row = 0; row < edge.rows; ++row) {
    for (int col = 0; col < edge.cols; ++col) {
      unsigned char& byte = image.at(row, col / 8);
      const int bit = 0x80 >> col % 8;
      byte = static_cast<unsigned char>(edge.at(row, col) == 0 ? byte & ~bit : byte | bit);
    }
  }
  return image;
}

TEST(ComponentsReference, BilevelImages) {
  Random random(32);
  for (int round = 0; round < 1000; ++round) {
    SCOPED_TRACE(round);
    const Picture edge = random_edge(random);
    support::Image image = bilevel_of(edge, random);
    BlockList list;
    const Characters expected = reference::components::by_runs(edge);
    ASSERT_EQ(Extract_Eight_Connected_Components(*image.ptr(), *list), expected.empty() ? 0 : 1);
    expect_same(expected, list.characters());
    if (HasFatalFailure()) return;
  }
}

/** Every run of an edge map handed over singly, with the two rows of runs kept here. */
Characters by_single_runs(const Picture& edge, BlockList& list) {
  std::vector<_RUN> previous(static_cast<std::size_t>(edge.cols + 2));
  std::vector<_RUN> current = previous;
  unsigned short previous_count = 0;
  _BNODE* line = list.line();
  _BNODE* last = nullptr;
  int label = 1;
  for (int row = 0; row < edge.rows; ++row) {
    unsigned short position = 0;
    unsigned short count = 0;
    for (int col = 0; col < edge.cols; ++col) {
      if (edge.at(row, col) != 0) continue;
      const int start = col;
      while (col < edge.cols && edge.at(row, col) == 0) ++col;
      const int code =
          ECC_SetRunComponent(static_cast<unsigned short>(start), static_cast<unsigned short>(col),
                              static_cast<unsigned short>(row), previous.data(), current.data(), previous_count,
                              position, count, *list, line, last, static_cast<unsigned short>(edge.cols), label);
      EXPECT_EQ(code, 1);
    }
    std::swap(previous, current);
    previous_count = count;
  }
  return list.characters();
}

TEST(ComponentsReference, SingleRuns) {
  Random random(33);
  for (int round = 0; round < 1000; ++round) {
    SCOPED_TRACE(round);
    const Picture edge = random_edge(random);
    BlockList list;
    expect_same(reference::components::by_runs(edge), by_single_runs(edge, list));
    if (HasFatalFailure()) return;
  }
}

/** More components than the pool holds: a grid of dots, here and there joined so that nodes come back in between. */
TEST(ComponentsReference, ExhaustedPool) {
  Random random(34);
  tally::reset();
  for (int round = 0; round < 12; ++round) {
    SCOPED_TRACE(round);
    Picture edge = noise(random, 260, 230, random.pick(0, 3));
    for (int row = 0; row < edge.rows; row += 2) {
      for (int col = 0; col < edge.cols; col += 2) {
        if (!random.chance(4)) edge.at(row, col) = 0;
      }
    }
    BlockList list(static_cast<unsigned long>(random.pick(1, 10000)), static_cast<unsigned long>(random.pick(1, 500)));
    const Characters expected = reference::components::by_runs(edge);
    ASSERT_TRUE(Gray2Bin(edge.bytes.data(), *list, edge.rows, edge.cols));
    expect_same(expected, list.characters());
    if (HasFatalFailure()) return;
  }
  tally::expect("runs: pool exhausted", 1000);
}

}  // namespace
