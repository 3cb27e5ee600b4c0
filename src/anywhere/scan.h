/**
 * @file scan.h
 * @brief A scan as the finder reads it: pixels of any layout, row 0 at the top.
 */
#ifndef VANTREL_ANYWHERE_SCAN_H
#define VANTREL_ANYWHERE_SCAN_H

#include <cstdint>

#include "image/view.h"

namespace vantrel::anywhere {

/** How a pixel lies in memory. */
enum class Layout { kGray, kBgr, kRgb, kBgra, kRgba, kBilevel };

/** Whether its pixels have more than lightness. */
constexpr bool has_colour(Layout layout) { return layout != Layout::kGray && layout != Layout::kBilevel; }

/** A scan; the view's first row is the picture's top row. */
struct Scan {
  image::ConstPixels pixels;
  Layout layout;
};

/** A pixel of one byte. */
struct GrayPixels {
  static constexpr int kBytes = 1;
  static constexpr int kBlue = 0, kGreen = 0, kRed = 0; /**< bytes from the pixel's first */
};

/** A pixel of kPixelBytes bytes, the first of which is blue, or the third. */
template <int kPixelBytes, int kBlueByte>
struct ColourPixels {
  static constexpr int kBytes = kPixelBytes;
  static constexpr int kBlue = kBlueByte, kGreen = 1, kRed = 2 - kBlueByte;
};

/** A pixel of one bit, the leftmost in the highest bit of a byte: 0 black, 1 white. */
struct BilevelPixels {
  static constexpr int kBytes = 0;
  static int level(const unsigned char* row, int col) { return (row[col >> 3] >> (7 - (col & 7)) & 1) * 255; }
};

/** Calls `function` with the pixel type of a layout, so that the loops within know the layout when they are compiled.
 */
template <class Function>
auto with_pixels(Layout layout, Function function) {
  // Never: these are all layouts.
  switch (layout) {
    case Layout::kBgr:
      return function(ColourPixels<3, 0>{});
    case Layout::kRgb:
      return function(ColourPixels<3, 2>{});
    case Layout::kBgra:
      return function(ColourPixels<4, 0>{});
    case Layout::kRgba:
      return function(ColourPixels<4, 2>{});
    case Layout::kBilevel:
      return function(BilevelPixels{});
    case Layout::kGray:
      break;
  }
  return function(GrayPixels{});
}

}  // namespace vantrel::anywhere

#endif
