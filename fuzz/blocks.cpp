// The block list through sequences of operations, against a plain model of it.
#include <gtest/gtest.h>

#include "fuzz/check.h"
#include "reference/components_list_pair.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  support::Random random(data, size);
  const int initial = random.pick(1, 40);
  const int operations = random.pick(1, 200);
  const int step = random.pick(1, 20);
  reference::components::ListPair pair(initial, step, random);
  for (int i = 0; i < operations; ++i) pair.any_operation();
  pair.compare();
  FUZZ_CHECK(!testing::Test::HasFailure());
  return 0;
}
