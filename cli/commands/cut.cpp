#include <memory>

#include "batch.h"
#include "commands/commands.h"
#include "flat_card.h"
#include "twin_scan.h"

namespace tool {
namespace {

struct CutOptions : Options {
  std::string hi_res;
  int scale = 1;
};

/** The rectangle in the scan that is cut, rows from the top: its bounds in memory rows times the scale. */
Rectangle scaled_rectangle(const FlatCard& card, int scale, const Bitmap& target) {
  const int last = target.height() - 1;
  return {card.rect.left * scale, last - card.rect.top * scale, card.rect.right * scale,
          last - card.rect.bottom * scale};
}

Finding cut(const CutOptions& options, Scan& scan) {
  const FlatCard card = find_flat_card(scan.image);
  Bitmap hi_res;
  if (!options.hi_res.empty()) hi_res = read_twin(options.hi_res, scan.image, TwinRole::kEnlarged, options.scale);
  if (!hi_res.empty() && options.dpi != 0) hi_res.set_dpi(options.dpi);
  Bitmap& target = hi_res.empty() ? scan.image : hi_res;
  const Rectangle seen = from_memory_rows(card.rect, scan.image.height());
  const Rectangle rectangle = clamped(scaled_rectangle(card, options.scale, target), target);

  Finding finding;
  finding.found = card.sides_found() > 0 && lies_within(rectangle, target);
  finding.message =
      finding.found ? "card " + words_of(rectangle) + ", " + std::to_string(card.sides_found()) + " of 4 sides found"
                    : "no side of a card on a flat background was found";
  finding.details = {
      {"result", 1}, {"sides", sides_of(card)}, {"rectangle", json_of(rectangle)}, {"scale", options.scale}};
  finding.draw = [seen, found = finding.found](Canvas& canvas) {
    canvas.frame(seen.left, seen.top, seen.right, seen.bottom, found ? kGreen : kAmber);
  };
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
                             [options](Scan& scan) { return cut(*options, scan); });
          }};
}

}  // namespace tool
