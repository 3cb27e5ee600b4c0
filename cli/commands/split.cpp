#include <memory>

#include "batch.h"
#include "commands/commands.h"
#include "sheet.h"

namespace tool {
namespace {

struct SplitOptions : Options {
  bool straighten = false;
};

std::string count_of(std::size_t cards) { return std::to_string(cards) + (cards == 1 ? " card" : " cards"); }

Finding split(const SplitOptions& options, Scan& scan) {
  const Sheet sheet = find_sheet_cards(scan.image, options.straighten && !options.detect_only);
  Finding finding;
  finding.found = !sheet.cards.empty();
  finding.message = finding.found ? count_of(sheet.cards.size()) : reason_without_cards(sheet, scan.image);
  finding.details = json_of(sheet);
  int straightened = 0;
  for (std::size_t i = 0; i < sheet.cards.size(); ++i) {
    const SheetCard& card = sheet.cards[i];
    straightened += card.seen.straightened;
    if (options.detect_only) continue;
    finding.details["cards"][i]["straightened"] = card.seen.straightened != 0;
    finding.pictures.push_back(take_card(scan.image, card));
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
