#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <memory>
#include <optional>
#include <string>

#include "batch.h"
#include "commands/commands.h"
#include "failure.h"
#include "library.h"
#include "rectangle.h"

namespace tool {
namespace {

struct CropOptions : Options {
  vantrel_rect rectangle{};
};

Finding crop_scan(const CropOptions& options, Scan& scan) {
  const vantrel_rect& rectangle = options.rectangle;
  if (!lies_within(rectangle, scan.image)) {
    throw Failure("the rectangle reaches outside the scan of " + std::to_string(scan.image.width()) + " x " +
                  std::to_string(scan.image.height()));
  }
  Finding finding;
  finding.found = true;
  finding.message = words_of(rectangle);
  finding.details = [rectangle] { return Json{{"rectangle", json_of(rectangle)}}; };
  finding.draw = [rectangle](Canvas& canvas) { canvas.frame(rectangle, kGreen); };
  finding.pictures.push_back(crop(scan.image, rectangle));
  return finding;
}

/** The four numbers between three commas. */
std::optional<std::array<int, 4>> bounds_of(const std::string& text) {
  std::array<int, 4> bounds{};
  const char* at = text.data();
  const char* const end = at + text.size();
  for (std::size_t i = 0; i < bounds.size(); ++i) {
    if (i > 0 && (at == end || *at++ != ',')) return {};
    while (at != end && *at == ' ') ++at;
    const auto [rest, error] = std::from_chars(at, end, bounds[i]);
    if (error != std::errc()) return {};
    at = rest;
  }
  return at == end ? std::optional(bounds) : std::nullopt;
}

void check_rectangle(const vantrel_rect& r) {
  if (r.left < 0 || r.top < 0) throw WrongUsage("--rect: bounds count from 0");
  if (r.left >= r.right || r.top >= r.bottom) throw WrongUsage("--rect: the order is left, top, right, bottom");
}

}  // namespace

Command add_crop(CLI::App& tool) {
  auto options = std::make_shared<CropOptions>();
  CLI::App* command = tool.add_subcommand("crop", "Cut a given rectangle out of each scan");
  add_input_options(*command, *options);
  add_output_options(*command, *options);
  add_overlay_option(*command, *options);
  command
      ->add_option_function<std::string>(
          "--rect",
          [options](const std::string& text) {
            const std::array<int, 4> bounds = *bounds_of(text);
            // The bounds are included, and one more than the greatest number is none.
            const auto known = [](int bound) { return std::min(bound, std::numeric_limits<int>::max() - 1); };
            options->rectangle = {known(bounds[0]), known(bounds[1]), known(bounds[2]) + 1, known(bounds[3]) + 1};
          },
          "First column, first row, last column and last row to keep, counted from 0 at the top left")
      ->required()
      ->type_name("L,T,R,B")
      ->check(CLI::Validator(
          [](const std::string& text) {
            return bounds_of(text) ? "" : "'" + text + "' is not L,T,R,B, four whole numbers";
          },
          ""));
  return {command, [options] {
            check_rectangle(options->rectangle);
            return run_batch(*options, Naming::kOneFile, {},
                             [options](Scan& scan) { return crop_scan(*options, scan); });
          }};
}

}  // namespace tool
