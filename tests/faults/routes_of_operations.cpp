#include <array>
#include <string>
#include <utility>
#include <vector>

#include "autoclip/exports.h"
#include "cardcut/exports.h"
#include "faults/routes.h"
#include "image/exports.h"
#include "scale/exports.h"
#include "segment/exports.h"

namespace faults {
namespace {

using support::append;
using support::taken;

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
  for (Image* image : {&s.gray, &s.framed}) {
    const std::string name = image == &s.gray ? "vantrel_find_corners" : "vantrel_find_corners, two lines a side";
    routes.push_back({name, {0}, {image}, [image] {
                        vantrel_corner_search found{};
                        const int code = vantrel_find_corners(image->ptr(), &found);
                        if (code == 0) {
                          EXPECT_EQ(found.verdict, VANTREL_OUT_OF_MEMORY);
                        }
                        Answer answer{code, {}};
                        append(answer, found.corners);
                        return answer;
                      }});
  }
  routes.push_back({"AutoDetectCorner", {0}, {&s.gray}, [&s] {
                      std::array<float, 8> corners{}, box{};
                      return Answer{AutoDetectCorner(s.gray.ptr(), corners.data(), box.data()) ? 1 : 0, {}};
                    }});
  routes.push_back({"vantrel_find_gradient_corners", {-1}, {&s.gray}, [&s] {
                      std::array<float, 8> corners{}, box{};
                      return Answer{vantrel_find_gradient_corners(s.gray.ptr(), corners.data(), box.data()), {}};
                    }});
  routes.push_back({"vantrel_find_gradient_corners, in slices", {-1}, {&s.slender}, [&s] {
                      std::array<float, 8> corners{}, box{};
                      return Answer{vantrel_find_gradient_corners(s.slender.ptr(), corners.data(), box.data()), {}};
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
    const char* const name = image == &s.gray     ? "Gray2ScaledGray"
                             : image == &s.colour ? "Color2ScaledGray"
                                                  : "Bin2ScaledGray";
    routes.push_back({std::string(name) + ", " + depth, {0}, {image}, [reduce, image] {
                        BITMAPPTR out{};
                        const int code = reduce(image->ptr(), &out, 3) ? 1 : 0;
                        return taken(code, out);
                      }});
  }
}

}  // namespace

void add_operations(std::vector<Route>& routes, Scans& scans) {
  add_clips(routes, scans);
  add_searches(routes, scans);
  add_enlargements(routes, scans);
  add_images(routes, scans);
}

}  // namespace faults
