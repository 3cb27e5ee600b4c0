// The innermost loops in every form.
#include <gtest/gtest.h>

#include <cstdint>
#include <tuple>
#include <vector>

#include "scale/kernels.h"
#include "support/forms.h"
#include "support/random.h"

namespace {

using vantrel::scale::Kernels;
using Bytes = std::vector<unsigned char>;

/** Random bytes, half of them at one of the ends of their range. */
Bytes levels(support::Random& random, std::size_t count) {
  Bytes bytes(count);
  for (auto& byte : bytes) {
    byte = static_cast<unsigned char>(random.pick(0, 1) != 0 ? 255 * random.pick(0, 1) : random.pick(0, 255));
  }
  return bytes;
}

TEST(ScaleKernels, AreTheSameInEveryForm) {
  support::Random random(11);
  constexpr std::size_t kRoom = 160;
  for (int count = 0; count <= 150; ++count) {
    const Bytes rows[] = {levels(random, kRoom), levels(random, kRoom), levels(random, kRoom), levels(random, kRoom)};
    const auto made_by = [&](const Kernels& kernels) {
      Bytes two(kRoom, 7), four(kRoom, 7), bytes(kRoom, 7), of_values(kRoom, 7), clamped(kRoom, 7);
      std::vector<std::int16_t> values[4];
      kernels.means(rows[0].data(), rows[1].data(), count, two.data());
      kernels.means_of_four(rows[0].data(), rows[1].data(), 3, count, four.data());
      for (std::size_t i = 0; i < 4; ++i) {
        values[i].assign(kRoom, 7);
        kernels.cubic_values({rows[i].data(), rows[i].data() + 1, rows[(i + 1) % 4].data(), rows[i].data() + 3}, count,
                             values[i].data());
      }
      kernels.cubic_of_bytes({rows[0].data(), rows[1].data(), rows[2].data(), rows[3].data()}, count, bytes.data());
      kernels.cubic_of_values({values[0].data(), values[1].data(), values[2].data(), values[3].data()}, count,
                              of_values.data());
      kernels.clamp(values[0].data(), count, clamped.data());
      return std::tuple(two, four, values[0], values[3], bytes, of_values, clamped);
    };
    const auto wanted = made_by(vantrel::scale::plain::kKernels);
    support::for_each_form([&](const auto& form) { ASSERT_EQ(made_by(form.scale), wanted) << count; });
  }
}

TEST(ScaleKernels, TakePixelsInTurnAndWriteNothingBehindThemInEveryForm) {
  support::Random random(12);
  for (int pairs = 0; pairs <= 50; ++pairs) {
    for (const std::size_t channels : {1u, 3u}) {
      const auto count = static_cast<std::size_t>(pairs) * channels;
      // Nothing may be read behind them either, which the address sanitizer sees.
      const Bytes even = levels(random, count), odd = levels(random, count);
      Bytes wanted(2 * count + 40, 7);
      for (std::size_t i = 0; i < count; ++i) {
        const std::size_t pixel = i / channels, at = 2 * pixel * channels + i % channels;
        wanted[at] = even[i];
        wanted[at + channels] = odd[i];
      }
      support::for_each_form([&](const auto& form) {
        Bytes found(wanted.size(), 7);
        (channels == 1 ? form.scale.interleave_1 : form.scale.interleave_3)(even.data(), odd.data(), pairs,
                                                                            found.data());
        ASSERT_EQ(found, wanted) << pairs;
      });
    }
  }
}

}  // namespace
