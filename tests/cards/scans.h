/**
 * @file scans.h
 * @brief Drawn scans for the finders, in any format and order of rows.
 */
#ifndef VANTREL_TESTS_CARDS_SCANS_H
#define VANTREL_TESTS_CARDS_SCANS_H

#include "cards/pictures.h"
#include "support/drawing.h"
#include "support/scans.h"

namespace pictures {

/** A copy of an image of 8 or 24 bits in a format of bytes. */
inline Memory copy_of(const support::Image& image, vantrel_format format, Rows rows = Rows::kFromTop, int gap = 0) {
  Memory memory(image.width(), image.height(), format, rows, gap);
  const int channels = support::channels_of(image);
  return memory.draw([&](int x, int y) {
    const unsigned char* pixel = image.row(image.height() - 1 - y) + x * channels;
    if (channels == 1) return Colour{pixel[0], pixel[0], pixel[0], 9};
    return Colour{pixel[0], pixel[1], pixel[2], 9};
  });
}

/** A gray card on dark glass: columns 30 to 369 and rows 20 to 279 of 400 x 300, `times` as large. */
inline Memory card_on_glass(vantrel_format format = VANTREL_FORMAT_GRAY, Rows rows = Rows::kFromTop, int gap = 0,
                            int times = 1) {
  Memory memory(400 * times, 300 * times, format, rows, gap);
  return memory.draw([times](int x, int y) {
    const bool card = x >= 30 * times && x < 370 * times && y >= 20 * times && y < 280 * times;
    return card ? Colour{180, 190, 200, 9} : Colour{40, 30, 35, 9};
  });
}

/** A card on a flat ground, of 300 x 400 pixels: found in colour at columns 22 to 279 and rows 53 to 339. */
inline support::Image card_on_flat_ground() {
  support::Image image(300, 400, 24, 50);
  support::soft_slab(image, 22, 280, 60, 345, 50, 200);
  return image;
}

/** A blackened rectangle. */
struct Block {
  int left;
  int top;
  int right;
  int bottom;
};

/** A white bilevel sheet with black rectangles. */
inline Memory sheet_with(int width, int height, const std::vector<Block>& blocks,
                         vantrel_format format = VANTREL_FORMAT_BILEVEL, Rows rows = Rows::kFromTop) {
  Memory memory(width, height, format, rows);
  return memory.draw([&](int x, int y) {
    for (const Block& block : blocks) {
      if (x >= block.left && x < block.right && y >= block.top && y < block.bottom) return Colour{0, 0, 0};
    }
    return Colour{255, 255, 255};
  });
}

}  // namespace pictures

#endif
