#include <array>
#include <memory>
#include <vector>

#include "autoclip/exports.h"
#include "cardcut/exports.h"
#include "cards/scans.h"
#include "components/exports.h"
#include "faults/routes.h"
#include "image/exports.h"
#include "image/loading/exports.h"
#include "lines/exports.h"
#include "segment/edgeclip/exports.h"
#include "segment/exports.h"
#include "support/block_list.h"

namespace faults {
namespace {

/** A function that needs none, with what it needs instead. */
template <class Run>
void add(std::vector<Route>& routes, const char* name, Run run) {
  routes.push_back({name, {}, {}, [run] {
                      run();
                      return Answer{};
                    }});
}

void add_cards_operations(std::vector<Route>& routes) {
  add(routes, "vantrel_version", vantrel_version);
  add(routes, "vantrel_version_number", vantrel_version_number);
  add(routes, "vantrel_status_text", [] { vantrel_status_text(VANTREL_ERROR_MEMORY); });
  add(routes, "vantrel_format_bits", [] { vantrel_format_bits(VANTREL_FORMAT_BGR); });
  add(routes, "vantrel_method_name", [] { vantrel_method_name(VANTREL_METHOD_SHEET); });
  add(routes, "vantrel_reason_text", [] { vantrel_reason_text(VANTREL_REASON_BLANK); });
  add(routes, "vantrel_limit_value", [] { vantrel_limit_value(VANTREL_LIMIT_CARDS); });
  const auto memory = std::make_shared<pictures::Memory>(pictures::card_on_glass(VANTREL_FORMAT_GRAY));
  add(routes, "vantrel_image_check", [memory] {
    const vantrel_image image = memory->image();
    EXPECT_EQ(vantrel_image_check(&image), VANTREL_OK);
  });
  add(routes, "vantrel_quad_scale", [] {
    vantrel_quad quad = pictures::upright(1, 2, 30, 40);
    EXPECT_EQ(vantrel_quad_scale(&quad, 2, &quad), VANTREL_OK);
  });
  add(routes, "vantrel_cut_size", [] {
    const vantrel_quad quad = pictures::upright(1, 2, 30, 40);
    std::int32_t width = 0;
    std::int32_t height = 0;
    EXPECT_EQ(vantrel_cut_size(&quad, 0, &width, &height), VANTREL_OK);
  });
  // Made before any allocation fails.
  const auto picture = std::make_shared<pictures::Picture>();
  const vantrel_image image = memory->image(300);
  EXPECT_EQ(vantrel_convert(&image, picture.get()), VANTREL_OK);
  add(routes, "vantrel_picture_release", [picture] { vantrel_picture_release(picture.get()); });
  const auto cards = std::make_shared<pictures::Cards>(image);
  EXPECT_EQ(cards->count(), 1u);
  add(routes, "vantrel_cards_count", [cards] { vantrel_cards_count(cards->get()); });
  add(routes, "vantrel_cards_reason", [cards] { vantrel_cards_reason(cards->get(), VANTREL_METHOD_ANYWHERE); });
  add(routes, "vantrel_cards_get", [cards] {
    vantrel_card card = VANTREL_CARD_INIT;
    EXPECT_EQ(vantrel_cards_get(cards->get(), 0, &card), VANTREL_OK);
  });
  add(routes, "vantrel_cards_alternative", [cards] {
    vantrel_card card = VANTREL_CARD_INIT;
    vantrel_cards_alternative(cards->get(), 0, 0, &card);
  });
  add(routes, "vantrel_cards_dark_glass", [cards] {
    vantrel_dark_glass details{};
    details.size = sizeof details;
    EXPECT_EQ(vantrel_cards_dark_glass(cards->get(), &details), VANTREL_OK);
  });
  add(routes, "vantrel_cards_flat_light", [cards] {
    vantrel_flat_light details{};
    details.size = sizeof details;
    vantrel_cards_flat_light(cards->get(), &details);
  });
  add(routes, "vantrel_cards_sheet", [cards] {
    vantrel_sheet details{};
    details.size = sizeof details;
    vantrel_cards_sheet(cards->get(), &details);
  });
  const auto released = std::make_shared<vantrel_cards*>(nullptr);
  EXPECT_EQ(vantrel_find(&image, nullptr, released.get()), VANTREL_OK);
  add(routes, "vantrel_cards_release", [released] {
    vantrel_cards_release(*released);
    *released = nullptr;
  });
}

void add_list(std::vector<Route>& routes) {
  const auto list = std::make_shared<support::List>();
  const MYRECT rect{1, 9, 9, 1, 0};
  add(routes, "_BLIST::GetHead", [list] { list->GetHead(); });
  add(routes, "_BLIST::IsEmpty", [list] { list->IsEmpty(); });
  add(routes, "_BLIST::TotalGroups", [list] { list->TotalGroups(); });
  add(routes, "_BLIST::TotalLines", [list] { list->TotalLines(); });
  add(routes, "_BLIST::TotalCharacters", [list] { list->TotalCharacters(); });
  add(routes, "_BLIST::RequestNode", [list] { list->request(); });
  // Beyond the nodes that are prepared, too.
  add(routes, "_BLIST::RequestGroup", [list] {
    for (int i = 0; i < 600; ++i) EXPECT_NE(list->group(), nullptr);
  });
  add(routes, "_BLIST::RequestLine", [list] { EXPECT_NE(list->line(list->head), nullptr); });
  add(routes, "_BLIST::RequestCharacter",
      [list, rect] { EXPECT_NE(list->character(list->head->child, rect), nullptr); });
  add(routes, "_BLIST::SortCharacter", [list] { list->SortCharacter(list->head->child, true); });
  add(routes, "SortCharacter", [list] { SortCharacter(*list, list->head->child); });
  add(routes, "_BLIST::AdjustGroupData", [list] { list->AdjustGroupData(list->head); });
  add(routes, "_BLIST::ChangeLine", [list] {
    _BNODE* const from = list->line(list->head->next);
    list->ChangeLine(from, list->character(from), list->head->child);
  });
  add(routes, "_BLIST::ReturnNode", [list] { list->ReturnNode(list->request()); });
  add(routes, "_BLIST::ReturnCharacter", [list] { list->ReturnCharacter(list->character(list->head->child)); });
  add(routes, "_BLIST::ReturnLine", [list] { list->ReturnLine(list->line(list->head)); });
  add(routes, "_BLIST::ReturnGroup", [list] { list->ReturnGroup(list->head); });
  const auto nodes = std::make_shared<std::array<_BNODE, 3>>();
  add(routes, "InitFreeList", [nodes] { InitFreeList(nodes->data(), 3); });
  add(routes, "SetNode",
      [nodes, rect] { SetNode(nodes->data(), rect, BLOCK_LINE, nullptr, nullptr, nullptr, nullptr); });
  const auto runs = std::make_shared<support::List>();
  _BNODE* const line = runs->line(runs->group());
  add(routes, "ECC_SetRunComponent", [runs, line] {
    std::array<_RUN, 4> previous{}, current{};
    unsigned short previous_index = 0;
    unsigned short count = 0;
    _BNODE* last = nullptr;
    int label = 0;
    EXPECT_EQ(ECC_SetRunComponent(2, 5, 1, previous.data(), current.data(), 0, previous_index, count, *runs, line, last,
                                  100, label),
              1);
  });
  const auto destroyed = std::make_shared<_BLIST>();
  EXPECT_TRUE(destroyed->Constructor(500, 100));
  add(routes, "_BLIST::Destructor", [destroyed] {
    destroyed->Destructor();
    *destroyed = {};
  });
  const auto matrix = std::make_shared<double**>(MakeMatrix(3, 4));
  add(routes, "FreeMatrix", [matrix] {
    if (*matrix != nullptr) FreeMatrix(*matrix);
    *matrix = nullptr;
  });
}

void add_line_steps(std::vector<Route>& routes) {
  using Bytes = std::array<unsigned char, 32 * 32>;
  const auto gray = std::make_shared<Bytes>();
  const auto edge = std::make_shared<Bytes>();
  const auto direction = std::make_shared<Bytes>();
  for (std::size_t i = 0; i < gray->size(); ++i) (*gray)[i] = static_cast<unsigned char>(i % 32 < 16 ? 20 : 200);
  add(routes, "Sobel_Operator", [gray, edge, direction] {
    Sobel_Operator(gray->data(), edge->data(), direction->data(), 32, 32, 32, {8, 24, 24, 8, 0});
  });
  add(routes, "CalcPointCenter", [edge, direction] {
    std::array<float, 2048> points{};
    int count = 0;
    CalcPointCenter(edge->data(), direction->data(), points.data(), count, 32, 32, 2);
  });
  add(routes, "CalcPointCenter2", [edge, direction] {
    std::array<typePoint, 1024> points{};
    int count = 0;
    CalcPointCenter2(edge->data(), direction->data(), points.data(), count, 0, 32, 0, 32, 32, 2);
  });
  add(routes, "EstimateWB", [gray] { EstimateWB(gray->data(), 2, 30, 2, 30, 32); });
  add(routes, "EstimateBlkPixel", [gray] { EstimateBlkPixel(gray->data(), 2, 30, 2, 30, 32, 0); });
  add(routes, "Sobel_Edge", [gray, edge] { Sobel_Edge(gray->data(), edge->data(), 32, 2, 9, 20, 60, 29, 30); });
  add(routes, "HProjection", [gray] {
    std::array<unsigned short, 32> sums{};
    HProjection(gray->data(), 32, 32, sums.data());
  });
  add(routes, "VProjection", [gray] {
    std::array<unsigned short, 32> sums{};
    VProjection(gray->data(), 32, 32, sums.data());
  });
  add(routes, "RawData2RGB", [gray] {
    std::array<unsigned char, 100> planes{};
    RawData2RGB(gray->data(), planes.data(), planes.data() + 30, planes.data() + 60, 3, 10, 10, 32);
  });
  const auto pieces = std::make_shared<support::Pieces>();
  pieces->add(10, 10, 3, 4, 7);
  const struct {
    const char* name;
    bool (*verify)(_BNODE*, int, int, int, int, short);
  } verifiers[] = {{"VerifyCorrectLineV_2", VerifyCorrectLineV_2},
                   {"VerifyCorrectLineV_3", VerifyCorrectLineV_3},
                   {"VerifyCorrectLineV_3_ORVA", VerifyCorrectLineV_3_ORVA},
                   {"VerifyCorrectLineH_0", VerifyCorrectLineH_0}};
  for (const auto& [name, verify] : verifiers) {
    add(routes, name, [pieces, verify = verify] {
      for (int side = 0; side < 4; ++side) verify(pieces->line(), 20, 400, 200, side, 0);
    });
  }
}

void add_geometry(std::vector<Route>& routes, Scans& s) {
  add(routes, "CalcUnknownFun", [] { CalcUnknownFun(1, 2, 3, 4, 5, 6); });
  add(routes, "CalIntersectPoint", [] {
    std::array<double, 8> normal = {0, 1, 0, 1, 1, 0, 1, 0};
    std::array<double, 4> distance = {90, 5, 4, 80};
    std::array<float, 8> corners{};
    EXPECT_TRUE(CalIntersectPoint(normal.data(), distance.data(), corners.data()));
  });
  for (const auto verify : {VerifyCorrectLoc, VerifyCorrectLoc_M}) {
    add(routes, verify == VerifyCorrectLoc ? "VerifyCorrectLoc" : "VerifyCorrectLoc_M", [verify] {
      std::array<float, 8> corners = {4, 90, 80, 90, 4, 5, 80, 5};
      std::array<float, 8> box = corners;
      verify(corners.data(), box.data(), 100, 90);
    });
  }
  add(routes, "comp_ycoord", [] {
    const std::array<float, 4> points{};
    comp_ycoord(points.data(), points.data() + 2);
  });
  add(routes, "SolveMultiUnknownFunc", [] {
    std::array<double, 8> coefficients{};
    std::array<float, 8> from = {4, 5, 80, 6, 7, 90, 81, 92};
    std::array<float, 8> to = {0, 0, 99, 0, 0, 99, 99, 99};
    EXPECT_EQ(SolveMultiUnknownFunc(coefficients.data(), from.data(), to.data(), 8), 1);
  });
  add(routes, "Get_U", [] { Get_U(1, 2, 3, 4, 5, 6); });
  add(routes, "Get_V", [] { Get_V(1, 2, 3, 4, 5, 6); });
  add(routes, "Bilinear", [&s] { Bilinear(4.5f, 5.5f, s.gray.ptr()->pBits, 160, 200, s.gray.stride(), 8); });
  const auto target = std::make_shared<Image>(200, 160, 24);
  const auto narrow = std::make_shared<Image>(20, 16, 24);
  const auto warp = [&s](auto convert, const std::shared_ptr<Image>& into) {
    return [&s, convert, into] {
      std::array<double, 8> coefficients = {1, 0, 0, 0, 1, 0, 0, 0};
      std::array<double, 4> rect = {1, 1, 20, 16};
      convert(s.colour.ptr(), into->ptr(), coefficients.data(), rect.data(), 24);
    };
  };
  add(routes, "ConvertImg", warp(ConvertImg, target));
  add(routes, "ConvertImg2", warp(ConvertImg2, target));
  add(routes, "ConvertImg3", warp(ConvertImg3, narrow));
  add(routes, "ColorDiff", [] { ColorDiff(1, 2, 3, 4, 5, 6); });
  add(routes, "BiCubicDir", [] { BiCubicDir(1, 2, 3, 4); });
  add(routes, "ClipImg", [&s] {
    int first = 0;
    int second = 0;
    EXPECT_TRUE(ClipImg(s.gray.ptr(), first, second));
  });
}

}  // namespace

void add_those_without_memory(std::vector<Route>& routes, Scans& scans) {
  add_cards_operations(routes);
  add_list(routes);
  add_line_steps(routes);
  add_geometry(routes, scans);
  add(routes, "GetDllPath", GetDllPath);
  add(routes, "initializer", initializer);
  add(routes, "finalizer", finalizer);
  const auto block = std::make_shared<BITMAPPTR>();
  EXPECT_TRUE(CreateImage(block.get(), 9, 7, 8, 0, 0));
  add(routes, "FreeCardImg", [block] {
    EXPECT_EQ(FreeCardImg(reinterpret_cast<void**>(&block->pInfo)), 1);
    block->pInfo = nullptr;
  });
}

}  // namespace faults
