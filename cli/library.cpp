#include "library.h"

#include <new>
#include <string>

#include "failure.h"

namespace tool {
namespace {

void check(vantrel_status status) {
  if (status == VANTREL_ERROR_MEMORY) throw std::bad_alloc();
  if (status != VANTREL_OK) throw Failure(vantrel_status_text(status));
}

/** A picture of a size and format, and of a scan's resolution, filled by a call that takes where to write it. */
template <class Write>
Bitmap written(int width, int height, vantrel_format format, Resolution resolution, Write write) {
  Bitmap picture(width, height, format, resolution);
  vantrel_picture target = picture.target();
  check(write(&target));
  return picture;
}

/** The record of a method's own function. */
template <class Details>
Details details_of(const Cards& cards, vantrel_status (*tell)(const vantrel_cards*, Details*)) {
  Details details{};
  details.size = sizeof details;
  const vantrel_status status = tell(cards.get(), &details);
  if (status != VANTREL_ERROR_ABSENT) check(status);
  return details;
}

/** Between bits nothing can be sampled: they are cut as gray, which is black below its half. */
Bitmap cut_to(const Bitmap& scan, const vantrel_quad& corners, int width, int height) {
  if (scan.format() == VANTREL_FORMAT_BILEVEL) {
    return bilevel_of(cut_to(converted(scan, VANTREL_FORMAT_GRAY), corners, width, height));
  }
  const vantrel_image view = scan.view();
  return written(width, height, view.format, scan.resolution(),
                 [&](vantrel_picture* target) { return vantrel_cut(&view, &corners, VANTREL_MARGIN_TIGHT, target); });
}

}  // namespace

Cards find(const vantrel_image& scan, std::optional<vantrel_method> method, vantrel_find_options options) {
  if (method) {
    options.methods = &*method;
    options.method_count = 1;
  }
  vantrel_cards* cards = nullptr;
  check(vantrel_find(&scan, &options, &cards));
  return Cards(cards);
}

vantrel_card card_at(const Cards& cards, std::size_t index) {
  vantrel_card card = VANTREL_CARD_INIT;
  check(vantrel_cards_get(cards.get(), index, &card));
  return card;
}

std::vector<vantrel_card> all_cards(const Cards& cards) {
  std::vector<vantrel_card> all;
  for (std::size_t i = 0; i < vantrel_cards_count(cards.get()); ++i) all.push_back(card_at(cards, i));
  return all;
}

std::vector<vantrel_card> alternatives_of(const Cards& cards, std::size_t index) {
  std::vector<vantrel_card> all;
  vantrel_card card = VANTREL_CARD_INIT;
  while (vantrel_cards_alternative(cards.get(), index, all.size(), &card) == VANTREL_OK) all.push_back(card);
  return all;
}

vantrel_dark_glass dark_glass_of(const Cards& cards) { return details_of(cards, vantrel_cards_dark_glass); }

vantrel_flat_light flat_light_of(const Cards& cards) { return details_of(cards, vantrel_cards_flat_light); }

vantrel_sheet sheet_of(const Cards& cards) { return details_of(cards, vantrel_cards_sheet); }

vantrel_quad scaled(const vantrel_quad& quad, double factor) {
  vantrel_quad result{};
  check(vantrel_quad_scale(&quad, factor, &result));
  return result;
}

Bitmap cut(const Bitmap& scan, const vantrel_quad& corners) {
  int32_t width = 0;
  int32_t height = 0;
  check(vantrel_cut_size(&corners, VANTREL_MARGIN_TIGHT, &width, &height));
  return cut_to(scan, corners, width, height);
}

Bitmap cut_onto_frame(const Bitmap& scan, const vantrel_quad& corners) {
  return cut_to(scan, corners, scan.width(), scan.height());
}

Bitmap crop(const Bitmap& image, const vantrel_rect& rectangle) {
  const vantrel_image view = image.view();
  return written(rectangle.right - rectangle.left, rectangle.bottom - rectangle.top, view.format, image.resolution(),
                 [&](vantrel_picture* target) { return vantrel_crop(&view, &rectangle, target); });
}

Bitmap enlarged(const Bitmap& image, vantrel_enlargement method, int width) {
  const vantrel_image view = image.view();
  const auto [x, y] = image.resolution();
  return written(width, 2 * view.height, view.format, {2 * x, 2 * y},
                 [&](vantrel_picture* target) { return vantrel_enlarge(&view, method, target); });
}

Bitmap reduced(const Bitmap& image, int times) {
  const vantrel_image view = image.view();
  const auto [x, y] = image.resolution();
  if (view.width < times || view.height < times) {
    throw Failure("too small to be reduced " + std::to_string(times) + " times");
  }
  return written(view.width / times, view.height / times, view.format, {x / times, y / times},
                 [&](vantrel_picture* target) { return vantrel_reduce(&view, times, target); });
}

Bitmap converted(const Bitmap& image, vantrel_format format) {
  const vantrel_image view = image.view();
  return written(view.width, view.height, format, image.resolution(),
                 [&](vantrel_picture* target) { return vantrel_convert(&view, target); });
}

void convert(const vantrel_image& image, vantrel_picture target) { check(vantrel_convert(&image, &target)); }

}  // namespace tool
