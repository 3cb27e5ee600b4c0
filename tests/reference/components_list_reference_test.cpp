/** The block list against a plain model of it, over long random sequences of operations. */
#include <gtest/gtest.h>

#include "reference/components_list_pair.h"
#include "support/random.h"
#include "support/tally.h"

namespace {

using reference::components::kNobody;
using reference::components::ListPair;
using support::Random;
namespace tally = support::tally;

TEST(BlockListReference, RandomOperations) {
  tally::reset();
  for (unsigned round = 0; round < 150; ++round) {
    SCOPED_TRACE(round);
    Random sizes(round);
    const int initial = sizes.pick(1, 40);
    ListPair pair(initial, sizes.pick(1, 20), Random(round));
    for (int operation = 0; operation < 200; ++operation) {
      SCOPED_TRACE(operation);
      pair.any_operation();
      pair.compare();
      if (HasFatalFailure()) return;
    }
  }
  tally::expect("list: grown", 100);
  tally::expect("list: moved without a type", 20);
  tally::expect("list: moved into others", 500);
  tally::expect("list: moved into nothing", 100);
  tally::expect("list: empty line returned", 100);
}

TEST(BlockListReference, ExhaustedPool) {
  tally::reset();
  ListPair pair(500, 300, Random(1));
  while (pair.model().lines == 0) pair.any_operation();
  const auto first_line = [&pair] {
    for (const int group : pair.model().groups()) {
      if (!pair.model().node(group).children.empty()) return pair.model().node(group).children.front();
    }
    return kNobody;
  };
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 10005; ++i) pair.request_character(first_line(), kNobody);
    pair.compare();
    if (HasFatalFailure()) return;
    for (int operation = 0; operation < 15; ++operation) pair.any_operation();
    pair.compare();
    if (HasFatalFailure() || first_line() == kNobody) return;
  }
  tally::expect("list: exhausted", 10);
}

}  // namespace
