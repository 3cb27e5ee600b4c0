#include <memory>

#include "batch.h"
#include "commands/commands.h"
#include "failure.h"
#include "flat_card.h"
#include "library.h"
#include "rectangle.h"
#include "twin_scan.h"
#include "words.h"

namespace tool {
namespace {

struct CutOptions : Options {
  std::string hi_res;
  int scale = 1;
};

/** The rectangle in the scan that is cut: its first and last columns and rows, counted from the bottom, times the
 * scale. */
vantrel_rect scaled_rectangle(const vantrel_rect& seen, int scale, const Bitmap& searched, const Bitmap& target) {
  const auto column = [&](int x) { return x * scale; };
  const auto row = [&](int y) { return target.height() - 1 - (searched.height() - 1 - y) * scale; };
  return {column(seen.left), row(seen.top), column(seen.right - 1) + 1, row(seen.bottom - 1) + 1};
}

Finding cut_out(const CutOptions& options, Scan& scan) {
  const FlatCard card = find_flat_card(scan.image);
  if (!card.searched()) throw Failure(words_of(card.reason));
  Bitmap hi_res;
  if (!options.hi_res.empty())
    hi_res = read_twin(options, options.hi_res, scan.image, TwinRole::kEnlarged, options.scale);
  if (!hi_res.empty() && options.dpi != 0) hi_res.set_resolution({options.dpi, options.dpi});
  const Bitmap& target = hi_res.empty() ? scan.image : hi_res;
  const vantrel_rect& seen = card.seen.rectangle;
  const vantrel_rect rectangle = clamped(scaled_rectangle(seen, options.scale, scan.image, target), target);

  Finding finding;
  finding.found = card.sides_found() > 0 && lies_within(rectangle, target);
  finding.message =
      finding.found ? "card " + words_of(rectangle) + ", " + std::to_string(card.sides_found()) + " of 4 sides found"
                    : "no side of a card on a flat background was found";
  finding.details = [card, rectangle, &options] {
    return Json{{"result", 1}, {"sides", sides_of(card)}, {"rectangle", json_of(rectangle)}, {"scale", options.scale}};
  };
  finding.draw = [seen, found = finding.found](Canvas& canvas) { canvas.frame(seen, found ? kGreen : kAmber); };
  if (finding.found && !options.detect_only) finding.pictures.push_back(crop(target, rectangle));
  return finding;
}

}  // namespace

Command add_cut(CLI::App& tool) {
  auto options = std::make_shared<CutOptions>();
  CLI::App* command =
      tool.add_subcommand("cut", "Find the upright rectangle of a card on a flat background and cut it out");
  add_input_options(*command, *options);
  add_output_options(*command, *options);
  command->add_flag("--keep-unclipped", options->keep_unclipped, "Write the scan as it is when no card is found");
  CLI::Option* scale =
      command->add_option("--scale", options->scale, "How many times larger than INPUT the scan of --hi-res is")
          ->type_name("N")
          ->check(CLI::Range(1, 1000));
  CLI::Option* hi_res =
      command->add_option("--hi-res", options->hi_res, "Cut the card out of this larger scan of the same scene")
          ->type_name("FILE");
  hi_res->needs(scale);
  scale->needs(hi_res);
  add_overlay_option(*command, *options);
  add_detect_only_option(*command, *options);
  return {command, [options] {
            check_twin(*options, options->hi_res, "--hi-res", options->scale);
            std::vector<std::string> also_read;
            if (!options->hi_res.empty()) also_read.push_back(options->hi_res);
            return run_batch(*options, Naming::kOneFile, also_read,
                             [options](Scan& scan) { return cut_out(*options, scan); });
          }};
}

}  // namespace tool
