/**
 * @file routes.h
 * @brief Every way through the exported functions on which the allocations are failed in turn.
 */
#ifndef VANTREL_TESTS_FAULTS_ROUTES_H
#define VANTREL_TESTS_FAULTS_ROUTES_H

#include <functional>
#include <string>
#include <vector>

#include "support/answer.h"
#include "support/image.h"
#include "support/scans.h"

namespace faults {

using support::Answer;
using support::Image;

/** One way through a function, whose name it begins with; a comma ends it. */
struct Route {
  std::string name;
  std::vector<int> when_failed; /**< the codes that missing memory may show as */
  std::vector<Image*> inputs;
  std::function<Answer()> run;

  std::string function() const { return name.substr(0, name.find(',')); }
};

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
  Image framed = framed_card();
  Image slender = noise(4, 6000);
  Image flat = flat_card(8);
  Image flat_colour = flat_card(24);
  Image sheet = sheet_of_cards(8);
  Image colour_sheet = sheet_of_cards(24);
  Image bilevel_sheet = sheet_of_cards(1);

  /** A card whose frame runs along its borders: which of two lines is one is decided by a count of the edge pixels. */
  static Image framed_card() {
    Image image(300, 240, 8, 40);
    support::fill(image, 14, 286, 12, 228, 130);
    support::fill(image, 30, 270, 25, 215, 240);
    return image;
  }

  /** Cells for all angles at once would be more than such an image justifies: they are taken in slices. */
  static Image noise(int width, int height) {
    Image image(width, height, 8);
    support::Random random(7);
    support::randomise(image, random);
    return image;
  }

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

/** Those of vantrel.h that take images, and the resamplers and copies behind them. */
void add_operations(std::vector<Route>& routes, Scans& scans);
/** The steps of the border searches, and the block list. */
void add_pieces(std::vector<Route>& routes, Scans& scans);
/** Those of vantrel_cards.h. */
void add_cards(std::vector<Route>& routes);
/** Every function that takes no memory at all. */
void add_those_without_memory(std::vector<Route>& routes, Scans& scans);

}  // namespace faults

#endif
