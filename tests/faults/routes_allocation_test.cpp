// Every exported function that takes memory, on every route through it, with its first allocation failing, then its
// second, and so on: the answer is one that the function is described with, what is handed back may be released, the
// inputs are as they were, and the same call is right afterwards. Prints how many points there were.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "autoclip/exports.h"
#include "cardcut/exports.h"
#include "components/exports.h"
#include "faults/failing_allocators.h"
#include "image/exports.h"
#include "lines/exports.h"
#include "scale/exports.h"
#include "segment/exports.h"
#include "support/answer.h"
#include "support/image.h"
#include "support/scans.h"

namespace {

using support::Answer;
using support::append;
using support::Image;
using support::taken;

/** One way through a function. */
struct Route {
  std::string name;
  std::vector<int> when_failed; /**< the codes that missing memory may show as */
  std::vector<Image*> inputs;
  std::function<Answer()> run;
};

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

/** What is searched and cut: at 8, 24 and 1 bits, and twice as large. */
struct Scans {
  static constexpr support::Corners kCard{20, 15, 180, 12, 22, 140, 178, 143};

  Image gray = support::scan_of(kCard, 200, 160);
  Image colour = support::scan_of(kCard, 200, 160, 24);
  Image bits = Image(200, 160, 1, 0x3C);
  Image large_gray = Image(400, 320, 8, 77);
  Image large_colour = Image(400, 320, 24, 78);
  Image wide_gray = Image(2001, 4, 8, 79);
  Image wide_colour = Image(2001, 4, 24, 80);
  Image shallow = Image(40, 30, 4, 81);  // its rows are shorter than the bytes read from them
  Image flat = flat_card(8);
  Image flat_colour = flat_card(24);
  Image sheet = sheet_of_cards(8);
  Image colour_sheet = sheet_of_cards(24);
  Image bilevel_sheet = sheet_of_cards(1);

  static Image flat_card(int bit_count) {
    Image image(300, 300, bit_count, 40);
    support::fill(image, 15, 285, 15, 285, 230);
    return image;
  }

