// Every exported function, on every route through it, with its first allocation failing, then its second, and so on:
// the answer is one that the function is described with, what is handed back may be released, the inputs are as they
// were, and the same call is right afterwards. Prints how many points there were.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "faults/failing_allocators.h"
#include "faults/routes.h"

namespace {

using faults::Route;
using faults::Scans;
using support::Answer;
using support::Image;

void check_inputs(const Route& route, const std::vector<std::vector<unsigned char>>& before) {
  for (std::size_t i = 0; i < route.inputs.size(); ++i) EXPECT_EQ(route.inputs[i]->block(), before[i]);
}

int fail_each(const Route& route) {
  SCOPED_TRACE(route.name);
  const Answer right = route.run();
  std::vector<std::vector<unsigned char>> before;
  for (const Image* input : route.inputs) before.push_back(input->block());
  for (int number = 0; number < 1000; ++number) {
    failing::fail_allocation(number);
    const Answer answer = route.run();
    const bool failed = failing::has_failed();
    failing::fail_allocation(-1);
    check_inputs(route, before);
    if (!failed) {
      EXPECT_EQ(answer, right);
      return number;
    }
    const auto& codes = route.when_failed;
    EXPECT_NE(std::find(codes.begin(), codes.end(), answer.code), codes.end()) << number << ": " << answer.code;
    if (answer.code == -1) {
      EXPECT_TRUE(answer.bytes.empty()) << number;
    }
    EXPECT_EQ(route.run(), right) << "after " << number;
  }
  ADD_FAILURE() << "no end of allocations";
  return 0;
}

/** The functions that the library exports: the names in its map that have arguments, and those of plain C. */
std::set<std::string> exported() {
  std::ifstream map(VANTREL_MAP);
  EXPECT_TRUE(map) << VANTREL_MAP;
  const std::set<std::string> data = {"szPath", "SQUARE_TABLE"};
  const std::regex entry(R"(^ *"?([A-Za-z_][\w:]*)(\(.*\)[ const]*")?;)");
  std::set<std::string> names;
  std::smatch match;
  for (std::string line; std::getline(map, line);) {
    if (std::regex_search(line, match, entry) && !data.contains(match[1])) names.insert(match[1]);
  }
  return names;
}

TEST(AllocationFailure, IsBorneOnEveryRoute) {
  Scans scans;
  std::vector<Route> routes;
  faults::add_operations(routes, scans);
  faults::add_pieces(routes, scans);
  faults::add_cards(routes);
  faults::add_those_without_memory(routes, scans);
  int points = 0;
  std::set<std::string> functions;
  for (const Route& route : routes) {
    const int count = fail_each(route);
    // What has no code for missing memory takes none.
    EXPECT_EQ(count == 0, route.when_failed.empty()) << route.name;
    std::printf("%4d  %s\n", count, route.name.c_str());
    points += count;
    functions.insert(route.function());
  }
  std::printf("%4d  points on %zu routes through %zu functions\n", points, routes.size(), functions.size());
  EXPECT_EQ(functions, exported());
}

}  // namespace
