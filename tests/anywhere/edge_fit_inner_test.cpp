// Where an edge lies beside which a shadow begins.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

#include "anywhere/edge_fit.h"

namespace {

using namespace vantrel::anywhere;

/** Levels on either side of an edge, and how much of the outer one a shadow takes away that fades within `width`. */
struct Side {
  double edge = 0.0;
  double inside = 200.0;
  double outside = 160.0;
  double shadow = 0.0;
  double width = 4.0;

  double at(double x) const {
    if (x < edge) return inside;
    return outside * (1.0 - shadow * std::max(0.0, 1.0 - (x - edge) / width));
  }
  /** The mean of what lies around, the near weighing more: a deviation of about 0.8 pixels. */
  double blurred(double x) const {
    double sum = 0.0;
    for (int i = -15; i <= 15; ++i) sum += (16 - std::abs(i)) * at(x + i / 8.0);
    return sum / 256.0;
  }
};

/** The same profile at every place. */
std::unique_ptr<SideProfiles> profiles_of(const Side& side) {
  auto profiles = std::make_unique<SideProfiles>();
  profiles->places = 20;
  profiles->centre = 9;
  profiles->samples = 19;
  profiles->plane_count = 1;
  for (std::size_t place = 0; place < 20; ++place) {
    profiles->along[place] = 10.0 * static_cast<double>(place);
    profiles->first[place] = 0;
    profiles->last[place] = 18;
    for (std::size_t i = 0; i < 19; ++i)
      profiles->levels[place][kLight][i] = static_cast<float>(side.blurred(static_cast<double>(i) - 9.0));
  }
  return profiles;
}

EdgeFit best_fit(const Side& side) {
  const EdgeFits fits = fit_edge(*profiles_of(side), BorderCourse{}, 1.0);
  const std::array<const EdgeFits*, 1> sides = {&fits};
  return fits.at(best_blur(sides));
}

TEST(EdgeFit, LeavesAnEdgeWithoutAShadowOnTheCourse) { EXPECT_EQ(best_fit({0.3}).offset, 0.0); }

TEST(EdgeFit, FindsTheEdgeBesideAShadow) {
  for (const double edge : {-0.4, 0.0, 0.55}) {
    for (const double inside : {230.0, 160.0, 140.0})
      EXPECT_NEAR(best_fit({edge, inside, 160.0, 0.4}).offset, edge, 0.12) << edge << " beside " << inside;
  }
}

TEST(EdgeFit, TakesALightLineForNoShadow) { EXPECT_EQ(best_fit({0.4, 200.0, 120.0, -0.5}).offset, 0.0); }

TEST(EdgeFit, ToldTheSlantCountsInPixelsOfDistance) {
  const Side across{0.5, 230.0, 160.0, 0.4, 5.0};
  const EdgeFits fits = fit_edge(*profiles_of(across), BorderCourse{}, 0.8);
  const std::array<const EdgeFits*, 1> sides = {&fits};
  EXPECT_NEAR(fits.at(best_blur(sides)).offset, 0.4, 0.12);
}

TEST(EdgeFit, SaysNothingWhereTheFrameCutsTheProfilesOff) {
  const auto profiles = profiles_of({0.4, 230.0, 160.0, 0.4});
  for (int& last : profiles->last) last = 12;
  const EdgeFits fits = fit_edge(*profiles, BorderCourse{}, 1.0);
  for (const EdgeFit& fit : fits) EXPECT_EQ(fit.misfit, 0.0);
  const std::array<const EdgeFits*, 1> sides = {&fits};
  EXPECT_EQ(best_blur(sides), kBlurs);
}

TEST(EdgeFit, ChoosesTheBlurThatSuitsAllSides) {
  EdgeFits one{}, other{};
  for (std::size_t i = 0; i < kBlurs; ++i) one[i].misfit = other[i].misfit = 10.0;
  one[1].misfit = 1.0;
  one[4].misfit = 2.0;
  other[4].misfit = 3.0;
  const std::array<const EdgeFits*, 2> sides = {&one, &other};
  EXPECT_EQ(best_blur(sides), 4U);
}

}  // namespace
