/**
 * @file card_search.h
 * @brief Cards looked for by one method, or by what is surest: found, put into words, into JSON and onto an overlay.
 */
#ifndef VANTREL_CLI_CARD_SEARCH_H
#define VANTREL_CLI_CARD_SEARCH_H

#include <optional>
#include <string>
#include <vector>

#include "certainty.h"
#include "corner_search.h"

namespace tool {

/** What to look for, and how. */
struct CardRequest {
  std::optional<vantrel_method> method; /**< none: what is surest */
  Analysis analysis = Analysis::kReduced;
  int scale = 1;        /**< from the searched scan to the scan that is cut */
  int most_cards = 0;   /**< 0: as many as there are */
  int alternatives = 0; /**< so many are told of each card */
  Demands demands;
};

/** A card, in the coordinates of the searched scan. */
struct FoundCard {
  vantrel_card card;
  std::vector<vantrel_card> alternatives;
  Judgement judgement;

  /** Whether it may be cut. */
  bool claimed() const { return judgement.certainty != Certainty::kGuess; }
};

struct CardSearch {
  std::optional<CornerSearch> glass; /**< what was seen on dark glass, where it was looked for */
  vantrel_reason reason; /**< why there is no card anywhere; found, where there is one or none was looked for */
  std::vector<FoundCard> cards;
  int width; /**< of the searched scan */
  int height;
  int scale;
  bool asked; /**< whether one method alone was asked for */
  bool blank; /**< nothing was found, for there is nothing at all on the scan */

  std::size_t claimed_cards() const;
  /** The first card that is not a guess; null without one. */
  const FoundCard* first_claimed() const;
  /** That of the least certain card that is claimed. */
  Certainty certainty() const;
  /** The least one of a card that is claimed; 0 without one. */
  double confidence() const;
  /** The corners of a card in the scan that is cut. */
  vantrel_quad corners(const vantrel_card& card) const;
};

/** Looks for cards on a scan. @throws Failure, std::bad_alloc */
CardSearch search_cards(const Bitmap& scan, const CardRequest& request);

/** "3 of 4 sides found (left: weak), tilt 3.1 degrees, confidence 0.87"; of several cards how many; else why none. */
std::string words_of(const CardSearch& search);

/** Of what is claimed the method, sides and confidence alone: "4 sides by borders, confidence 0.98". */
std::string brief_words_of(const CardSearch& search);

/** What may help where nothing is claimed; empty where nothing does. */
std::string advice_of(const CardSearch& search);

/** "1 guess left out", or nothing. */
std::string words_of_guesses(const CardSearch& search);

/** For each card its method, certainty, confidence, tilt, corners, sides and alternatives. */
Json json_of_cards(const CardSearch& search);

/** What `clip` tells: of the first card that is claimed, else of the search on dark glass; and all cards. */
Json json_of(const CardSearch& search);

/** Draws each card's sides by how they were found, its number and confidence, and its alternatives with thin lines. */
void draw_cards(const CardSearch& search, Canvas& canvas);

/** Draws what was seen on dark glass where that is what counts, and the cards that were found otherwise. */
void draw(const CardSearch& search, Canvas& canvas);

}  // namespace tool

#endif
