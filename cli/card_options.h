/**
 * @file card_options.h
 * @brief The options of the subcommands that find cards: by which method, how many, how they are turned.
 */
#ifndef VANTREL_CLI_CARD_OPTIONS_H
#define VANTREL_CLI_CARD_OPTIONS_H

#include <optional>

#include "bitmap.h"
#include "certainty.h"
#include "options.h"

namespace tool {

/** How a card is turned after it was cut as it lay. */
struct Orientation {
  bool portrait = false;
  bool landscape = false;
  int degrees = 0; /**< clockwise */
};

struct CardOptions : Options {
  std::optional<vantrel_method> method; /**< none: what is surest */
  int cards = 0;                        /**< the most that are looked for; 0: all */
  int alternatives = 0;
  Orientation orientation;
  Demands demands;
};

/** Adds --method, with the names of the one method or the other that the command takes beside "auto" and "anywhere". */
void add_method_option(CLI::App& command, CardOptions& options, const std::vector<std::string>& others,
                       const std::string& help);

/** Adds --cards, --alternatives, --min-sides, --min-confidence, --portrait, --landscape and --rotate. */
void add_card_options(CLI::App& command, CardOptions& options);

/** Adds --min-sides and --min-confidence. */
void add_demand_options(CLI::App& command, Demands& demands);

/** A picture turned as asked for; a quarter turn that brings it upright or to lie goes clockwise. */
Bitmap oriented(Bitmap picture, const Orientation& orientation);

}  // namespace tool

#endif
