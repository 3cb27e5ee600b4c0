#include <algorithm>
#include <memory>

#include "batch.h"
#include "commands/commands.h"
#include "library.h"

namespace tool {
namespace {

struct EnlargeOptions : Options {
  std::string method = "linear";
};

Finding not_enlarged(const std::string& reason, const std::string& advice) {
  Finding finding;
  finding.message = "not enlarged: " + reason;
  finding.advice = advice;
  finding.details = [] { return Json{{"result", 0}}; };
  return finding;
}

Finding enlarge(const EnlargeOptions& options, Scan& scan) {
  if (scan.image.depth() == 1) {
    return not_enlarged("a bilevel picture has no levels between its pixels", "a scan in gray or colour");
  }
  const int longest = vantrel_limit_value(VANTREL_LIMIT_ENLARGED_SIDE);
  if (std::max(scan.image.width(), scan.image.height()) > longest) {
    return not_enlarged("a side is longer than " + std::to_string(longest) + " pixels", "vantrel crop first");
  }
  // Rows of whole groups of four pixels, as the library's own entries for it give them.
  const int width = (2 * scan.image.width() + 3) / 4 * 4;
  Bitmap picture =
      enlarged(scan.image, options.method == "linear" ? VANTREL_ENLARGE_LINEAR : VANTREL_ENLARGE_CUBIC, width);
  Finding finding;
  finding.found = true;
  finding.message = "enlarged to " + std::to_string(picture.width()) + " x " + std::to_string(picture.height());
  finding.details = [&options] { return Json{{"result", 1}, {"method", options.method}}; };
  finding.pictures.push_back(std::move(picture));
  return finding;
}

}  // namespace

Command add_enlarge(CLI::App& tool) {
  auto options = std::make_shared<EnlargeOptions>();
  CLI::App* command = tool.add_subcommand("enlarge", "Enlarge each picture to twice its width and height");
  add_input_options(*command, *options);
  add_output_options(*command, *options);
  command->add_option("--method", options->method, "linear: means of neighbours (default); cubic: sharper")
      ->type_name("linear|cubic")
      ->check(CLI::IsMember({"linear", "cubic"}));
  return {command, [options] {
            return run_batch(*options, Naming::kOneFile, {}, [options](Scan& scan) { return enlarge(*options, scan); });
          }};
}

}  // namespace tool
