#include <memory>
#include <optional>

#include "batch.h"
#include "card_search.h"
#include "commands/commands.h"
#include "corner_search.h"
#include "flat_card.h"
#include "given_entries.h"
#include "memory.h"
#include "rectangle.h"
#include "sheet.h"
#include "split_cards.h"

namespace tool {
namespace {

/** What all detectors see on one scan. What cannot be searched, being bilevel or too small, stays null in the JSON. */
class Detection {
 public:
  explicit Detection(const Bitmap& scan) {
    look_anywhere(scan);
    look_for_sheet_cards(scan);
    if (scan.depth() == 1) return;
    look_for_corners(scan);
    look_for_gradient_corners(scan);
    look_for_flat_card(scan);
    look_for_rows(scan);
  }

  const Json& json() const { return json_; }

  void draw_on(Canvas& canvas) const {
    if (corners_) draw(*corners_, canvas);
    if (gradient_corners_) {
      const vantrel_quad& q = *gradient_corners_;
      int number = 0;
      for (const vantrel_point& corner : {q.top_left, q.top_right, q.bottom_left, q.bottom_right}) {
        canvas.label(corner.x, corner.y, "G" + std::to_string(++number), kBlue);
      }
    }
    if (flat_card_) canvas.frame(*flat_card_, kBlue);
    for (const int row : rows_) canvas.line(0, row, canvas.width() - 1, row, kRed);
    draw(sheet_, canvas, kRed);
    draw_cards(*anywhere_, canvas);
  }

 private:
  void look_anywhere(const Bitmap& scan) {
    CardRequest request;
    request.method = VANTREL_METHOD_ANYWHERE;
    anywhere_ = search_cards(scan, request);
    json_["anywhere"] = {{"cards", json_of_cards(*anywhere_)}};
  }

  void look_for_sheet_cards(const Bitmap& scan) {
    sheet_ = find_sheet_cards(scan, {});
    keep_evident(sheet_, *anywhere_, scan);
    json_["sheet"] = json_of(sheet_);
  }

  void look_for_corners(const Bitmap& scan) {
    corners_ = search_corners(scan, Analysis::kReduced, 1);
    json_["corner_finder"] = json_of(*corners_);
  }

  void look_for_gradient_corners(const Bitmap& scan) {
    gradient_corners_ = gradient_corners(scan);
    json_["gradient_corners"] = {{"found", gradient_corners_.has_value()},
                                 {"corners", gradient_corners_ ? json_of(*gradient_corners_) : Json()}};
  }

  void look_for_flat_card(const Bitmap& scan) {
    const FlatCard card = find_flat_card(scan);
    if (!card.searched()) return;
    if (card.sides_found() > 0) flat_card_ = card.seen.rectangle;
    json_["card_rectangle"] = {{"rectangle", json_of(card.seen.rectangle)}, {"sides", sides_of(card)}};
  }

  void look_for_rows(const Bitmap& scan) {
    const BorderRows rows = border_rows(scan);
    json_["clip_rows"] = {{"upper", rows.upper}, {"lower", rows.lower}};
    if (rows.upper != 0) rows_.push_back(rows.upper);
    if (rows.lower != scan.height() - 1) rows_.push_back(rows.lower);
  }

  Json json_ = {{"corner_finder", Json()},  {"gradient_corners", Json()},
                {"card_rectangle", Json()}, {"clip_rows", Json()},
                {"sheet", Json()},          {"anywhere", Json()}};
  Sheet sheet_{};
  std::optional<CardSearch> anywhere_;
  std::optional<CornerSearch> corners_;
  std::optional<vantrel_quad> gradient_corners_;
  std::optional<vantrel_rect> flat_card_;
  std::vector<int> rows_;
};

Finding detect(Scan& scan) {
  // The JSON that it makes on its way does not bear to be given up half done.
  const ForeignCode json(Large::kCrashes);
  const auto detection = std::make_shared<const Detection>(scan.image);
  Finding finding;
  finding.found = true;
  finding.details = [detection] { return detection->json(); };
  finding.draw = [detection](Canvas& canvas) { detection->draw_on(canvas); };
  return finding;
}

}  // namespace

Command add_detect(CLI::App& tool) {
  auto options = std::make_shared<Options>();
  options->detect_only = true;
  CLI::App* command = tool.add_subcommand("detect", "Run all detectors on each scan and print what they see as JSON");
  add_input_options(*command, *options);
  command->add_flag("--force", options->force, "Replace existing overlays; an input is never replaced");
  add_overlay_option(*command, *options);
  return {command, [options] {
            options->json = true;
            return run_batch(*options, Naming::kOneFile, {}, detect);
          }};
}

}  // namespace tool
