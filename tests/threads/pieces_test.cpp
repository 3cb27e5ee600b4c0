// Every other exported function, one after another on eight threads at once: the pieces behind the operations, the
// block list and the interface for people; but for the one that runs at load, which writes what all share. Each thread
// begins elsewhere and has images of its own; the thread sanitizer watches, and the results must be those of one thread
// alone.
#include <gtest/gtest.h>
#include <vantrel_cards.h>

#include <array>
#include <cmath>
#include <thread>
#include <vector>

#include "autoclip/exports.h"
#include "cardcut/exports.h"
#include "components/exports.h"
#include "image/exports.h"
#include "image/loading/exports.h"
#include "lines/exports.h"
#include "scale/exports.h"
#include "segment/edgeclip/exports.h"
#include "segment/exports.h"
#include "support/answer.h"
#include "support/block_list.h"
#include "support/scans.h"

namespace {

using support::Answer;
using support::append;
using support::Image;
using support::List;
using support::taken;

constexpr int kCols = 200, kRows = 160;

Image scan(int bits, int seed) {
  const double at = seed;
  return support::scan_of({20 + at, 15, 180, 12 + at, 22, 140 - at, 178 - at, 143}, kCols, kRows, bits);
}

/** The edge and direction maps of a scan, and the components on a list. */
struct Maps {
  Image gray;
  std::vector<unsigned char> edge = std::vector<unsigned char>(kCols * kRows, 255), direction = edge;
  List list{1, 1};

