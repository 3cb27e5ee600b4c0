// The operations of the public header on eight threads at once, each on images of its own. The thread sanitizer
// watches; under every build the results must be those of one thread alone.
#include <gtest/gtest.h>
#include <vantrel.h>
#include <vantrel_cards.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/answer.h"

namespace {

using support::Answer;
using support::append;
using support::taken;

/** Rows and columns of a scan: of a card askew on dark glass, whose place depends on `seed`, with a grain. */
constexpr int kWidth = 320, kHeight = 240, kResolution = 11811;

class Scan {
 public:
  Scan(int bits, int seed) {
    const int bytes = bits / 8, colours = bits == 8 ? 256 : 0, stride = kWidth * bytes;
    block_.resize(40 + 4 * static_cast<std::size_t>(colours) + static_cast<std::size_t>(stride * kHeight));
    const BITMAPINFOHEADER header{40,
                                  kWidth,
                                  kHeight,
                                  1,
                                  static_cast<std::uint16_t>(bits),
                                  0,
                                  static_cast<std::uint32_t>(stride * kHeight),
                                  kResolution,
                                  kResolution,
                                  static_cast<std::uint32_t>(colours),
                                  0};
    std::memcpy(block_.data(), &header, sizeof header);
    unsigned char* pixel = record().pBits;
    for (int i = 0; i < kHeight * kWidth; ++i) {
      const int x = i % kWidth, y = i / kWidth, lean = y / 40, rise = x / 40;
      const bool card = x > 20 + seed + lean && x < 290 + lean && y > 14 + rise && y < 215 + rise;
      for (int b = 0; b < bytes; ++b) *pixel++ = static_cast<unsigned char>((card ? 200 : 30) + (7 * x + 3 * y) % 5);
    }
  }
  BITMAPPTR record() {
    unsigned char* const start = block_.data();
    BITMAPPTR record{};
    record.pInfo = reinterpret_cast<BITMAPINFOHEADER*>(start);
    record.pPalette = reinterpret_cast<RGBQUAD*>(start + 40);
    record.pBits = start + 40 + 4 * std::size_t{record.pInfo->biClrUsed};
    return record;
  }
  void* block() { return block_.data(); }

