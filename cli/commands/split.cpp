#include <memory>

#include "batch.h"
#include "card_options.h"
#include "commands/commands.h"
#include "split_cards.h"

namespace tool {
namespace {

struct SplitOptions : CardOptions {
  bool straighten = false;
};

Finding split(const SplitOptions& options, Scan& scan) {
  SplitRequest request{options.method, options.straighten, !options.detect_only, {}};
  request.cards.most_cards = options.cards;
  request.cards.alternatives = options.alternatives;
  request.cards.demands = options.demands;
  return split_finding(find_split(scan.image, request), request, options.orientation, scan.image);
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
  add_review_options(*command, *options);
  add_detect_only_option(*command, *options);
  return {command, [options] {
            return run_batch(*options, Naming::kNumberedFiles, {},
                             [options](Scan& scan) { return split(*options, scan); });
          }};
}

}  // namespace tool
