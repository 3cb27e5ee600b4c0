#include <string>
#include <utility>
#include <vector>

#include "cards/scans.h"
#include "faults/routes.h"

namespace faults {
namespace {

using pictures::Memory;
using support::append;

/** Missing memory is a code of its own, which the routes call -1. */
int code_of(vantrel_status status) { return status == VANTREL_ERROR_MEMORY ? -1 : static_cast<int>(status); }

Answer found_on(const vantrel_image& scan, const vantrel_find_options* options) {
  vantrel_cards* cards = nullptr;
  Answer answer{code_of(vantrel_find(&scan, options, &cards)), {}};
  EXPECT_EQ(cards == nullptr, answer.code != VANTREL_OK);
  vantrel_card card = VANTREL_CARD_INIT;
  for (std::size_t i = 0; vantrel_cards_get(cards, i, &card) == VANTREL_OK; ++i) append(answer, card.corners);
  vantrel_cards_release(cards);
  return answer;
}

void add_search(std::vector<Route>& routes, const std::string& name, Memory memory, vantrel_method method, double dpi) {
  routes.push_back({"vantrel_find, " + name, {-1}, {}, [memory = std::move(memory), method, dpi] {
                      pictures::Only only(method);
                      only.straighten = 1;
                      return found_on(memory.image(dpi), &only);
                    }});
}

void add_searches(std::vector<Route>& routes) {
  for (const vantrel_format format : {VANTREL_FORMAT_GRAY, VANTREL_FORMAT_BGR, VANTREL_FORMAT_RGBA}) {
    const std::string name = ", " + std::to_string(vantrel_format_bits(format)) + " bits";
    add_search(routes, "dark glass" + name, pictures::card_on_glass(format), VANTREL_METHOD_DARK_GLASS, 300);
    add_search(routes, "flat light" + name, pictures::copy_of(pictures::card_on_flat_ground(), format),
               VANTREL_METHOD_FLAT_LIGHT, 0);
  }
  // Small, as it is searched anew for each of many allocations.
  Memory small(120, 90, VANTREL_FORMAT_RGBA);
  small.draw([](int x, int y) {
    const bool card = x >= 20 && x < 100 && y >= 20 && y < 70;
    return card ? pictures::Colour{180, 190, 200, 9} : pictures::Colour{40, 30, 35, 9};
  });
  add_search(routes, "anywhere", std::move(small), VANTREL_METHOD_ANYWHERE, 0);
  const support::Image sheet = support::scan_of(support::turned_card(600, 500, 1065, 660, 2), 1200, 1000, 24);
  add_search(routes, "sheet, straightened", pictures::copy_of(sheet, VANTREL_FORMAT_BGR), VANTREL_METHOD_SHEET, 300);
  routes.push_back({"vantrel_find, all methods", {-1}, {}, [memory = Memory(120, 90, VANTREL_FORMAT_RGB)] {
                      return found_on(memory.image(300), nullptr);
                    }});
}

using Make = vantrel_status (*)(const vantrel_image&, vantrel_picture*);

/** Into a block of the library's, where the picture stays empty without memory. */
void add_picture(std::vector<Route>& routes, const char* name, Make make) {
  routes.push_back({name, {-1}, {}, [memory = pictures::card_on_glass(VANTREL_FORMAT_BGRA), make] {
                      pictures::Picture picture;
                      Answer answer{code_of(make(memory.image(), &picture)), {}};
                      EXPECT_EQ(picture.data == nullptr, answer.code != VANTREL_OK);
                      if (picture.data == nullptr) return answer;
                      for (const int byte : picture.bytes()) answer.bytes.push_back(static_cast<unsigned char>(byte));
                      return answer;
                    }});
}

}  // namespace

void add_cards(std::vector<Route>& routes) {
  add_searches(routes);
  add_picture(routes, "vantrel_cut", [](const auto& image, auto* target) {
    const vantrel_quad corners = pictures::upright(30, 20, 370, 280);
    return vantrel_cut(&image, &corners, 0, target);
  });
  add_picture(routes, "vantrel_crop", [](const auto& image, auto* target) {
    const vantrel_rect rectangle = {10, 10, 200, 200};
    return vantrel_crop(&image, &rectangle, target);
  });
  add_picture(routes, "vantrel_reduce",
              [](const auto& image, auto* target) { return vantrel_reduce(&image, 3, target); });
  add_picture(routes, "vantrel_convert",
              [](const auto& image, auto* target) { return vantrel_convert(&image, target); });
  add_picture(routes, "vantrel_enlarge, linear",
              [](const auto& image, auto* target) { return vantrel_enlarge(&image, VANTREL_ENLARGE_LINEAR, target); });
  add_picture(routes, "vantrel_enlarge, cubic",
              [](const auto& image, auto* target) { return vantrel_enlarge(&image, VANTREL_ENLARGE_CUBIC, target); });
}

}  // namespace faults