 private:
  std::vector<unsigned char> block_;
};

template <auto Operation>
Answer enlarge(int bits, int seed) {
  Scan scan(bits, seed);
  void* block = scan.block();
  BITMAPPTR out{};
  const int code = Operation(&block, &out);
  return taken(code, out);
}

template <auto Operation>
Answer clip(int bits, int seed) {
  Scan scan(bits, seed);
  void* block = scan.block();
  BITMAPPTR out{};
  const int code = Operation(&block, nullptr, &out, 1);
  return taken(code, out);
}

Answer crop(int bits, int seed) {
  Scan scan(bits, seed);
  BITMAPPTR image = scan.record(), out{};
  const int code = CutRectImage(&image, &out, {10, 90, 200, 30, 0});
  return taken(code, out);
}

Answer rectangle(int bits, int seed) {
  Scan scan(bits, seed);
  void* block = scan.block();
  return {AutoClipImg_Rect_ORVA(&block, nullptr, 0, 0, 0, 0, 1), {}};
}

Answer corner_search(int, int seed) {
  Scan scan(8, seed);
  const BITMAPPTR image = scan.record();
  vantrel_corner_search found{};
  Answer answer{vantrel_find_corners(&image, &found), {}};
  for (const float corner : found.corners) append(answer, corner);
  return answer;
}

Answer corners_by_gradient(int, int seed) {
  Scan scan(8, seed);
  BITMAPPTR image = scan.record();
  std::array<float, 8> corners{}, box{};
  Answer answer{AutoDetectCorner(&image, corners.data(), box.data()), {}};
  append(answer, corners);
  append(answer, box);
  return answer;
}

Answer sheet(int bits, int seed) {
  Scan scan(bits, seed);
  BITMAPPTR image = scan.record();
  RectRegions regions{};
  Answer answer{CardSeg(&image, regions), {}};
  append(answer, regions);
  return answer;
}

Answer border_rows(int, int seed) {
  Scan scan(8, seed);
  BITMAPPTR image = scan.record();
  int first = 0, second = 0;
  Answer answer{ClipImg(&image, first, second), {}};
  append(answer, first);
  append(answer, second);
  return answer;
}

Answer anywhere(int bits, int seed) {
  Scan scan(bits, seed);
  const BITMAPPTR record = scan.record();
  const int stride = kWidth * bits / 8;
  const vantrel_image image = {static_cast<const unsigned char*>(record.pBits) + std::ptrdiff_t{kHeight - 1} * stride,
                               kWidth,
                               kHeight,
                               -stride,
                               bits == 8 ? VANTREL_FORMAT_GRAY : VANTREL_FORMAT_BGR,
                               0.0};
  const vantrel_method method = VANTREL_METHOD_ANYWHERE;
  vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
  options.methods = &method;
  options.method_count = 1;
  vantrel_cards* cards = nullptr;
  Answer answer{vantrel_find(&image, &options, &cards), {}};
  vantrel_card card = VANTREL_CARD_INIT;
  for (std::size_t i = 0; vantrel_cards_get(cards, i, &card) == VANTREL_OK; ++i) append(answer, card.corners);
  vantrel_cards_release(cards);
  return answer;
}

struct Operation {
  const char* name;
  Answer (*run)(int bits, int seed);
  int code; /**< of a success */
};

constexpr std::array kOperations = {
    Operation{"AutoClipRedundantImg", clip<AutoClipRedundantImg>, 1},
    Operation{"AutoClipRedundantImg_ORVA", clip<AutoClipRedundantImg_ORVA>, 1},
    Operation{"AutoClipImg_Rect_ORVA", rectangle, 1},
    Operation{"BiLinear", enlarge<BiLinear>, 1},
    Operation{"BiCubic", enlarge<BiCubic>, 1},
    Operation{"CutRectImage", crop, 1},
    Operation{"vantrel_find_corners", corner_search, 1},
    Operation{"vantrel_find", anywhere, 0},
    Operation{"AutoDetectCorner", corners_by_gradient, 0},
    Operation{"CardSeg", sheet, 1},
    Operation{"ClipImg", border_rows, 1},
};

constexpr int kThreads = 8;

int bits_for(int seed) { return seed % 2 == 0 ? 8 : 24; }

/** The answers of all operations on images that depend on `seed`, begun with another one for each. */
std::vector<Answer> answers(int seed) {
  std::vector<Answer> all(kOperations.size());
  for (std::size_t i = 0; i < all.size(); ++i) {
    const std::size_t turn = (i + static_cast<std::size_t>(seed)) % all.size();
    all[turn] = kOperations[turn].run(bits_for(seed), seed);
  }
  return all;
}

TEST(ManyThreads, GiveWhatOneThreadGives) {
  std::vector<std::vector<Answer>> together(kThreads);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t, &mine = together[static_cast<std::size_t>(t)]] { mine = answers(t); });
  }
  for (std::thread& thread : threads) thread.join();
  for (int t = 0; t < kThreads; ++t) {
    const std::vector<Answer> alone = answers(t);
    for (std::size_t i = 0; i < kOperations.size(); ++i) {
      EXPECT_EQ(alone[i].code, kOperations[i].code) << kOperations[i].name << ", thread " << t;
      EXPECT_TRUE(together[static_cast<std::size_t>(t)][i] == alone[i]) << kOperations[i].name << ", thread " << t;
    }
  }
}

TEST(ManyThreads, WorkOnImagesThatDiffer) {
  for (std::size_t i : {std::size_t{0}, std::size_t{3}, std::size_t{6}, std::size_t{7}}) {
    EXPECT_FALSE(kOperations[i].run(8, 0) == kOperations[i].run(8, 2)) << kOperations[i].name;
  }
}

}  // namespace
