/** The three line searches against the plain ones, over points laid out by hand and over drawn cards. */
#include <gtest/gtest.h>

#include "components/exports.h"
#include "reference/lines_search_pair.h"
#include "reference/lines_sobel.h"
#include "support/scans.h"
#include "support/tally.h"

namespace {

using reference::components::BlockList;
using reference::lines::compare_search;
using reference::lines::Points;
using reference::lines::Sight;
using support::Picture;
using support::Random;
namespace tally = support::tally;

TEST(LineSearchReference, TwoLines) {
  Random random(51);
  tally::reset();
  for (int round = 0; round < 1500; ++round) {
    SCOPED_TRACE(round);
    const int rows = random.pick(1, 70);
    const int cols = random.pick(1, 70);
    const int dir_class = random.chance(5) ? random.pick(1, 4) : 2 * random.pick(0, 1);
    reference::lines::compare_two_lines(reference::lines::random_points(random, rows, cols, dir_class == 0), rows, cols,
                                        dir_class);
    if (HasFatalFailure()) return;
  }
  for (const char* branch : {"two lines: too few horizontal", "two lines: too few vertical", "two lines: horizontal",
                             "two lines: vertical", "two lines: weaker first vertical"}) {
    tally::expect(branch, 30);
  }
}

void compare_on_laid_out_points(reference::lines::LibrarySearch library, reference::lines::PlainSearch plain,
                                unsigned seed) {
  Random random(seed);
  for (int round = 0; round < 3500; ++round) {
    SCOPED_TRACE(round);
    reference::lines::compare_on_any_points(library, plain, random);
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(LineSearchReference, SideLineOverPoints) {
  tally::reset();
  compare_on_laid_out_points(Compute_Hough_Angle2, reference::lines::side_line, 52);
  for (const char* side : {"0", "1"}) {
    for (const char* branch : {"search gives 0", "search gives 1", "search gives 2", "one clear line",
                               "runner-up taken", "strongest of two taken", "border flag", "brightness passes",
                               "brightness fails", "darkness passes", "darkness fails"}) {
      tally::expect(std::string(branch) + " on side " + side, 8);
    }
  }
  for (const char* side : {"2", "3"}) {
    for (const char* branch : {"search gives 0", "search gives 2", "darkness passes", "darkness fails"}) {
      tally::expect(std::string(branch) + " on side " + side, 8);
    }
  }
}

TEST(LineSearchReference, LevelLineOverPoints) {
  tally::reset();
  compare_on_laid_out_points(Compute_Hough_Angle3, reference::lines::level_side_line, 53);
  for (const char* side : {"0", "1"}) {
    for (const char* branch : {"level search gives 0", "level search gives 1", "level search gives 2",
                               "level: runner-up taken", "level: strongest of two taken"}) {
      tally::expect(std::string(branch) + " on side " + side, 5);
    }
  }
  for (const char* branch :
       {"level: runner-up, first within 9", "level: runner-up at less than half",
        "level: runner-up, first hugs the edge", "level search gives 2 on side 2", "level search gives 2 on side 3"}) {
    tally::expect(branch, 8);
  }
}

/** Both searches over the whole edge map of drawn cards, for every side. */
TEST(LineSearchReference, OverDrawnCards) {
  Random random(54);
  tally::reset();
  for (int round = 0; round < 80; ++round) {
    SCOPED_TRACE(round);
    support::Image image = support::draw(support::random_scan(random, 60, 140), 8, random);
    Sight sight{Picture(image), {}, {}};
    reference::lines::EdgeMaps maps = reference::lines::blank_maps(sight.gray);
    reference::lines::sobel(sight.gray, MYRECT{}, maps);
    sight.edge = maps.edge;
    sight.characters = reference::components::by_runs(sight.edge);
    BlockList list;
    Gray2Bin(sight.edge.bytes.data(), *list, sight.gray.rows, sight.gray.cols);
    const int wb_class = reference::lines::brightness(sight.gray, 0, sight.gray.rows, 0, sight.gray.cols);
    for (int side = 0; side < 4; ++side) {
      Points points;
      for (int row = 0; row < sight.gray.rows; ++row) {
        for (int col = 0; col < sight.gray.cols; ++col) {
          const bool near = side == 0   ? row >= 3 * sight.gray.rows / 4
                            : side == 1 ? row < sight.gray.rows / 4
                            : side == 2 ? col < sight.gray.cols / 4
                                        : col >= 3 * sight.gray.cols / 4;
          if (!near || maps.dir.at(row, col) != (side < 2 ? 0 : 2)) continue;
          points.push_back({static_cast<float>(row), static_cast<float>(col)});
        }
      }
      compare_search(Compute_Hough_Angle2, reference::lines::side_line, sight, list, points, side, side < 2 ? 0 : 2,
                     wb_class);
      compare_search(Compute_Hough_Angle3, reference::lines::level_side_line, sight, list, points, side,
                     side < 2 ? 0 : 2, wb_class);
      if (HasFatalFailure()) return;
    }
  }
  for (const char* side : {"0", "1", "2", "3"}) {
    tally::expect(std::string("search gives 2 on side ") + side, 5);
    tally::expect(std::string("level search gives 2 on side ") + side, 5);
  }
}

}  // namespace
