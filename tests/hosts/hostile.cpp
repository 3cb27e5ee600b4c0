// A host that has functions of its own under the names of the library's: they must not be called in the library's
// place.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "components/exports.h"
#include "vantrel.h"

namespace {

int calls = 0;

constexpr int kWidth = 300;
constexpr int kHeight = 200;
constexpr std::size_t kHead = 40 + 4 * 256;

/** A light card, turned a little, on dark glass. */
std::vector<unsigned char> scan() {
  std::vector<unsigned char> block(kHead + kWidth * kHeight, 30);
  const BITMAPINFOHEADER header{40, kWidth, kHeight, 1, 8, 0, kWidth * kHeight, 11811, 11811, 256, 0};
  std::memcpy(block.data(), &header, sizeof header);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const double u = x - 150 + (y - 100) * 0.035;
      const double v = y - 100 - (x - 150) * 0.035;
      if (std::abs(u) < 130 && std::abs(v) < 85) block[kHead + static_cast<std::size_t>(y * kWidth + x)] = 230;
    }
  }
  return block;
}

}  // namespace

// The dynamic linker finds these before the library's own.
__attribute__((visibility("default"))) void Sobel_Operator(unsigned char*, unsigned char*, unsigned char*, int, int,
                                                           int, MYRECT) {
  ++calls;
}
__attribute__((visibility("default"))) void SortCharacter(_BLIST&, _BNODE*) { ++calls; }
__attribute__((visibility("default"))) bool CreateImage(BITMAPPTR*, int, int, int, int, int) {
  ++calls;
  return false;
}
__attribute__((visibility("default"))) int Bilinear(float, float, unsigned char*, int, int, int, int) {
  ++calls;
  return 0;
}
extern "C" __attribute__((visibility("default"))) int CutRectImage(BITMAPPTR*, BITMAPPTR*, MYRECT) {
  ++calls;
  return -1;
}
__attribute__((visibility("default"))) bool CutCard(BITMAPPTR*, MYRECT&) {
  ++calls;
  return false;
}

int main() {
  std::vector<unsigned char> block = scan();
  void* handle = block.data();
  BITMAPPTR card{};
  const int clipped = AutoClipRedundantImg(&handle, nullptr, &card, 1);
  const int middle = clipped == 1 ? card.pBits[100 * kWidth + 150] : -1;
  std::free(card.pInfo);
  card = {};
  const int cut = AutoClipRedundantImg_ORVA(&handle, nullptr, &card, 1);
  std::free(card.pInfo);
  card = {};
  const int enlarged = BiLinear(&handle, &card);
  std::free(card.pInfo);
  std::printf("clipped %d, middle %d, cut %d, enlarged %d, calls of the host's own functions: %d\n", clipped, middle,
              cut, enlarged, calls);
  return clipped == 1 && middle == 230 && cut == 1 && enlarged == 1 && calls == 0 ? 0 : 1;
}
