/**
 * @file lines_search_pair.h
 * @brief The line searches and the plain ones, put to the same points and compared.
 */
#ifndef VANTREL_TESTS_REFERENCE_LINES_SEARCH_PAIR_H
#define VANTREL_TESTS_REFERENCE_LINES_SEARCH_PAIR_H

#include <array>
#include <vector>

#include "lines/exports.h"
#include "reference/components_nodes.h"
#include "reference/lines_hough.h"
#include "support/random.h"

namespace reference::lines {

using support::Random;

/** Points of a few straight lines, broken and with strays, inside the image. */
Points random_points(Random& random, int rows, int cols, bool horizontal);

/** Points for the search for one side: of a few lines, or laid out at the thresholds. */
Points points_of_any_kind(Random& random, int rows, int cols, int side, int dir_class);

/** All that a search for one side looks at. */
struct Sight {
  Picture gray;
  Picture edge;
  Characters characters;
};

/** Levels in blocks around points, and the edge map that holds the points. */
Sight any_sight(Random& random, const Points& points, int rows, int cols);

using LibrarySearch = decltype(&Compute_Hough_Angle2);
using PlainSearch = decltype(&side_line);

/** Expects the same code, lines and moved points from both searches for one side. */
void compare_search(LibrarySearch library, PlainSearch plain, Sight& sight, components::BlockList& list, Points points,
                    int side, int dir_class, int wb_class);

/** The same from the search for two lines. */
void compare_two_lines(Points points, int rows, int cols, int dir_class);

/** A round of either search for one side on points of any kind. */
void compare_on_any_points(LibrarySearch library, PlainSearch plain, Random& random);

}  // namespace reference::lines

#endif
