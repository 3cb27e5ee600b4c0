#include <array>
#include <memory>
#include <new>
#include <optional>

#include "batch.h"
#include "commands/commands.h"
#include "corner_search.h"
#include "failure.h"
#include "flat_card.h"
#include "image/convert.h"
#include "sheet.h"

namespace tool {
namespace {

/** What all detectors see on one scan. What cannot be searched, being bilevel or too small, stays null in the JSON. */
class Detection {
 public:
  explicit Detection(Bitmap& scan) {
    look_for_sheet_cards(scan);
    if (scan.depth() == 1) return;
    Bitmap gray;
    if (scan.depth() == 24 && !Color2Gray(scan.record(), gray.record())) throw std::bad_alloc();
    Bitmap& levels = gray.empty() ? scan : gray;
    look_for_corners(levels);
    look_for_gradient_corners(levels);
    look_for_flat_card(scan);
    look_for_rows(levels);
  }

  const Json& json() const { return json_; }

  void draw_on(Canvas& canvas) const {
    if (corners_) draw(*corners_, canvas);
    for (std::size_t i = 0; gradient_corners_ && i < 4; ++i) {
      canvas.label((*gradient_corners_)[2 * i], (*gradient_corners_)[2 * i + 1], "G" + std::to_string(i + 1), kBlue);
    }
    if (flat_card_) canvas.frame(flat_card_->left, flat_card_->top, flat_card_->right, flat_card_->bottom, kBlue);
    for (const int row : rows_) canvas.line(0, row, canvas.width() - 1, row, kRed);
    draw(sheet_, canvas, kRed);
  }

 private:
  void look_for_sheet_cards(Bitmap& scan) {
    sheet_ = find_sheet_cards(scan);
    Json cards = Json::array();
    for (const SheetCard& card : sheet_.cards) {
      cards.push_back({{"column", card.column}, {"rectangle", json_of(card.rectangle)}});
    }
    json_["sheet"] = {{"result", sheet_.result}, {"cards", cards}};
  }

  void look_for_corners(Bitmap& gray) {
    corners_ = search_corners(gray, 1);
    json_["corner_finder"] = json_of(*corners_);
  }

  void look_for_gradient_corners(Bitmap& gray) {
    Corners corners{};
    Corners box{};
    const bool found = AutoDetectCorner(gray.record(), corners.data(), box.data());
    if (found) gradient_corners_ = corners;
    json_["gradient_corners"] = {{"found", found}, {"corners", found ? json_of_corners(corners) : Json()}};
  }

  void look_for_flat_card(Bitmap& scan) {
    try {
      const FlatCard card = find_flat_card(scan);
      const Rectangle rectangle = from_memory_rows(card.rect, scan.height());
      if (card.sides_found() > 0) flat_card_ = rectangle;
      json_["card_rectangle"] = {{"rectangle", json_of(rectangle)}, {"sides", sides_of(card)}};
    } catch (const Failure&) {
      // Too small for the search in colour: nothing is known of it.
    }
  }

  void look_for_rows(Bitmap& gray) {
    int near = 0;
    int far = 0;
    if (!ClipImg(gray.record(), near, far)) throw std::bad_alloc();
    const int last = gray.height() - 1;
    json_["clip_rows"] = {{"upper", last - far}, {"lower", last - near}};
    if (far != last) rows_.push_back(last - far);
    if (near != 0) rows_.push_back(last - near);
  }

  Json json_ = {{"corner_finder", Json()},
                {"gradient_corners", Json()},
                {"card_rectangle", Json()},
                {"clip_rows", Json()},
                {"sheet", Json()}};
  Sheet sheet_{};
  std::optional<CornerSearch> corners_;
  std::optional<Corners> gradient_corners_;
  std::optional<Rectangle> flat_card_;
  std::vector<int> rows_;
};

Finding detect(Scan& scan) {
  const auto detection = std::make_shared<const Detection>(scan.image);
  Finding finding;
  finding.found = true;
  finding.details = detection->json();
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
