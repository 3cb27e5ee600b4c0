// The finder of cards anywhere with its first allocation failing, then its second, and so on: it says that there was no
// memory, and is never ready with something missing.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "anywhere/analysis.h"
#include "anywhere/finalists.h"
#include "anywhere/find.h"
#include "anywhere/slanted_card.h"
#include "cards/scans.h"
#include "faults/failing_allocators.h"

namespace {

using namespace vantrel::anywhere;
using support::DrawnCard;
using support::SlantedCard;

/** A small card with a frame and writing on a noisy ground: many lines and regions. */
SlantedCard lively_card() {
  SlantedCard card;
  card.width = 200;
  card.height = 160;
  card.centre_x = 100;
  card.centre_y = 80;
  card.half_width = 70;
  card.half_height = 45;
  card.frame_inset = 12;
  card.writing = true;
  card.noise = 8;
  return card;
}

/** Returns how many allocations a step makes; it is true where there was memory. */
int fail_each_of_step(const std::function<bool()>& step) {
  for (int number = 0; number < 1000; ++number) {
    failing::fail_allocation(number);
    const bool done = step();
    const bool failed = failing::has_failed();
    failing::fail_allocation(-1);
    EXPECT_EQ(done, !failed) << number;
    if (!failed) return number;
  }
  ADD_FAILURE() << "no end of allocations";
  return 0;
}

TEST(AnywhereAllocationFailure, LeavesNothingFound) {
  const DrawnCard drawn(lively_card());
  const auto found = std::make_unique<Findings>();
  const int count = fail_each_of_step([&] {
    found->count = 7;
    find_anywhere(drawn.scan(), kMostCards, *found);
    EXPECT_EQ(found->count, found->ready ? 1 : 0);
    return found->ready;
  });
  EXPECT_GE(count, 20);
  EXPECT_GE(found->cards[0].alternative_count, 1);
}

TEST(AnywhereAllocationFailure, EndsEveryStep) {
  const DrawnCard drawn(lively_card());
  auto analysis = std::make_unique<Analysis>();
  const int analysed = fail_each_of_step([&] {
    auto fresh = std::make_unique<Analysis>();
    const bool done = analyse(drawn.scan(), *fresh);
    if (done) analysis = std::move(fresh);
    return done;
  });
  EXPECT_GE(analysed, 18);
  ASSERT_GE(analysis->lines.edge_lines(), 8);
  ASSERT_GE(analysis->candidates.count(), 20U);
  EXPECT_EQ(2, fail_each_of_step([&] {
              Finalists finalists;
              return choose_finalists(drawn.scan(), *analysis, finalists);
            }));
}

TEST(AnywhereAllocationFailure, EndsTheCopyOfEveryLayout) {
  const std::vector<unsigned char> bytes(64 * 64 * 4, 99);
  for (const auto& [layout, expected] : {std::pair{Layout::kGray, 3}, {Layout::kBilevel, 2}, {Layout::kBgra, 5}}) {
    const Scan scan = {{bytes.data(), 64, 64, 256}, layout};
    EXPECT_EQ(expected, fail_each_of_step([&] { return reduce(scan).ready(); }));
  }
}

TEST(AnywhereAllocationFailure, IsReportedOfALivelyScan) {
  const DrawnCard drawn(lively_card());
  pictures::Memory memory(200, 160, VANTREL_FORMAT_RGB);
  memory.draw([&](int x, int y) {
    const unsigned char* pixel = &drawn.bytes()[static_cast<std::size_t>(3 * (200 * y + x))];
    return pictures::Colour{pixel[2], pixel[1], pixel[0], 9};
  });
  const vantrel_image scan = memory.image(0);
  const pictures::Only options(VANTREL_METHOD_ANYWHERE);
  const int count = fail_each_of_step([&] {
    char elsewhere = 0;
    auto* cards = reinterpret_cast<vantrel_cards*>(&elsewhere);
    const vantrel_status status = vantrel_find(&scan, &options, &cards);
    EXPECT_TRUE(status == VANTREL_OK || status == VANTREL_ERROR_MEMORY);
    EXPECT_EQ(cards == nullptr, status != VANTREL_OK);
    if (status == VANTREL_OK) {
      EXPECT_EQ(vantrel_cards_count(cards), 1u);
    }
    vantrel_cards_release(cards);
    return status == VANTREL_OK;
  });
  EXPECT_GE(count, 21);
}

}  // namespace
