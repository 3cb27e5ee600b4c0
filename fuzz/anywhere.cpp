// The finder for cards anywhere on a scan, alone and on small scans, against what it promises.
#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

#include "anywhere/find.h"
#include "fuzz/check.h"
#include "support/random.h"

namespace {

using support::Random;
using namespace vantrel::anywhere;
using Bytes = std::vector<unsigned char>;

int bytes_of(Layout layout) {
  return layout == Layout::kGray ? 1 : layout == Layout::kBgr || layout == Layout::kRgb ? 3 : 4;
}

/** A ground with a few convex shapes on it, in gray, and a grain. */
Bytes draw(Random& random, int rows, int cols) {
  Bytes levels(static_cast<std::size_t>(rows * cols), random.byte());
  for (int shape = random.pick(0, 4); shape > 0; --shape) {
    const double x = random.real(0, cols);
    const double y = random.real(0, rows);
    const double turn = random.real(-1.6, 1.6);
    const double half_width = random.real(1, 40);
    const double half_height = random.real(1, 30);
    const unsigned char level = random.byte();
    const double slope = random.one_in(3) ? random.real(-0.3, 0.3) : 0.0;
    for (int row = 0; row < rows; ++row) {
      for (int col = 0; col < cols; ++col) {
        const double along = std::cos(turn) * (col - x) + std::sin(turn) * (row - y);
        const double across = std::cos(turn) * (row - y) - std::sin(turn) * (col - x);
        if (std::abs(along) > half_width || std::abs(across) > half_height + slope * along) continue;
        levels[static_cast<std::size_t>(row * cols + col)] = level;
      }
    }
  }
  const int grain = random.one_in(2) ? random.pick(0, 40) : 0;
  if (grain == 0) return levels;
  std::uint32_t noise = random.bits();
  for (unsigned char& level : levels) {
    noise = noise * 1664525u + 1013904223u;
    level = static_cast<unsigned char>(level + static_cast<int>((noise >> 16) % static_cast<unsigned>(grain)));
  }
  return levels;
}

void check(const Proposal& proposal) {
  FUZZ_CHECK(proposal.confidence >= 0 && proposal.confidence <= 1);
  for (const double share : proposal.shares) FUZZ_CHECK(share >= 0 && share <= 1);
  for (const auto& corner : proposal.quad.corners) FUZZ_CHECK(std::isfinite(corner.x) && std::isfinite(corner.y));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  Random random(data, size);
  constexpr std::array kLayouts = {Layout::kGray, Layout::kBgr, Layout::kRgb, Layout::kBgra, Layout::kRgba};
  const Layout layout = kLayouts[random.bits() % kLayouts.size()];
  const int rows = random.one_in(64) ? random.pick(1, 200) : random.pick(1, 40);
  const int cols = random.one_in(64) ? random.pick(1, 200) : random.pick(1, 50);
  const Bytes levels = draw(random, rows, cols);
  const int channels = bytes_of(layout);
  // Exactly as large as the pixels, so that the address sanitizer sees what is read around them.
  Bytes pixels(levels.size() * static_cast<std::size_t>(channels));
  for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = levels[i / static_cast<std::size_t>(channels)];
  if (channels > 1 && random.one_in(3)) {
    for (std::size_t i = 0; i < pixels.size(); i += 4) pixels[i] = static_cast<unsigned char>(pixels[i] ^ 0x55);
  }
  const Scan scan{{pixels.data(), rows, cols, std::ptrdiff_t{cols} * channels}, layout};
  const int most = random.one_in(4) ? kMostCards : random.pick(1, 3);
  const auto found = std::make_unique<Findings>();
  find_anywhere(scan, most, *found);
  FUZZ_CHECK(found->ready);
  FUZZ_CHECK(found->count >= 0 && found->count <= most);
  for (int i = 0; i < found->count; ++i) {
    const FoundCard& card = found->cards.at(static_cast<std::size_t>(i));
    check(card.card);
    FUZZ_CHECK(card.alternative_count >= 0 && card.alternative_count <= kMostAlternatives);
    for (int k = 0; k < card.alternative_count; ++k) check(card.alternatives.at(static_cast<std::size_t>(k)));
  }
  return 0;
}
