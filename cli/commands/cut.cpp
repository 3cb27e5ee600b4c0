#include <memory>

#include "batch.h"
#include "blankness.h"
#include "card_options.h"
#include "commands/commands.h"
#include "failure.h"
#include "flat_card.h"
#include "help_text.h"
#include "library.h"
#include "rectangle.h"
#include "twin_scan.h"
#include "words.h"

namespace tool {
namespace {

struct CutOptions : Options {
  Demands demands;
  std::string hi_res;
  int scale = 1;
};

/**
 * The rectangle in the scan that is cut: its first and last columns and rows, counted from the bottom, times the
 * scale. The frame stays the frame.
 */
vantrel_rect scaled_rectangle(const FlatCard& card, int scale, const Bitmap& searched, const Bitmap& target) {
  const vantrel_rect& seen = card.seen.rectangle;
  const auto column = [&](int x) { return x * scale; };
  const auto row = [&](int y) { return target.height() - 1 - (searched.height() - 1 - y) * scale; };
  vantrel_rect r = {column(seen.left), row(seen.top), column(seen.right - 1) + 1, row(seen.bottom - 1) + 1};
  const auto found = [&](vantrel_side_index side) { return card.seen.sides[side].found != 0; };
  if (!found(VANTREL_SIDE_TOP)) r.top = 0;
  if (!found(VANTREL_SIDE_BOTTOM)) r.bottom = target.height();
  if (!found(VANTREL_SIDE_RIGHT)) r.right = target.width();
  return clamped(r, target);
}

/** " (top, left: the frame of the scan)", or nothing with all sides found. */
std::string words_of_frame(const FlatCard& card) {
  std::string names;
  for (std::size_t side = 0; side < 4; ++side) {
    if (card.seen.sides[side].found == 0) names += (names.empty() ? "" : ", ") + std::string(kSideNames[side]);
  }
  return names.empty() ? "" : " (" + names + ": the frame of the scan)";
}

/** What the claim is worth, held against what is found anywhere on the scan. */
Judgement judge(const FlatCard& card, const Demands& demands, const Bitmap& scan) {
  if (card.sides_found() == 0) return {Certainty::kGuess, ""};
  const std::vector<vantrel_card> anywhere = all_cards(find(scan.view(), VANTREL_METHOD_ANYWHERE));
  return held_to(demands, card.card, judged_by(anywhere, card.card));
}

void tell(Finding& finding, const FlatCard& card, const Judgement& judgement, const vantrel_rect& rectangle,
          const Bitmap& scan) {
  const std::string seen = "card " + words_of(rectangle) + ", " + std::to_string(card.sides_found()) +
                           " of 4 sides found" + words_of_frame(card);
  if (finding.found) {
    finding.message = seen;
  } else if (!judgement.refusal.empty()) {
    finding.message = "only a guess (" + seen + "; " + judgement.refusal + ")";
    finding.advice = judgement.demanded ? kDemandLess : advice_for(VANTREL_REASON_TOO_SMALL);
  } else if (is_blank(scan)) {
    finding.message = "no side of a card was found: the scan is blank";
  } else {
    finding.message = "no side of a card on a flat background was found";
    finding.advice = advice_for(VANTREL_REASON_TOO_SMALL);
  }
}

Finding cut_out(const CutOptions& options, Scan& scan) {
  const FlatCard card = find_flat_card(scan.image);
  if (!card.searched()) throw Failure(words_of(card.reason) + " (try " + advice_for(card.reason) + ")");
  Bitmap hi_res;
  if (!options.hi_res.empty())
    hi_res = read_twin(options, options.hi_res, scan.image, TwinRole::kEnlarged, options.scale);
  if (!hi_res.empty() && options.dpi != 0) hi_res.set_resolution({options.dpi, options.dpi});
  const Bitmap& target = hi_res.empty() ? scan.image : hi_res;
  const vantrel_rect& seen = card.seen.rectangle;
  const vantrel_rect rectangle = scaled_rectangle(card, options.scale, scan.image, target);
  const Judgement judgement = judge(card, options.demands, scan.image);

  Finding finding;
  finding.found = judgement.certainty != Certainty::kGuess && lies_within(rectangle, target);
  finding.certainty = judgement.certainty;
  finding.confidence = card.card.confidence;
  tell(finding, card, judgement, rectangle, scan.image);
  finding.details = [card, rectangle, judgement, &options] {
    return Json{{"result", 1},
                {"certainty", name_of(judgement.certainty)},
                {"refusal", judgement.refusal.empty() ? Json() : Json(judgement.refusal)},
                {"sides", sides_of(card)},
                {"rectangle", json_of(rectangle)},
                {"scale", options.scale}};
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
          ->transform(whole_between(1, 1000));
  CLI::Option* hi_res =
      command->add_option("--hi-res", options->hi_res, "Cut the card out of this larger scan of the same scene")
          ->type_name("FILE");
  hi_res->needs(scale);
  scale->needs(hi_res);
  add_demand_options(*command, options->demands);
  add_overlay_option(*command, *options);
  add_review_options(*command, *options);
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
