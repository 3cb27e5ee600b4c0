#include <memory>

#include "batch.h"
#include "card_image.h"
#include "commands/commands.h"
#include "sheet.h"

namespace tool {
namespace {

/** Of the card's surroundings, in inches: enough for its borders to lie in the bands where corners are searched. */
constexpr double kMarginBeside = 0.35;
constexpr double kMarginAbove = 0.2;

/** With fewer sides found the rectangle of the sheet is as good. */
constexpr int kSidesToStraighten = 3;

struct SplitOptions : Options {
  bool straighten = false;
};

struct SplitCard {
  Bitmap picture;
  bool straightened;
};

/** Straightens a card by its own corners; an empty picture when they are not found. */
Bitmap straightened_card(Bitmap& sheet, const Rectangle& rectangle) {
  if (sheet.depth() == 1) return {};
  const auto margin = [](double inches, int dpi) { return static_cast<int>(inches * dpi); };
  const Rectangle around =
      widened(rectangle, margin(kMarginBeside, sheet.dpi_x()), margin(kMarginAbove, sheet.dpi_y()));
  Bitmap part = crop(sheet, clamped(around, sheet));
  const CornerSearch search = search_corners(part, 1);
  if (!search.has_card() || search.sides_found() < kSidesToStraighten) return {};
  return card_image(part, search.corners());
}

SplitCard take_card(const SplitOptions& options, Bitmap& sheet, const Rectangle& rectangle) {
  if (options.straighten) {
    Bitmap straight = straightened_card(sheet, rectangle);
    if (!straight.empty()) return {std::move(straight), true};
  }
  return {crop(sheet, clamped(rectangle, sheet)), false};
}

std::string count_of(std::size_t cards) { return std::to_string(cards) + (cards == 1 ? " card" : " cards"); }

Finding split(const SplitOptions& options, Scan& scan) {
  const Sheet sheet = find_sheet_cards(scan.image);
  Finding finding;
  finding.found = !sheet.cards.empty();
  finding.message = finding.found ? count_of(sheet.cards.size()) : reason_without_cards(sheet, scan.image);
  finding.details = {{"result", sheet.result}, {"cards", Json::array()}};
  int straightened = 0;
  for (const SheetCard& card : sheet.cards) {
    Json entry = {{"column", card.column}, {"rectangle", json_of(card.rectangle)}};
    if (!options.detect_only) {
      SplitCard part = take_card(options, scan.image, card.rectangle);
      entry["straightened"] = part.straightened;
      straightened += part.straightened ? 1 : 0;
      finding.pictures.push_back(std::move(part.picture));
    }
    finding.details["cards"].push_back(std::move(entry));
  }
  if (finding.found && options.straighten) finding.message += ", " + std::to_string(straightened) + " straightened";
  finding.draw = [sheet](Canvas& canvas) { draw(sheet, canvas, kGreen); };
  return finding;
}

}  // namespace

Command add_split(CLI::App& tool) {
  auto options = std::make_shared<SplitOptions>();
  CLI::App* command =
      tool.add_subcommand("split", "Write each card on scanned sheets of several cards to its own file");
  add_input_options(*command, *options);
  add_output_options(*command, *options);
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
