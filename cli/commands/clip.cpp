#include <memory>
#include <optional>

#include "batch.h"
#include "card_options.h"
#include "card_picture.h"
#include "card_search.h"
#include "commands/commands.h"
#include "failure.h"
#include "given_entries.h"
#include "help_text.h"
#include "library.h"
#include "twin_scan.h"
#include "words.h"

namespace tool {
namespace {

constexpr const char* kBilevel = "a bilevel scan has no gray levels to search: nothing to correct";

struct ClipOptions : CardOptions {
  std::string size = "card";
  std::string analyse;
  std::string second;
  std::optional<int> scale; /**< without one the library reduces the copy on which it searches */

  ClipOptions() { cards = 1; }
};

/** The scan in which corners are looked for and the one that is cut, where they are not the scan that was read. */
struct Twins {
  Bitmap analysis;
  Bitmap target;
};

Twins read_twins(const ClipOptions& options, const Bitmap& scan) {
  Twins twins;
  const int scale = options.scale.value_or(1);
  if (!options.analyse.empty()) {
    twins.analysis = read_twin(options, options.analyse, scan, TwinRole::kReduced, scale);
  } else if (!options.second.empty()) {
    twins.target = read_twin(options, options.second, scan, TwinRole::kEnlarged, scale);
    if (options.dpi != 0) twins.target.set_resolution({options.dpi, options.dpi});
  } else if (scale > 1) {
    // Of bits no means can be taken.
    twins.analysis = scan.depth() == 1 ? reduced(converted(scan, VANTREL_FORMAT_GRAY), scale) : reduced(scan, scale);
  }
  return twins;
}

Finding nothing_on_bilevel() {
  Finding finding;
  finding.message = kBilevel;
  finding.advice = advice_for(VANTREL_REASON_BILEVEL);
  finding.details = [] { return Json{{"result", 0}, {"verdict", Json()}}; };
  return finding;
}

/** Whether a method looks at levels, of which a bilevel scan has none. */
bool needs_levels(const ClipOptions& options) {
  return options.method == VANTREL_METHOD_DARK_GLASS || options.method == VANTREL_METHOD_FLAT_LIGHT;
}

/** The search as it is drawn on the input: there the corners of a second scan stand where they were found. */
CardSearch on_overlay(const ClipOptions& options, CardSearch search) {
  if (options.second.empty()) return search;
  search.scale = 1;
  if (search.glass) search.glass->scale = 1;
  return search;
}

/** The card on dark glass on the frame of the scan. */
Bitmap stretch(const Bitmap& searched, const Bitmap& target, const CornerSearch& glass) {
  const int reduction = glass.seen.reduction;
  return reduction == 1 ? stretched_card(searched, target, glass.scale)
                        : stretched_card(reduced(searched, reduction), target, glass.scale * reduction);
}

Bitmap cut_card(const ClipOptions& options, const Bitmap& searched, const Bitmap& target, const CardSearch& search,
                const vantrel_card& card) {
  if (options.size != "scan") return card_picture(target, search, card);
  return card.method == VANTREL_METHOD_DARK_GLASS ? stretch(searched, target, *search.glass)
                                                  : cut_onto_frame(target, search.corners(card));
}

CardRequest request_of(const ClipOptions& options) {
  return {options.method,
          options.scale ? Analysis::kAsItIs : Analysis::kReduced,
          options.scale.value_or(1),
          options.cards,
          options.alternatives,
          options.demands};
}

Finding clip(const ClipOptions& options, Scan& scan) {
  if (needs_levels(options) && scan.image.depth() == 1) return nothing_on_bilevel();
  const Twins twins = read_twins(options, scan.image);
  const Bitmap& searched = twins.analysis.empty() ? scan.image : twins.analysis;
  const Bitmap& target = twins.target.empty() ? scan.image : twins.target;
  if (needs_levels(options) && (searched.depth() == 1 || target.depth() == 1)) return nothing_on_bilevel();
  const CardSearch search = search_cards(searched, request_of(options));

  Finding finding;
  finding.found = search.first_claimed() != nullptr;
  finding.certainty = search.certainty();
  finding.confidence = search.confidence();
  finding.advice = advice_of(search);
  finding.message = words_of(search);
  finding.details = [search] { return json_of(search); };
  finding.draw = [shown = on_overlay(options, search)](Canvas& canvas) { draw(shown, canvas); };
  if (!finding.found) return finding;
  const std::string guesses = words_of_guesses(search);
  if (!guesses.empty()) finding.message += ", " + guesses;
  if (options.detect_only) return finding;
  for (const FoundCard& found : search.cards) {
    if (!found.claimed()) continue;
    finding.pictures.push_back(oriented(cut_card(options, searched, target, search, found.card), options.orientation));
  }
  const Bitmap& card = finding.pictures.front();
  if (finding.pictures.size() == 1) {
    finding.message =
        "card " + std::to_string(card.width()) + " x " + std::to_string(card.height()) + ", " + finding.message;
  }
  return finding;
}

void add_options(CLI::App& command, ClipOptions& options) {
  add_input_options(command, options);
  add_output_options(command, options);
  add_method_option(
      command, options, {"dark-glass", "flat"},
      "Where the card is looked for: anywhere, on dark glass, on a flat, light background; auto (default): "
      "what is surest");
  add_card_options(command, options);
  command
      .add_option("--size", options.size,
                  "card: the card at its own size (default); scan: stretched onto the scan's frame")
      ->type_name("card|scan")
      ->check(CLI::IsMember({"card", "scan"}));
  command.add_flag("--keep-unclipped", options.keep_unclipped, "Write the scan as it is when no card is found");
  command
      .add_option(
          "--scale", options.scale,
          "Look for the corners on a copy reduced N times (made by the tool, or --analyse) and cut the full scan")
      ->type_name("N")
      ->transform(whole_between(1, 1000));
  CLI::Option* analyse =
      command.add_option("--analyse", options.analyse, "Look for the corners on this reduced scan of the same scene")
          ->type_name("FILE")
          ->needs("--scale");
  command.add_option("--second", options.second, "Look for the corners on INPUT and cut this larger scan of the scene")
      ->type_name("FILE")
      ->needs("--scale")
      ->excludes(analyse);
  add_overlay_option(command, options);
  add_review_options(command, options);
  add_detect_only_option(command, options);
}

}  // namespace

Command add_clip(CLI::App& tool) {
  auto options = std::make_shared<ClipOptions>();
  CLI::App* command =
      tool.add_subcommand("clip", "Find the card on each scan and write it upright, without the background");
  add_options(*command, *options);
  return {command, [options] {
            const Naming naming = options->cards == 1 ? Naming::kOneFile : Naming::kNumberedFiles;
            if (options->keep_unclipped && naming == Naming::kNumberedFiles) {
              throw WrongUsage("--keep-unclipped needs --cards 1");
            }
            check_twin(*options, options->analyse, "--analyse", options->scale.value_or(1));
            check_twin(*options, options->second, "--second", options->scale.value_or(1));
            std::vector<std::string> also_read;
            for (const std::string& twin : {options->analyse, options->second}) {
              if (!twin.empty()) also_read.push_back(twin);
            }
            return run_batch(*options, naming, also_read, [options](Scan& scan) { return clip(*options, scan); });
          }};
}

}  // namespace tool
