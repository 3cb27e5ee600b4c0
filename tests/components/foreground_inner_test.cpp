#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "components/extract.h"
#include "components/kernels.h"
#include "geometry/span.h"
#include "support/forms.h"
#include "support/random.h"

namespace {

using vantrel::components::for_each_run_of_bytes;
using vantrel::geometry::Span;
using Bytes = std::vector<unsigned char>;
using Words = std::vector<std::uint64_t>;

TEST(Foreground, IsABitForEveryByteThatIsZeroWhateverTheOthersAre) {
  for (int value = 0; value < 256; ++value) {
    for (std::size_t at = 0; at < 64; ++at) {
      Bytes bytes(64, static_cast<unsigned char>(value == 0 ? 255 : value));
      bytes[at] = 0;
      support::for_each_form([&](const auto& form) {
        std::uint64_t found = 0;
        form.components.find_foreground(bytes.data(), 64, &found);
        ASSERT_EQ(found, std::uint64_t{1} << at) << value;
      });
    }
  }
}

TEST(Foreground, EndsWithTheBytes) {
  support::Random random(4);
  for (int count = 0; count < 300; ++count) {
    Bytes bytes(static_cast<std::size_t>(count));
    Words wanted(6, 0);
    wanted[static_cast<std::size_t>(count + 63) / 64] = 77;  // stays
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      bytes[i] = static_cast<unsigned char>(random.pick(0, 3) * 85);
      if (bytes[i] == 0) wanted[i / 64] |= std::uint64_t{1} << i % 64;
    }
    support::for_each_form([&](const auto& form) {
      Words found(6, 0);
      found[static_cast<std::size_t>(count + 63) / 64] = 77;
      form.components.find_foreground(bytes.data(), count, found.data());
      ASSERT_EQ(found, wanted) << count;
    });
  }
}

/** The runs of a row of pixels, of which # is foreground. */
std::vector<Span> runs_of(const std::string& row) {
  Bytes bytes(row.size());
  for (std::size_t i = 0; i < row.size(); ++i) bytes[i] = row[i] == '#' ? 0 : 255;
  std::vector<Span> runs;
  for_each_run_of_bytes(bytes.data(), static_cast<int>(bytes.size()), [&](Span run) { runs.push_back(run); });
  return runs;
}

TEST(RunsOfBytes, AreFoundInOrder) {
  EXPECT_EQ(runs_of(""), std::vector<Span>{});
  EXPECT_EQ(runs_of("...."), std::vector<Span>{});
  EXPECT_EQ(runs_of("#"), (std::vector<Span>{{0, 1}}));
  EXPECT_EQ(runs_of("##..#.###"), (std::vector<Span>{{0, 2}, {4, 5}, {6, 9}}));
}

TEST(RunsOfBytes, MayCrossAnyColumn) {
  for (int first = 55; first < 140; ++first) {
    for (int end = first + 1; end < 140; ++end) {
      std::string row(140, '.');
      row.replace(static_cast<std::size_t>(first), static_cast<std::size_t>(end - first),
                  static_cast<std::size_t>(end - first), '#');
      ASSERT_EQ(runs_of(row), (std::vector<Span>{{first, end}}));
    }
  }
}

}  // namespace
