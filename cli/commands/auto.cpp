#include <algorithm>
#include <memory>

#include "batch.h"
#include "card_options.h"
#include "card_picture.h"
#include "commands/commands.h"
#include "ground.h"
#include "split_cards.h"

namespace tool {
namespace {

struct AutoOptions : CardOptions {};

/** Why the method of a card was believed. */
std::string words_of_choice(const CardSearch& search) {
  return search.first_claimed()->card.method == VANTREL_METHOD_DARK_GLASS
             ? "by the method for dark glass, which saw more sides than a search anywhere"
             : "by borders anywhere on the scan";
}

Finding finding_of_borders(const CardSearch& search, const AutoOptions& options, const Bitmap& scan) {
  Finding finding;
  finding.found = search.claimed_cards() > 0;
  finding.certainty = search.certainty();
  finding.confidence = search.confidence();
  finding.advice = advice_of(search);
  finding.message = finding.found && !options.verbose ? brief_words_of(search) : words_of(search);
  const Ground ground = ground_of(scan, search);
  if (finding.found) {
    const std::string guesses = words_of_guesses(search);
    finding.message += guesses.empty() ? "" : ", " + guesses;
    if (options.verbose) finding.message += ", on " + words_of(ground) + ": found " + words_of_choice(search);
  }
  finding.details = [search, ground] {
    Json json = json_of(search);
    json["ground"] = name_of(ground);
    return json;
  };
  finding.draw = [search](Canvas& canvas) { draw(search, canvas); };
  if (options.detect_only || !finding.found) return finding;
  for (const FoundCard& found : search.cards) {
    if (found.claimed()) {
      finding.pictures.push_back(oriented(card_picture(scan, search, found.card), options.orientation));
    }
  }
  return finding;
}

/** Of marks that are no cards by their looks nothing is told: to split the scan as a sheet would find no more. */
void drop_marks(CardSearch& search) {
  const auto by_marks = [](const FoundCard& found) { return found.card.method == VANTREL_METHOD_SHEET; };
  search.cards.erase(std::remove_if(search.cards.begin(), search.cards.end(), by_marks), search.cards.end());
}

/** A sheet of cards without borders is taken for one where enough of them show print, or as many as are asked for. */
Finding finding_of_marks(CardSearch& search, const AutoOptions& options, const Bitmap& scan) {
  const std::size_t least =
      options.cards > 0 ? std::min(static_cast<std::size_t>(options.cards), kFewestByMarks) : kFewestByMarks;
  SplitRequest request{VANTREL_METHOD_SHEET, false, !options.detect_only, {}};
  request.cards.demands = options.demands;
  SplitCards marks{search, find_sheet_cards(scan, {false, options.cards}), 0, true};
  marks.without_evidence = keep_evident(marks.sheet, search, scan);
  if (marks.sheet.cards.empty()) drop_marks(search);
  if (marks.sheet.cards.size() < least) return {};
  Finding finding = sheet_finding(marks, request, options.orientation, scan);
  if (options.verbose) finding.message += ", found as on a sheet of cards";
  return finding;
}

Finding choose(const AutoOptions& options, Scan& scan) {
  const CardRequest request{{}, Analysis::kReduced, 1, options.cards, options.alternatives, options.demands};
  CardSearch search = search_cards(scan.image, request);
  if (search.claimed_cards() == 0 && !search.blank && options.cards != 1) {
    Finding finding = finding_of_marks(search, options, scan.image);
    if (finding.found) return finding;
  }
  return finding_of_borders(search, options, scan.image);
}

}  // namespace

Command add_auto(CLI::App& tool) {
  auto options = std::make_shared<AutoOptions>();
  CLI::App* command =
      tool.add_subcommand("auto", "Find all the cards on each scan, on any ground, and write each (the default)");
  add_input_options(*command, *options);
  add_output_options(*command, *options);
  add_card_options(*command, *options);
  add_overlay_option(*command, *options);
  add_review_options(*command, *options);
  add_detect_only_option(*command, *options);
  return {command, [options] {
            const Naming naming = options->cards == 1 ? Naming::kOneFile : Naming::kOneOrMoreFiles;
            return run_batch(*options, naming, {}, [options](Scan& scan) { return choose(*options, scan); });
          }};
}

}  // namespace tool
