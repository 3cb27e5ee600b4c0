// Component extraction from edge maps and bilevel images, against a flood fill and plain run rules.
#include "components/exports.h"
#include "fuzz/check.h"
#include "reference/components_flood.h"
#include "reference/components_nodes.h"
#include "support/picture.h"
#include "support/random.h"

namespace {

using reference::components::BlockList;
using reference::components::Character;
using reference::components::sorted_without_labels;
using support::Picture;
using support::Random;
using Characters = std::vector<Character>;

/** Pixels as the bits of the input say, so that each can be flipped alone, or strokes. */
Picture any_edge(Random& random) {
  const int cols = random.pick(1, 70);
  const int rows = random.pick(1, 40);
  Picture edge(cols, rows, 8, 255);
  if (random.one_in(2)) {
    for (int stroke = random.pick(1, 25); stroke > 0; --stroke) {
      const int row = random.pick(0, rows - 1);
      const int col = random.pick(0, cols - 1);
      const bool lies = random.one_in(2);
      const int length = random.pick(1, lies ? cols - col : rows - row);
      for (int i = 0; i < length; ++i) edge.at(lies ? row : row + i, lies ? col + i : col) = 0;
    }
    return edge;
  }
  std::uint32_t bits = 0;
  for (int i = 0; i < rows * cols; ++i, bits >>= 1) {
    if (i % 32 == 0) bits = random.bits();
    if (bits & 1) edge.at(i / cols, i % cols) = 0;
  }
  return edge;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  Random random(data, size);
  Picture edge = any_edge(random);
  const Characters expected = reference::components::by_runs(edge);
  BlockList list;
  FUZZ_CHECK(Gray2Bin(edge.bytes.data(), *list, edge.rows, edge.cols) == !expected.empty());
  const Characters actual = list.characters();
  FUZZ_CHECK(actual == expected);
  FUZZ_CHECK(sorted_without_labels(reference::components::flood(edge)) == sorted_without_labels(actual));

  support::Image bilevel(edge.cols, edge.rows, 1, 0xFF);
  for (int i = 0; i < edge.rows * edge.cols; ++i) {
    unsigned char& byte = bilevel.at(i / edge.cols, i % edge.cols / 8);
    if (edge.at(i / edge.cols, i % edge.cols) == 0) {
      byte = static_cast<unsigned char>(byte & ~(0x80 >> i % edge.cols % 8));
    }
  }
  BlockList from_bits;
  FUZZ_CHECK(Extract_Eight_Connected_Components(*bilevel.ptr(), *from_bits) == (expected.empty() ? 0 : 1));
  FUZZ_CHECK(from_bits.characters() == expected);
  return 0;
}