  explicit Maps(int seed) : gray(scan(8, seed)) {
    Sobel_Operator(gray.ptr()->pBits, edge.data(), direction.data(), kRows, kCols, kCols, MYRECT{});
    Gray2Bin(edge.data(), list, kRows, kCols);
  }
  _BNODE* line() { return list.GetHead() == nullptr ? nullptr : list.GetHead()->child; }
  std::vector<typePoint> points(int direction_value) {
    std::vector<typePoint> found(kCols * kRows);
    int count = 0;
    CalcPointCenter2(edge.data(), direction.data(), found.data(), count, 0, kRows, 0, kCols, kCols, direction_value);
    found.resize(static_cast<std::size_t>(count));
    return found;
  }
};

struct Angles {
  std::array<double, 180> sine{}, cosine{};
  Angles() {
    for (std::size_t t = 0; t < 180; ++t) {
      sine.at(t) = std::sin(static_cast<double>(t) * 0.01745329251994);
      cosine.at(t) = std::cos(static_cast<double>(t) * 0.01745329251994);
    }
  }
};

Answer maps(int seed) {
  Maps scene(seed);
  Answer answer{EstimateWB(scene.gray.ptr()->pBits, 0, kRows, 0, kCols, kCols), scene.edge};
  append(answer, EstimateBlkPixel(scene.gray.ptr()->pBits, 0, 20, 0, kCols, kCols, 0));
  answer.bytes.insert(answer.bytes.end(), scene.direction.begin(), scene.direction.end());
  std::vector<float> pairs(2 * kCols * kRows);
  int count = 0;
  CalcPointCenter(scene.edge.data(), scene.direction.data(), pairs.data(), count, kRows, kCols, 0);
  append(answer, count);
  append(answer, pairs[0]);
  return answer;
}

Answer line_searches(int seed) {
  Maps scene(seed);
  Angles angles;
  std::array<double, 8> normal{};
  std::array<double, 4> distance{};
  Answer answer;
  for (int side = 0; side < 4; ++side) {
    const int direction = side < 2 ? 0 : 2;
    for (const auto search : {Compute_Hough_Angle2, Compute_Hough_Angle3}) {
      std::vector<typePoint> points = scene.points(direction);
      append(answer, search(scene.gray.ptr()->pBits, scene.line(), scene.edge.data(), normal.data(), distance.data(),
                            points.data(), kRows, kCols, static_cast<int>(points.size()), direction, angles.sine.data(),
                            angles.cosine.data(), side, 0));
    }
    std::vector<typePoint> points = scene.points(direction);
    append(answer,
           Compute_Hough_Angle(normal.data(), distance.data(), points.data(), kRows, kCols,
                               static_cast<int>(points.size()), direction, angles.sine.data(), angles.cosine.data()));
  }
  append(answer, normal);
  append(answer, distance);
  std::array<float, 8> corners{}, box{};
  answer.code = CalIntersectPoint(normal.data(), distance.data(), corners.data());
  append(answer, VerifyCorrectLoc(corners.data(), box.data(), kRows, kCols));
  append(answer, VerifyCorrectLoc_M(box.data(), corners.data(), kRows, kCols));
  append(answer, corners);
  return answer;
}

Answer verifiers(int seed) {
  Maps scene(seed);
  std::array<double, 12> lines{};
  std::array<float, 4> unread{};
  Answer answer;
  for (int at = 5; at < kRows; at += 31) {
    for (int side = 0; side < 2; ++side) {
      append(answer,
             VerifyCorrectLineV_0(scene.edge.data(), lines.data(), lines.data(), at, kRows / 2, kRows, kCols, side));
      append(answer, VerifyCorrectLineV_1(scene.edge.data(), unread.data(), unread.data(), at, kRows, kCols, side));
      append(answer, VerifyCorrectLineV_2(scene.line(), at, kRows, kCols, side, 0));
      append(answer, VerifyCorrectLineV_3(scene.line(), at, kRows, kCols, side, 0));
      append(answer, VerifyCorrectLineV_3_ORVA(scene.line(), at, kRows, kCols, side, 0));
      append(answer, VerifyCorrectLineH_0(scene.line(), at, kRows, kCols, 2 + side, 0));
    }
  }
  return answer;
}

Answer warps(int seed) {
  Image source = scan(24, seed);
  std::array<float, 8> from{0, 0, 99, 0, 0, 79, 99, 79}, to{9, 8, 150, 12, 7, 120, 160, 118};
  to[0] += static_cast<float>(seed);
  std::array<double, 8> coefficients{};
  std::array<double, 4> rect{0, 0, 99, 79};
  Answer answer{SolveMultiUnknownFunc(coefficients.data(), from.data(), to.data(), 8), {}};
  append(answer, coefficients);
  for (const auto warp : {ConvertImg, ConvertImg2, ConvertImg3}) {
    Image target(warp == ConvertImg2 ? kCols : 100, 80, 24, 7);
    append(answer, warp(source.ptr(), target.ptr(), coefficients.data(), rect.data(), 24));
    const Answer made{0, target.pixels()};
    answer.bytes.insert(answer.bytes.end(), made.bytes.begin(), made.bytes.end());
  }
  append(answer, Get_U(1, 2, 3, 4, seed, 6) + Get_V(1, 2, 3, 4, 5, seed));
  append(answer, CalcUnknownFun(1, 2, 3, seed + 7.0, 5, 6));
  append(answer, comp_ycoord(from.data(), to.data()));
  Image gray = scan(8, seed);
  append(answer, Bilinear(20.5F, 30.25F, gray.ptr()->pBits, kRows, kCols, kCols, 8));
  return answer;
}

Answer corners(int seed) {
  Image gray = scan(8, seed);
  std::array<float, 8> corners{}, box{};
  Answer answer{ClipNameCardRedundantImg(gray.ptr(), corners.data(), box.data()), {}};
  append(answer, corners);
  append(answer, vantrel_find_gradient_corners(gray.ptr(), corners.data(), box.data()));
  append(answer, box);
  return answer;
}

template <auto Make>
Answer made(int bits, int seed) {
  Image source = scan(bits, seed);
  BITMAPPTR out{};
  const bool code = Make(source.ptr(), &out);
  return taken(code ? 1 : 0, out);
}

template <auto Make, int kBits>
Answer scaled(int seed) {
  Image source = kBits == 1 ? Image(kCols, kRows, 1, static_cast<unsigned char>(0x3C + seed)) : scan(kBits, seed);
  BITMAPPTR out{};
  const bool code = Make(source.ptr(), &out, 2);
  return taken(code ? 1 : 0, out);
}

template <auto Enlarge>
Answer enlarged(int seed) {
  Image source = scan(24, seed), target(2 * kCols, 2 * kRows, 24, 9);
  return {Enlarge(source.ptr(), target.ptr(), 2) ? 1 : 0, target.pixels()};
}

Answer rectangles(int seed) {
  Image gray = scan(8, seed), colour = scan(24, seed);
  MYRECT by_levels{}, by_colours{};
  Answer answer{CutCard(gray.ptr(), by_levels) && CutCard24(colour.ptr(), by_colours), {}};
  append(answer, by_levels);
  append(answer, by_colours);
  append(answer, ColorDiff(1, 2, 3, 40, static_cast<unsigned char>(seed), 60));
  return answer;
}

Answer planes(int seed) {
  Image colour = scan(24, seed);
  std::vector<unsigned char> plane(3 * kCols * kRows);
  unsigned char* const first = plane.data();
  constexpr int kBytes = kCols * kRows;
  RawData2RGB(colour.ptr()->pBits, first, first + kBytes, first + 2 * kBytes, kRows, kCols, kCols, 3 * kCols);
  Answer answer{Moving_Average(first, kCols, kRows, kCols), plane};
  std::vector<unsigned short> rows(kRows), cols(kCols);
  HProjection(first, kCols, kRows, rows.data());
  VProjection(first, kCols, kRows, cols.data());
  append(answer, rows[60]);
  append(answer, cols[60]);
  std::vector<unsigned char> edge(kBytes);
  append(answer, Sobel_Edge(first + kBytes, edge.data(), kCols, 5, 20, 120, 100, 150, kCols - 1));
  append(answer, edge[10 * kCols + 60]);
  append(answer, BiCubicDir(1, 2, seed, 4));
  return answer;
}

Answer blocks(int seed) {
  Image bits(kCols, kRows, 1, static_cast<unsigned char>(0x18 + seed));
  List list{4, 3};
  Answer answer{Extract_Eight_Connected_Components(*bits.ptr(), list), {}};
  _BNODE* const group = list.RequestGroup(nullptr, list.GetHead(), {1, 2, 3, 4, 5});
  _BNODE* const line = list.RequestLine(group, nullptr, nullptr, {1, 2, 3, 4, 5});
  _BNODE* last = nullptr;
  for (short i = 0; i < 9; ++i) {
    const auto key = static_cast<short>(i * 7 % 10);
    last = list.RequestCharacter(line, last, nullptr, {key, key, static_cast<short>(key + seed), i, 0});
  }
  list.SortCharacter(line, true);
  append(answer, line->child->rect);
  SortCharacter(list, line);
  append(answer, line->child->rect);
  list.AdjustGroupData(group);
  append(answer, group->rect);
  append(answer, list.TotalGroups() + list.TotalLines() + list.TotalCharacters());
  list.ReturnCharacter(line->child);
  list.ReturnGroup(group);
  append(answer, list.used);
  double** const matrix = MakeMatrix(3, 4);
  append(answer, matrix[2][3]);
  FreeMatrix(matrix);
  return answer;
}

Answer picture(vantrel_status status, vantrel_picture& made) {
  Answer answer{status, {}};
  const auto* rows = static_cast<const unsigned char*>(made.data);
  if (status == VANTREL_OK) answer.bytes.assign(rows, rows + made.stride * made.height);
  vantrel_picture_release(&made);
  return answer;
}

Answer for_people(int seed) {
  Image colour = scan(24, seed);
  const vantrel_image image = {colour.ptr()->pBits, kCols, kRows, 3 * kCols, VANTREL_FORMAT_BGR, 300.0};
  Answer answer;
  for (const vantrel_method method : {VANTREL_METHOD_DARK_GLASS, VANTREL_METHOD_FLAT_LIGHT, VANTREL_METHOD_SHEET}) {
    vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
    options.methods = &method;
    options.method_count = 1;
    vantrel_cards* cards = nullptr;
    append(answer, vantrel_find(&image, &options, &cards));
    append(answer, vantrel_cards_count(cards));
    append(answer, vantrel_cards_reason(cards, method));
    vantrel_card card = VANTREL_CARD_INIT;
    if (vantrel_cards_get(cards, 0, &card) == VANTREL_OK) append(answer, card.corners);
    vantrel_cards_release(cards);
  }
  const vantrel_quad quad = {{20, 15}, {180, 12.5}, {178, 143}, {22.0 + seed, 140}};
  const vantrel_rect rectangle = {seed, 2, 50, 60};
  const auto add = [&](vantrel_status status, vantrel_picture& out) {
    const Answer part = picture(status, out);
    append(answer, part.code);
    answer.bytes.insert(answer.bytes.end(), part.bytes.begin(), part.bytes.end());
  };
  vantrel_picture out = VANTREL_PICTURE_INIT;
  add(vantrel_cut(&image, &quad, 1.0, &out), out);
  add(vantrel_crop(&image, &rectangle, &out), out);
  add(vantrel_enlarge(&image, VANTREL_ENLARGE_CUBIC, &out), out);
  add(vantrel_reduce(&image, 3, &out), out);
  add(vantrel_convert(&image, &out), out);
  return answer;
}

Answer clip(int seed) {
  Image colour = scan(24, seed);
  BITMAPPTR out{};
  const int code = vantrel_auto_clip(colour.handle(), nullptr, &out, 1);
  return taken(code, out);
}

Answer texts(int seed) {
  Answer answer{vantrel_version_number(), {}};
  append(answer, szPath[0]);
  append(answer, GetDllPath() != nullptr);
  append(answer, vantrel_status_text(VANTREL_ERROR_MEMORY)[0]);
  append(answer, vantrel_method_name(VANTREL_METHOD_SHEET)[0]);
  append(answer, vantrel_limit_value(VANTREL_LIMIT_CARDS) + seed);
  return answer;
}

using Piece = Answer (*)(int seed);
constexpr std::array<Piece, 18> kPieces = {
    maps,
    line_searches,
    verifiers,
    warps,
    corners,
    [](int seed) { return made<ImageCopy>(24, seed); },
    [](int seed) { return made<Color2Gray>(24, seed); },
    scaled<Color2ScaledGray, 24>,
    scaled<Gray2ScaledGray, 8>,
    scaled<Bin2ScaledGray, 1>,
    enlarged<BiLinearMethod>,
    enlarged<BiCubicMethod>,
    rectangles,
    planes,
    blocks,
    for_people,
    clip,
    texts,
};

std::vector<Answer> all_pieces(int seed) {
  std::vector<Answer> all(kPieces.size());
  for (std::size_t i = 0; i < all.size(); ++i) {
    const std::size_t turn = (i + 3 * static_cast<std::size_t>(seed)) % all.size();
    all[turn] = kPieces[turn](seed);
  }
  return all;
}

TEST(ManyThreads, GiveWhatOneThreadGivesInEveryPiece) {
  constexpr int kThreads = 8;
  std::vector<std::vector<Answer>> together(kThreads);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t, &mine = together[static_cast<std::size_t>(t)]] { mine = all_pieces(t); });
  }
  for (std::thread& thread : threads) thread.join();
  for (int t = 0; t < kThreads; ++t) {
    const std::vector<Answer> alone = all_pieces(t);
    for (std::size_t i = 0; i < alone.size(); ++i) {
      EXPECT_TRUE(together[static_cast<std::size_t>(t)][i] == alone[i]) << "piece " << i << ", thread " << t;
    }
  }
}

TEST(ManyThreads, FindWhatIsThere) {
  EXPECT_EQ(line_searches(0).code, 1);
  EXPECT_EQ(corners(0).code, 1);
  EXPECT_EQ(rectangles(0).code, 1);
  EXPECT_EQ(blocks(0).code, 1);
  for (std::size_t i = 5; i < 12; ++i) EXPECT_EQ(kPieces[i](1).code, 1) << i;
}

}  // namespace
