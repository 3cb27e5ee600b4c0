// What a side's profiles say of its border, also where they show none.
#include <gtest/gtest.h>

#include <array>
#include <memory>

#include "anywhere/border_signal.h"

namespace {

using namespace vantrel::anywhere;

/** Thirty places, ten pixels apart, whose profiles of 25 samples are seen from sample `first` on and have one level. */
std::unique_ptr<SideProfiles> flat_profiles(float level, int first = 0) {
  auto profiles = std::make_unique<SideProfiles>();
  profiles->places = 30;
  profiles->centre = 12;
  profiles->samples = 25;
  for (std::size_t place = 0; place < 30; ++place) {
    profiles->along[place] = 10.0 * static_cast<double>(place);
    profiles->first[place] = first;
    profiles->last[place] = 24;
    for (auto& plane : profiles->levels[place]) plane.fill(level);
  }
  return profiles;
}

TEST(BorderSignal, OfAFlatSideIsItsLightness) {
  const auto profiles = flat_profiles(90.0F);
  auto signal = std::make_unique<BorderSignal>();
  mix_planes(*profiles, {2.0F, 1.0F, 1.0F}, {12.0, 12.0, 0.0}, *signal);
  EXPECT_EQ(signal->lightness, 1.0);
  for (std::size_t i = 0; i < 25; ++i) EXPECT_EQ(signal->values[29][i], 45.0F);
}

TEST(BorderCourse, StaysOnTheLineWhereNothingIsSeen) {
  const auto profiles = flat_profiles(90.0F);
  auto signal = std::make_unique<BorderSignal>();
  mix_planes(*profiles, {1.0F, 1.0F, 1.0F}, {12.0, 12.0, 0.0}, *signal);
  // From sample 13 at the first place to sample 16 at the last, 290 pixels on: one and four outward.
  const BorderCourse course = locate_border(*profiles, *signal, {13.0, 16.0, 0.0});
  EXPECT_EQ(course.at(0.0), 1.0);
  EXPECT_NEAR(course.at(290.0), 4.0, 1e-12);
  EXPECT_EQ(course.bow, 0.0);
  EXPECT_EQ(share_on_course(*profiles, *signal, course), 0.0);
  EXPECT_EQ(contrast_at(*profiles, course), 0.0);
}

TEST(BorderContrast, OfACourseThatRunsBesideTheScanIsNone) {
  const auto profiles = flat_profiles(0.0F, 10);
  for (std::size_t place = 0; place < 30; ++place)
    for (std::size_t i = 17; i < 25; ++i) profiles->levels[place][kLight][i] = 60.0F;
  BorderCourse course;
  course.line.base = 4.5;  // between samples 16 and 17
  EXPECT_EQ(contrast_at(*profiles, course), 60.0);
  course.line.base = -6.0;  // sample 6, of which the scan shows nothing
  EXPECT_EQ(contrast_at(*profiles, course), 0.0);
}

TEST(EvidenceAlong, ALineThatLeavesTheProfilesIsNone) {
  auto evidence = std::make_unique<Evidence>();
  evidence->places = 30;
  evidence->samples = 25;
  for (auto& values : evidence->values) values.fill(kFullEvidence);
  EXPECT_EQ(evidence_along(*evidence, {0.0, 23.0, 0.0}), 1.0);
  EXPECT_EQ(evidence_along(*evidence, {-0.5, 12.0, 0.0}), 0.0);
  EXPECT_EQ(evidence_along(*evidence, {12.0, -0.5, 0.0}), 0.0);
  EXPECT_EQ(evidence_along(*evidence, {23.5, 12.0, 0.0}), 0.0);
  EXPECT_EQ(evidence_along(*evidence, {12.0, 23.5, 0.0}), 0.0);
}

}  // namespace
