#include <algorithm>
#include <memory>
#include <optional>

#include "batch.h"
#include "card_options.h"
#include "card_search.h"
#include "commands/commands.h"
#include "library.h"
#include "rectangle.h"
#include "sheet.h"

namespace tool {
namespace {

struct SplitOptions : CardOptions {
  bool straighten = false;
};

std::string count_of(std::size_t cards) { return std::to_string(cards) + (cards == 1 ? " card" : " cards"); }

/** @param cut whether the cards were cut, and so straightened or not. */
Json json_of_split(const Sheet& sheet, bool cut) {
  Json json = json_of(sheet);
  json["method"] = sheet.cards.empty() ? Json() : Json("sheet");
  for (std::size_t i = 0; cut && i < sheet.cards.size(); ++i) {
    json["cards"][i]["straightened"] = sheet.cards[i].seen.straightened != 0;
  }
  return json;
}

/** The cards by their marks, as the segmentation of a sheet finds them. */
Finding finding_of(const Sheet& sheet, const SplitOptions& options, const Bitmap& scan) {
  Finding finding;
  finding.found = !sheet.cards.empty();
  finding.message = finding.found ? count_of(sheet.cards.size()) : reason_without_cards(sheet, scan);
  finding.details = [sheet, cut = !options.detect_only] { return json_of_split(sheet, cut); };
  int straightened = 0;
  for (const SheetCard& card : sheet.cards) {
    straightened += card.seen.straightened;
    if (options.detect_only) continue;
    finding.pictures.push_back(oriented(take_card(scan, card), options.orientation));
  }
  if (finding.found && options.straighten) finding.message += ", " + std::to_string(straightened) + " straightened";
  finding.draw = [sheet](Canvas& canvas) { draw(sheet, canvas, kGreen); };
  return finding;
}

/** The cards by their borders, each straightened. */
Finding finding_of(const CardSearch& search, const SplitOptions& options, const Bitmap& scan) {
  Finding finding;
  finding.found = search.sure_cards() > 0;
  finding.message = finding.found ? count_of(search.sure_cards()) : words_of(search);
  const std::string guesses = words_of_guesses(search);
  if (finding.found && !guesses.empty()) finding.message += ", " + guesses;
  finding.details = [search] {
    return Json{{"result", 1},
                {"cards", json_of_cards(search)},
                {"method", search.sure_cards() > 0 ? Json("anywhere") : Json()}};
  };
  finding.draw = [search](Canvas& canvas) { draw_cards(search, canvas); };
  if (options.detect_only) return finding;
  for (const FoundCard& found : search.cards) {
    if (found.sure) finding.pictures.push_back(oriented(cut(scan, found.card.corners), options.orientation));
  }
  return finding;
}

vantrel_point middle_of(const vantrel_quad& q) {
  return {(q.top_left.x + q.bottom_right.x) / 2, (q.top_left.y + q.bottom_right.y) / 2};
}

bool holds(const vantrel_rect& r, const vantrel_point& p) {
  return r.left <= p.x && p.x < r.right && r.top <= p.y && p.y < r.bottom;
}

/** Whether a point lies on the right of every side, as one goes round clockwise. */
bool holds(const vantrel_quad& q, const vantrel_point& p) {
  const auto right_of = [&](const vantrel_point& a, const vantrel_point& b) {
    return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x) >= 0;
  };
  return right_of(q.top_left, q.top_right) && right_of(q.top_right, q.bottom_right) &&
         right_of(q.bottom_right, q.bottom_left) && right_of(q.bottom_left, q.top_left);
}

/** Whether a card by its marks and one by its borders are the same one, or one lies on the other. */
bool are_same(const SheetCard& marks, const vantrel_quad& borders) {
  const vantrel_rect& r = marks.seen.place;
  return holds(r, middle_of(borders)) || holds(borders, {(r.left + r.right) / 2.0, (r.top + r.bottom) / 2.0});
}

/**
 * Whether the segmentation sees more cards: on a sheet whose cards have no borders, print on paper on a white lid.
 * Marks that lie on one card with borders, be they several, are that card's.
 */
bool shows_more(const Sheet& sheet, const CardSearch& anywhere) {
  std::vector<bool> counted(anywhere.cards.size());
  std::size_t cards = 0;
  for (const SheetCard& marks : sheet.cards) {
    std::size_t i = 0;
    while (i < counted.size() && !(anywhere.cards[i].sure && are_same(marks, anywhere.cards[i].card.corners))) ++i;
    if (i < counted.size() && counted[i]) continue;
    if (i < counted.size()) counted[i] = true;
    ++cards;
  }
  return cards > anywhere.sure_cards();
}

CardSearch look_anywhere(const SplitOptions& options, const Bitmap& scan) {
  CardRequest request;
  request.method = VANTREL_METHOD_ANYWHERE;
  request.most_cards = options.cards;
  request.alternatives = options.alternatives;
  return search_cards(scan, request);
}

/** Why nothing was found for sure: what the segmentation says, and what may lie there all the same. */
Finding finding_of_none(const CardSearch& anywhere, const Sheet& sheet, const SplitOptions& options,
                        const Bitmap& scan) {
  Finding finding = finding_of(anywhere, options, scan);
  finding.details = [details = finding.details, sheet] {
    Json json = details();
    json["result"] = json_of(sheet)["result"];
    return json;
  };
  finding.message = (anywhere.cards.empty() ? "" : words_of(anywhere) + "; ") + reason_without_cards(sheet, scan);
  return finding;
}

Finding split(const SplitOptions& options, Scan& scan) {
  std::optional<CardSearch> anywhere;
  if (options.method != VANTREL_METHOD_SHEET) anywhere = look_anywhere(options, scan.image);
  if (options.method == VANTREL_METHOD_ANYWHERE) return finding_of(*anywhere, options, scan.image);
  const Sheet sheet = find_sheet_cards(scan.image, {options.straighten && !options.detect_only, options.cards});
  if (!anywhere || shows_more(sheet, *anywhere)) return finding_of(sheet, options, scan.image);
  return anywhere->sure_cards() > 0 ? finding_of(*anywhere, options, scan.image)
                                    : finding_of_none(*anywhere, sheet, options, scan.image);
}

}  // namespace

Command add_split(CLI::App& tool) {
  auto options = std::make_shared<SplitOptions>();
  CLI::App* command =
      tool.add_subcommand("split", "Write each card on scanned sheets of several cards to its own file");
  add_input_options(*command, *options);
  add_output_options(*command, *options);
  add_method_option(
      *command, *options, {"sheet"},
      "Find the cards anywhere by their borders, or as a sheet of one or two columns by the marks on them; "
      "auto (default): what shows more");
  add_card_options(*command, *options);
  command->add_flag("--straighten", options->straighten,
                    "Straighten each card by its own corners where they are found");
  add_overlay_option(*command, *options);
  add_detect_only_option(*command, *options);
  return {command, [options] {
            return run_batch(*options, Naming::kNumberedFiles, {},
                             [options](Scan& scan) { return split(*options, scan); });
          }};
}

}  // namespace tool