  /** Two cards of print in one column. */
  static Image sheet_of_cards(int bit_count) {
    Image sheet(1200, 1500, bit_count, 255);
    for (const int card : {100, 850}) {
      for (int row = card; row < card + 550; ++row) {
        for (int at = 100 * bit_count / 8; at < 1000 * bit_count / 8; at += 15 * bit_count / 8 + 1)
          sheet.at(row, at) = 0;
      }
    }
    return sheet;
  }
};

using Entry = int (*)(void**, void**, BITMAPPTR*, int);

Route clip_route(const std::string& name, std::vector<int> codes, Entry entry, Image& analysed, Image& cut, int scale) {
  return {name, std::move(codes), {&analysed, &cut}, [entry, &analysed, &cut, scale] {
            BITMAPPTR out{};
            const int code = entry(analysed.handle(), cut.handle(), &out, scale);
            return taken(code, out);
          }};
}

/** The described entry shows missing memory as a card not found, or as another border; the other one names it. */
void add_clips(std::vector<Route>& routes, Scans& s) {
  const struct {
    const char* name;
    Image& analysed;
    Image& cut;
    int scale;
    bool searches;
  } ways[] = {{"gray", s.gray, s.gray, 1, true},
              {"colour", s.colour, s.colour, 1, true},
              {"gray, scale 2", s.gray, s.large_gray, 2, true},
              {"colour, scale 2", s.colour, s.large_colour, 2, true},
              {"bilevel", s.bits, s.bits, 1, false},
              {"bilevel, scale 2", s.bits, s.large_gray, 2, false},
              {"nothing to find", s.wide_gray, s.wide_gray, 1, true}};
  for (const auto& way : ways) {
    const std::vector<int> shown = way.searches ? std::vector<int>{-1, 0, 1} : std::vector<int>{-1};
    routes.push_back(clip_route(std::string("AutoClipRedundantImg, ") + way.name, shown, AutoClipRedundantImg,
                                way.analysed, way.cut, way.scale));
    routes.push_back(clip_route(std::string("vantrel_auto_clip, ") + way.name, {-1}, vantrel_auto_clip, way.analysed,
                                way.cut, way.scale));
  }
  routes.push_back(clip_route("AutoClipRedundantImg_ORVA, gray", {-1}, AutoClipRedundantImg_ORVA, s.flat, s.flat, 1));
  routes.push_back(
      clip_route("AutoClipRedundantImg_ORVA, gray, scale 2", {-1}, AutoClipRedundantImg_ORVA, s.flat, s.large_gray, 2));
  routes.push_back(clip_route("AutoClipRedundantImg_ORVA, colour", {-1}, AutoClipRedundantImg_ORVA, s.flat_colour,
                              s.flat_colour, 1));
}

void add_searches(std::vector<Route>& routes, Scans& s) {
  for (Image* image : {&s.flat, &s.flat_colour}) {
    const std::string depth = image == &s.flat ? "gray" : "colour";
    routes.push_back({"AutoClipImg_Rect_ORVA, " + depth, {-1}, {image}, [image] {
                        return Answer{AutoClipImg_Rect_ORVA(image->handle(), nullptr, 0, 0, 0, 0, 1), {}};
                      }});
    routes.push_back({"CutCard, " + depth, {0}, {image}, [image] {
                        MYRECT rect{};
                        Answer answer{CutCard(image->ptr(), rect) ? 1 : 0, {}};
                        append(answer, rect);
                        return answer;
                      }});
  }
  routes.push_back({"CutCard24", {0}, {&s.flat_colour}, [&s] {
                      MYRECT rect{};
                      Answer answer{CutCard24(s.flat_colour.ptr(), rect) ? 1 : 0, {}};
                      append(answer, rect);
                      return answer;
                    }});
  routes.push_back({"ClipNameCardRedundantImg", {0, 1}, {&s.gray}, [&s] {
                      std::array<float, 8> corners{}, box{};
                      Answer answer{ClipNameCardRedundantImg(s.gray.ptr(), corners.data(), box.data()), {}};
                      append(answer, corners);
                      return answer;
                    }});
  routes.push_back({"vantrel_find_corners", {0}, {&s.gray}, [&s] {
                      vantrel_corner_search found{};
                      const int code = vantrel_find_corners(s.gray.ptr(), &found);
                      if (code == 0) {
                        EXPECT_EQ(found.verdict, VANTREL_OUT_OF_MEMORY);
                      }
                      Answer answer{code, {}};
                      append(answer, found.corners);
                      return answer;
                    }});
  routes.push_back({"AutoDetectCorner", {0}, {&s.gray}, [&s] {
                      std::array<float, 8> corners{}, box{};
                      return Answer{AutoDetectCorner(s.gray.ptr(), corners.data(), box.data()) ? 1 : 0, {}};
                    }});
  routes.push_back({"vantrel_find_gradient_corners", {-1}, {&s.gray}, [&s] {
                      std::array<float, 8> corners{}, box{};
                      return Answer{vantrel_find_gradient_corners(s.gray.ptr(), corners.data(), box.data()), {}};
                    }});
  for (Image* image : {&s.sheet, &s.colour_sheet, &s.bilevel_sheet}) {
    routes.push_back(
        {"CardSeg, cards in " + std::to_string(image->header().biBitCount) + " bits", {-1}, {image}, [image] {
           RectRegions regions{};
           Answer answer{CardSeg(image->ptr(), regions), {}};
           if (answer.code == 1) append(answer, regions);
           return answer;
         }});
  }
}

void add_enlargements(std::vector<Route>& routes, Scans& s) {
  const struct {
    const char* name;
    Image& image;
  } ways[] = {{"gray", s.gray},
              {"colour", s.colour},
              {"bilevel", s.bits},
              {"gray over 2000", s.wide_gray},
              {"colour over 2000", s.wide_colour}};
  for (const auto& way : ways) {
    for (const auto enlarge : {BiLinear, BiCubic}) {
      routes.push_back({std::string(enlarge == BiLinear ? "BiLinear, " : "BiCubic, ") + way.name,
                        {-1},
                        {&way.image},
                        [enlarge, &image = way.image] {
                          BITMAPPTR out{};
                          const int code = enlarge(image.handle(), &out);
                          return taken(code, out);
                        }});
    }
  }
  for (const auto resample : {BiLinearMethod, BiCubicMethod}) {
    const std::string name = resample == BiLinearMethod ? "BiLinearMethod" : "BiCubicMethod";
    for (Image* image : {&s.gray, &s.shallow}) {
      routes.push_back({name + (image == &s.gray ? ", gray" : ", extended rows"), {0}, {image}, [resample, image] {
                          std::vector<unsigned char> pixels(4 * 240 * 400);
                          BITMAPINFOHEADER header{};
                          BITMAPPTR out{};
                          out.pInfo = &header;
                          out.pBits = pixels.data();
                          return Answer{resample(image->ptr(), &out, 2) ? 1 : 0, {}};
                        }});
    }
  }
}

void add_images(std::vector<Route>& routes, Scans& s) {
  routes.push_back({"CreateImage", {0}, {}, [] {
                      BITMAPPTR out{};
                      const int code = CreateImage(&out, 9, 7, 1, 0, 0) ? 1 : 0;
                      return taken(code, out);
                    }});
  routes.push_back({"ImageCopy", {0}, {&s.gray}, [&s] {
                      BITMAPPTR out{};
                      const int code = ImageCopy(s.gray.ptr(), &out) ? 1 : 0;
                      return taken(code, out);
                    }});
  routes.push_back({"Color2Gray", {0}, {&s.colour}, [&s] {
                      BITMAPPTR out{};
                      const int code = Color2Gray(s.colour.ptr(), &out) ? 1 : 0;
                      return taken(code, out);
                    }});
  for (Image* image : {&s.gray, &s.colour, &s.bits}) {
    const std::string depth = std::to_string(image->header().biBitCount) + " bits";
    routes.push_back({"CutRectImage, " + depth, {-1}, {image}, [image] {
                        BITMAPPTR out{};
                        const int code = CutRectImage(image->ptr(), &out, {9, 70, 90, 3, 0});
                        return taken(code, out);
                      }});
    const auto reduce = image == &s.gray ? Gray2ScaledGray : image == &s.colour ? Color2ScaledGray : Bin2ScaledGray;
    routes.push_back({"to a reduced gray image, " + depth, {0}, {image}, [reduce, image] {
                        BITMAPPTR out{};
                        const int code = reduce(image->ptr(), &out, 3) ? 1 : 0;
                        return taken(code, out);
                      }});
  }
  routes.push_back({"Extract_Eight_Connected_Components", {0}, {&s.bits}, [&s] {
                      _BLIST list{};
                      if (!list.Constructor(500, 100)) return Answer{};
                      const int code = Extract_Eight_Connected_Components(*s.bits.ptr(), list);
                      list.Destructor();
                      return Answer{code, {}};
                    }});
}

/** Points of one level border, in the gray scan's geometry. */
void add_alternative_search(std::vector<Route>& routes, Scans& s) {
  for (const int dir_class : {0, 2}) {
    routes.push_back(
        {"Compute_Hough_Angle3, direction " + std::to_string(dir_class), {0, 2}, {&s.gray}, [&s, dir_class] {
           std::array<double, 180> sines{}, cosines{};
           for (std::size_t t = 0; t < 180; ++t) {
             sines[t] = std::sin(static_cast<double>(t) * M_PI / 180);
             cosines[t] = std::cos(static_cast<double>(t) * M_PI / 180);
           }
           std::vector<unsigned char> edge(200 * 160, 255);
           std::vector<typePoint> points;
           for (int i = 0; i < 150; ++i) {
             const auto at = static_cast<float>(i);
             points.push_back(dir_class == 0 ? typePoint{150.0f, at} : typePoint{at, 10.0f});
             edge[dir_class == 0 ? 150u * 200u + static_cast<unsigned>(i) : static_cast<unsigned>(i) * 200u + 10u] = 0;
           }
           std::array<double, 8> normal{};
           std::array<double, 4> distance{};
           _BNODE line{};
           const int side = dir_class;
           const int code = Compute_Hough_Angle3(
               s.gray.ptr()->pBits, &line, edge.data(), normal.data(), distance.data(), points.data(), 160, 200,
               static_cast<int>(points.size()), dir_class, sines.data(), cosines.data(), side, 0);
           return Answer{code, {}};
         }});
  }
}

TEST(AllocationFailure, IsBorneOnEveryRoute) {
  Scans scans;
  std::vector<Route> routes;
  add_clips(routes, scans);
  add_searches(routes, scans);
  add_enlargements(routes, scans);
  add_images(routes, scans);
  add_alternative_search(routes, scans);
  int points = 0;
  for (const Route& route : routes) {
    const int count = fail_each(route);
    EXPECT_GE(count, 1) << route.name;
    std::printf("%4d  %s\n", count, route.name.c_str());
    points += count;
  }
  std::printf("%4d  points on %zu routes\n", points, routes.size());
}

}  // namespace
