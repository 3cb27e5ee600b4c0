// A rough quadrilateral moved onto the edges near it.
#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

#include "anywhere/drawn_copy.h"
#include "anywhere/slanted_card.h"
#include "anywhere/snap.h"

namespace {

using namespace vantrel::anywhere;
using support::SlantedCard;
using support::worst_corner;

constexpr double kReachOfSnapping = 4.0;

Edges edges_of(const SlantedCard& card) {
  const support::DrawnCard drawn(card);
  const Copy copy = reduce(drawn.scan());
  const auto gradients = find_gradients(copy);
  return find_edges(copy, gradients.all());
}

Quad moved(const Quad& quad, Point by) { return {{quad[0] + by, quad[1] + by, quad[2] + by, quad[3] + by}}; }

TEST(Snap, MovesAQuadrilateralThreePixelsOntoTheCard) {
  for (const double slope : {0.0, 0.1, -0.37}) {
    SlantedCard card;
    card.slope = slope;
    card.half_width = 180;
    const Edges edges = edges_of(card);
    for (const Point by : {Point{3, 0}, Point{0, -3}, Point{2, 2}, Point{0, 0}})
      EXPECT_LT(worst_corner(snap(edges, moved(card.quad(), by), kReachOfSnapping), card.quad()), 0.1) << slope;
  }
}

TEST(Snap, WidensANarrowQuadrilateral) {
  const SlantedCard card;
  SlantedCard narrow = card;
  narrow.half_width -= 3;
  narrow.half_height -= 3;
  EXPECT_LT(worst_corner(snap(edges_of(card), narrow.quad(), kReachOfSnapping), card.quad()), 0.1);
}

TEST(Snap, LeavesAQuadrilateralWithoutEdges) {
  const SlantedCard card;
  const Quad quad = moved(card.quad(), {0.5, 0.25});
  EXPECT_LT(worst_corner(snap(support::edges_at({}, 100), quad, kReachOfSnapping), quad), 1e-9);
  const Quad within{{Point{200, 180}, {400, 180}, {400, 300}, {200, 300}}};
  EXPECT_LT(worst_corner(snap(edges_of(card), within, kReachOfSnapping), within), 1e-9);
}

TEST(Snap, LeavesASideThatLiesFartherThanItsReach) {
  SlantedCard card;
  card.slope = 0;
  Quad quad = card.quad();
  quad.corners[0].y += 6;
  quad.corners[1].y += 6;
  quad.corners[2].y += 2;
  quad.corners[3].y += 2;
  const Quad snapped = snap(edges_of(card), quad, kReachOfSnapping);
  EXPECT_NEAR(snapped[0].y, card.quad()[0].y + 6, 0.01);
  EXPECT_NEAR(snapped[1].y, card.quad()[1].y + 6, 0.01);
  EXPECT_NEAR(snapped[2].y, card.quad()[2].y, 0.1);
  EXPECT_NEAR(snapped[3].y, card.quad()[3].y, 0.1);
}

/** Edges along the first pixels of a side that runs from (20, 50) to (120, 50) and lies 2 pixels above them. */
Quad snapped_to(int count) {
  std::vector<Edge> places;
  for (int i = 0; i < count; ++i) places.push_back({35.5F + static_cast<float>(i), 52.0F, 500, 128});
  const Quad quad{{Point{20, 50}, {120, 50}, {120, 90}, {20, 90}}};
  return snap(support::edges_at(places, 100), quad, kReachOfSnapping);
}

TEST(Snap, AsksForAThirdOfASideOrSo) {
  // 0.3 of the 84 pixels between the rims.
  EXPECT_NEAR(snapped_to(26)[0].y, 52.0, 1e-6);
  EXPECT_NEAR(snapped_to(25)[0].y, 50.0, 1e-6);
}

TEST(Snap, HeedsEdgesOfTheSidesDirectionAlone) {
  for (const auto& [direction, y] : {std::pair{128, 52.0}, {146, 52.0}, {147, 50.0}, {109, 50.0}, {0, 50.0}}) {
    std::vector<Edge> places;
    for (int i = 0; i < 60; ++i)
      places.push_back({35.5F + static_cast<float>(i), 52.0F, 500, static_cast<std::uint8_t>(direction)});
    const Quad quad{{Point{20, 50}, {120, 50}, {120, 90}, {20, 90}}};
    EXPECT_NEAR(snap(support::edges_at(places, 100), quad, kReachOfSnapping)[0].y, y, 1e-6) << direction;
  }
}

TEST(Snap, AnswersDegenerateQuadrilaterals) {
  const Edges edges = edges_of(SlantedCard{});
  for (const Quad& quad :
       {Quad{}, Quad{{Point{5, 5}, {5, 5}, {5, 5}, {5, 5}}}, Quad{{Point{0, 100}, {100, 100}, {200, 100}, {300, 100}}},
        Quad{{Point{1e6, 1e6}, {2e6, 1e6}, {2e6, 2e6}, {1e6, 2e6}}}}) {
    const Quad snapped = snap(edges, quad, kReachOfSnapping);
    for (const Point& corner : snapped.corners) EXPECT_TRUE(std::isfinite(corner.x) && std::isfinite(corner.y));
  }
}

}  // namespace
