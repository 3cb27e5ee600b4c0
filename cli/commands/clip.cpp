#include <memory>

#include "batch.h"
#include "card_image.h"
#include "commands/commands.h"
#include "corner_search.h"
#include "failure.h"
#include "safe_file.h"

namespace tool {
namespace {

constexpr const char* kBilevel = "a bilevel scan has no gray levels to search: nothing to correct";

struct ClipOptions : Options {
  std::string size = "card";
  std::string analyse;
  int scale = 1;
};

/** A reduced scan must show the same scene: its size times the scale may differ by 2 %, as scanners round. */
void check_sizes(const Bitmap& reduced, const Bitmap& scan, int scale) {
  const auto fits = [scale](int small, int large) {
    const double difference = static_cast<double>(small) * scale - large;
    return std::abs(difference) <= std::max(0.02 * large, static_cast<double>(scale));
  };
  if (fits(reduced.width(), scan.width()) && fits(reduced.height(), scan.height())) return;
  throw Failure("is not the scan reduced " + std::to_string(scale) + " times: " + std::to_string(reduced.width()) +
                " x " + std::to_string(reduced.height()) + " for " + std::to_string(scan.width()) + " x " +
                std::to_string(scan.height()));
}

Bitmap read_analysis_scan(const ClipOptions& options, const Bitmap& scan) {
  try {
    Scan reduced = decode_image(read_file(options.analyse), 1);
    if (reduced.image.depth() == 1) throw Failure(kBilevel);
    check_sizes(reduced.image, scan, options.scale);
    return with_depth(std::move(reduced.image), scan.depth());
  } catch (const Failure& failure) {
    throw Failure(options.analyse + ": " + failure.what());
  }
}

/** The image in which corners are looked for, when it is not the scan itself. */
Bitmap analysis_image(const ClipOptions& options, const Bitmap& scan) {
  if (!options.analyse.empty()) return read_analysis_scan(options, scan);
  return options.scale > 1 ? reduced_copy(scan, options.scale) : Bitmap();
}

/** The card on the scan's own frame, as the library's main entry returns it. */
Bitmap stretched_card(Bitmap& analysis, Bitmap& scan, int scale) {
  Bitmap card;
  if (AutoClipRedundantImg(analysis.handle(), scan.handle(), card.record(), scale) != 1) throw std::bad_alloc();
  return card;
}

Finding nothing_on_bilevel() {
  Finding finding;
  finding.message = kBilevel;
  finding.details = {{"result", 0}, {"verdict", Json()}};
  return finding;
}

Finding clip(const ClipOptions& options, Scan& scan) {
  if (scan.image.depth() == 1) return nothing_on_bilevel();
  Bitmap reduced = analysis_image(options, scan.image);
  Bitmap& analysis = reduced.empty() ? scan.image : reduced;
  const CornerSearch search = search_corners(analysis, options.scale);

  Finding finding;
  finding.found = search.has_card();
  finding.message = words_of(search);
  finding.details = json_of(search);
  finding.draw = [search](Canvas& canvas) { draw(search, canvas); };
  if (!finding.found || options.detect_only) return finding;
  finding.pictures.push_back(options.size == "card" ? card_image(scan.image, search.corners())
                                                    : stretched_card(analysis, scan.image, options.scale));
  const Bitmap& card = finding.pictures.front();
  finding.message =
      "card " + std::to_string(card.width()) + " x " + std::to_string(card.height()) + ", " + finding.message;
  return finding;
}

void add_options(CLI::App& command, ClipOptions& options) {
  add_input_options(command, options);
  add_output_options(command, options);
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
      ->check(CLI::Range(1, 1000));
  command.add_option("--analyse", options.analyse, "Look for the corners on this reduced scan of the same scene")
      ->type_name("FILE")
      ->needs("--scale");
  add_overlay_option(command, options);
  add_detect_only_option(command, options);
}

void check_options(const ClipOptions& options) {
  if (options.analyse.empty()) return;
  if (options.inputs.size() > 1) throw WrongUsage("--analyse goes with one input");
  if (options.scale < 2) throw WrongUsage("--analyse needs --scale 2 or more");
  if (options.analyse == kPipe && options.inputs.front() == kPipe) {
    throw WrongUsage("standard input can be read only once");
  }
}

}  // namespace

Command add_clip(CLI::App& tool) {
  auto options = std::make_shared<ClipOptions>();
  CLI::App* command =
      tool.add_subcommand("clip", "Find the card on each scan and write it upright, without the background");
  add_options(*command, *options);
  return {command, [options] {
            check_options(*options);
            std::vector<std::string> also_read;
            if (!options->analyse.empty()) also_read.push_back(options->analyse);
            return run_batch(*options, Naming::kOneFile, also_read,
                             [options](Scan& scan) { return clip(*options, scan); });
          }};
}

}  // namespace tool
