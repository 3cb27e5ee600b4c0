// Gradients of a copy, and the edges where they are greatest.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "anywhere/drawn_copy.h"
#include "anywhere/edges.h"
#include "anywhere/slanted_card.h"

namespace {

using namespace vantrel::anywhere;
using support::copy_with;
using vantrel::image::WorkArray;

Edges edges_of(const Copy& copy) {
  const WorkArray<Gradient> gradients = find_gradients(copy);
  EXPECT_TRUE(gradients.ready());
  return find_edges(copy, gradients.all());
}

TEST(Gradients, OfARampAreItsSlope) {
  // Two levels a pixel to the right, one up.
  const Copy copy = copy_with(5, 6, [](int row, int col) { return kLevel * (2 * col - row + 20); });
  const WorkArray<Gradient> gradients = find_gradients(copy);
  ASSERT_TRUE(gradients.ready());
  for (int row = 1; row < 4; ++row) {
    for (int col = 1; col < 5; ++col) {
      const Gradient& g = gradients[copy.index(row, col)];
      EXPECT_EQ(g.x, 2 * kGradient);
      EXPECT_EQ(g.y, -kGradient);
      EXPECT_EQ(g.magnitude, 286);  // the root of 256 * 256 + 128 * 128, cut off
    }
  }
}

TEST(Gradients, WeighTheMiddleMost) {
  const Copy copy = copy_with(3, 3, [](int row, int col) { return row == 0 && col == 2 ? 80 : 0; });
  const WorkArray<Gradient> corner = find_gradients(copy);
  EXPECT_EQ(corner[4].x, 60);  // 3 * 80 / 4
  EXPECT_EQ(corner[4].y, -60);
  const WorkArray<Gradient> side =
      find_gradients(copy_with(3, 3, [](int row, int col) { return row == 1 && col == 2 ? 80 : 0; }));
  EXPECT_EQ(side[4].x, 200);  // 10 * 80 / 4
  EXPECT_EQ(side[4].y, 0);
}

TEST(Gradients, AreNoneOnTheRim) {
  const Copy copy = copy_with(4, 5, [](int row, int col) { return 100 * col + 70 * row; });
  const WorkArray<Gradient> gradients = find_gradients(copy);
  for (int row = 0; row < 4; ++row)
    for (int col = 0; col < 5; ++col)
      EXPECT_EQ(gradients[copy.index(row, col)].magnitude == 0, row == 0 || row == 3 || col == 0 || col == 4);
}

TEST(Gradients, AreThoseOfThePlaneThatChangesMost) {
  Copy copy = copy_with(3, 3, [](int, int col) { return kLevel * col; });
  copy.plane_count = 3;
  for (const auto plane : {std::size_t{1}, std::size_t{2}}) {
    copy.planes[plane] = WorkArray<std::int16_t>(9);
    for (int i = 0; i < 9; ++i)
      copy.planes[plane][static_cast<std::size_t>(i)] =
          static_cast<std::int16_t>((plane == 1 ? -5 : 3) * kLevel * (i / 3));
  }
  const WorkArray<Gradient> gradients = find_gradients(copy);
  EXPECT_EQ(gradients[4].x, 0);
  EXPECT_EQ(gradients[4].y, -5 * kGradient);
  EXPECT_EQ(gradients[4].magnitude, 5 * kGradient);
}

std::vector<Gradient> magnitudes(int first_count, int first, int second_count, int second) {
  std::vector<Gradient> gradients(static_cast<std::size_t>(first_count),
                                  Gradient{0, 0, static_cast<std::uint16_t>(first)});
  gradients.resize(gradients.size() + static_cast<std::size_t>(second_count),
                   Gradient{0, 0, static_cast<std::uint16_t>(second)});
  return gradients;
}

TEST(EdgeThreshold, LiesAboveWhatMostOfThePictureShows) {
  EXPECT_EQ(edge_threshold(magnitudes(100, 100, 0, 0)), 260);
  EXPECT_EQ(edge_threshold(magnitudes(40, 40, 60, 1000)), 104);
}

TEST(EdgeThreshold, HasBounds) {
  EXPECT_EQ(edge_threshold(magnitudes(100, 0, 0, 0)), 53);  // 0.42 levels a pixel
  EXPECT_EQ(edge_threshold(magnitudes(40, 0, 60, 1000)), 53);
  EXPECT_EQ(edge_threshold(magnitudes(39, 0, 61, 1000)), 640);  // 5 levels a pixel
  EXPECT_EQ(edge_threshold(magnitudes(100, 65535, 0, 0)), 640);
}

TEST(Edges, OfAnUprightStepLieOnIt) {
  // The column in the middle is half and half.
  const Copy copy = copy_with(12, 20, [](int, int col) { return col < 9 ? 0 : col == 9 ? 800 : 1600; });
  const Edges edges = edges_of(copy);
  ASSERT_TRUE(edges.ready());
  ASSERT_EQ(edges.count, 8u);  // rows 2 to 9
  for (std::size_t i = 0; i < 8; ++i) {
    EXPECT_EQ(edges.places[i].x, 9.5F);
    EXPECT_EQ(edges.places[i].y, static_cast<float>(i) + 2.5F);
    EXPECT_EQ(edges.places[i].direction, 0);
    EXPECT_EQ(edges.places[i].magnitude, 6400);  // 50 levels a pixel
  }
}

TEST(Edges, LieOnSlantedBordersToATenthOfAPixel) {
  for (const double slope : {0.0, 0.1, -0.37}) {
    support::SlantedCard card;
    card.slope = slope;
    card.half_width = 180;
    const support::DrawnCard drawn(card);
    const Edges edges = edges_of(reduce(drawn.scan()));
    ASSERT_TRUE(edges.ready());
    std::array<int, 4> on_side{};
    for (const Edge& edge : edges.all()) {
      const Point p = {edge.x, edge.y};
      for (std::size_t i = 0; i < 4; ++i) {
        const Point a = card.quad()[i], way = card.quad()[i + 1] - a;
        const double along = dot(p - a, way) / length(way), out = cross(way, p - a) / length(way);
        if (along < 8 || along > length(way) - 8 || std::abs(out) > 4) continue;
        ++on_side[i];
        EXPECT_NEAR(out, 0.0, 0.1) << "slope " << slope << ", side " << i << ", at " << along;
      }
    }
    // At least one a pixel, along the axis that the side runs along.
    for (std::size_t i = 0; i < 4; ++i) {
      const Point way = card.quad()[i + 1] - card.quad()[i];
      EXPECT_GE(on_side[i], std::max(std::abs(way.x), std::abs(way.y)) * (1 - 16 / length(way)) - 2);
    }
  }
}

TEST(Edges, AreSortedByDirectionFromTheTopDown) {
  support::SlantedCard card;
  card.noise = 30;
  const support::DrawnCard drawn(card);
  const Edges edges = edges_of(reduce(drawn.scan()));
  ASSERT_TRUE(edges.ready());
  EXPECT_EQ(edges.starts[0], 0u);
  EXPECT_EQ(edges.starts[256], edges.count);
  EXPECT_GT(edges.count, 1000u);
  for (std::size_t bin = 0; bin < 256; ++bin) {
    for (std::uint32_t i = edges.starts[bin]; i < edges.starts[bin + 1]; ++i) {
      ASSERT_EQ(edges.places[i].direction, bin);
      if (i > edges.starts[bin]) {
        ASSERT_LE(edges.places[i - 1].y, edges.places[i].y + 1.0F);  // each is up to half a pixel off its row
      }
    }
  }
}

/** Gradients of which three of four pixels have a greatest one: level, upright and level again, above a faint one. */
Edges edges_of_checks(int rows, int cols) {
  Copy copy;
  copy.rows = rows;
  copy.cols = cols;
  std::vector<Gradient> gradients;
  for (int row = 0; row < rows; ++row) {
    for (int col = 0; col < cols; ++col) {
      const bool even_row = row % 2 == 0, even_col = col % 2 == 0;
      const std::int16_t size = even_row && even_col ? 4000 : even_row || even_col ? 3000 : 1000;
      gradients.push_back(
          {even_col ? size : std::int16_t{0}, even_col ? std::int16_t{0} : size, static_cast<std::uint16_t>(size)});
    }
  }
  return find_edges(copy, gradients);
}

TEST(Edges, AreKeptOfHalfThePixelsAndNoMore) {
  EXPECT_EQ(edges_of_checks(12, 12).count, 48U);   // of the 8 x 8 inner ones
  EXPECT_EQ(edges_of_checks(40, 44).count, 881U);  // of 1080 among 1760 pixels
}

TEST(Edges, AreAtLeastAsStrongAsTheThreshold) {
  support::SlantedCard card;
  card.noise = 30;
  const support::DrawnCard drawn(card);
  const Edges edges = edges_of(reduce(drawn.scan()));
  EXPECT_GT(edges.threshold, 53);
  for (const Edge& edge : edges.all()) ASSERT_GE(edge.magnitude, edges.threshold);
}

std::vector<int> visited(const Edges& edges, int direction, int turn) {
  std::vector<int> directions;
  edges.for_each_near(direction, turn, [&](const Edge& edge) { directions.push_back(edge.direction); });
  return directions;
}

TEST(Edges, AreVisitedNearADirectionAlsoRoundTheHalfTurn) {
  std::vector<Edge> places;
  for (const int direction : {0, 1, 3, 128, 250, 254, 255, 255})
    places.push_back({1.0F, 1.0F, 100, static_cast<std::uint8_t>(direction)});
  const Edges edges = support::edges_at(places, 50);
  EXPECT_EQ(visited(edges, 0, 2), (std::vector<int>{254, 255, 255, 0, 1}));
  EXPECT_EQ(visited(edges, 255, 4), (std::vector<int>{254, 255, 255, 0, 1, 3}));
  EXPECT_EQ(visited(edges, 128, 0), (std::vector<int>{128}));
  EXPECT_EQ(visited(edges, 120, 7), (std::vector<int>{}));
  EXPECT_EQ(visited(edges, 120, 8), (std::vector<int>{128}));
}

TEST(Edges, AreVisitedBetweenTwoHeights) {
  support::SlantedCard card;
  card.noise = 60;
  const support::DrawnCard drawn(card);
  const Edges edges = edges_of(reduce(drawn.scan()));
  ASSERT_GT(edges.count, 5000U);
  for (const auto& [top, bottom] :
       {std::pair{100.3, 180.9}, {-5.0, 0.5}, {470.0, 900.0}, {239.5, 239.5}, {300.0, 200.0}}) {
    std::vector<const Edge*> wanted, found;
    const auto collect = [&, from = top, to = bottom](std::vector<const Edge*>& into) {
      return [&into, from, to](const Edge& edge) {
        if (edge.y >= from && edge.y <= to) into.push_back(&edge);
      };
    };
    edges.for_each_near(70, 18, collect(wanted));
    edges.for_each_near(70, 18, top, bottom, collect(found));
    EXPECT_EQ(found, wanted) << top;
  }
}

TEST(Edges, AreNoneWhereNothingChanges) {
  for (const int side : {1, 2, 3, 4, 5, 30}) {
    const Edges edges = edges_of(copy_with(side, side, [](int, int) { return 500; }));
    EXPECT_TRUE(edges.ready());
    EXPECT_EQ(edges.count, 0u);
  }
}

}  // namespace
