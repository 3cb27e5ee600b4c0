/**
 * @file library.h
 * @brief The library's functions over the tool's pictures: they return their results, and throw instead of a status.
 *
 * All throw std::bad_alloc without memory, and Failure with the library's reason for any other status.
 */
#ifndef VANTREL_CLI_LIBRARY_H
#define VANTREL_CLI_LIBRARY_H

#include <vantrel_cards.h>

#include <memory>
#include <optional>
#include <vector>

#include "bitmap.h"

namespace tool {

struct CardsRelease {
  void operator()(vantrel_cards* cards) const { vantrel_cards_release(cards); }
};
using Cards = std::unique_ptr<vantrel_cards, CardsRelease>;

/** Looks for cards by one method, or by what is surest; the other options as given. */
Cards find(const vantrel_image& scan, std::optional<vantrel_method> method,
           vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT);

vantrel_card card_at(const Cards& cards, std::size_t index);

std::vector<vantrel_card> all_cards(const Cards& cards);

/** The quadrilaterals that a card was preferred to, the likeliest first. */
std::vector<vantrel_card> alternatives_of(const Cards& cards, std::size_t index);

/** What a method saw; empty, but for its size, when it could not look at the scan at all. */
vantrel_dark_glass dark_glass_of(const Cards& cards);
vantrel_flat_light flat_light_of(const Cards& cards);
vantrel_sheet sheet_of(const Cards& cards);

vantrel_quad scaled(const vantrel_quad& quad, double factor);

/**
 * Straightens the quadrilateral between the corners into an upright picture of its own size, without a rim. A bilevel
 * scan gives a bilevel picture.
 */
Bitmap cut(const Bitmap& scan, const vantrel_quad& corners);

/** As above, into a picture of the scan's size. */
Bitmap cut_onto_frame(const Bitmap& scan, const vantrel_quad& corners);

/** Copies a rectangle that lies within the image. */
Bitmap crop(const Bitmap& image, const vantrel_rect& rectangle);

/** @param width of the result; the height is doubled, as is the resolution. */
Bitmap enlarged(const Bitmap& image, vantrel_enlargement method, int width);

/** A copy so many times smaller. @throws Failure also when the image is too small for it. */
Bitmap reduced(const Bitmap& image, int times);

/** A copy in another format. */
Bitmap converted(const Bitmap& image, vantrel_format format);

/** As above, into memory laid out otherwise. */
void convert(const vantrel_image& image, vantrel_picture target);

}  // namespace tool

#endif
