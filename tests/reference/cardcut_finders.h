/**
 * @file cardcut_finders.h
 * @brief The card rectangle on a flat background, by gray levels and by colours, the naive way.
 *
 * A pixel whose differences would read outside the picture is never an edge. `rect.reserved` is left alone.
 */
#ifndef VANTREL_TESTS_REFERENCE_CARDCUT_FINDERS_H
#define VANTREL_TESTS_REFERENCE_CARDCUT_FINDERS_H

#include "support/picture.h"
#include "vantrel.h"

namespace reference {

using support::Picture;

bool cut_card(const Picture& image, MYRECT& rect);
bool cut_card24(const Picture& image, MYRECT& rect);
int color_diff(int r1, int g1, int b1, int r2, int g2, int b2);

}  // namespace reference

#endif
