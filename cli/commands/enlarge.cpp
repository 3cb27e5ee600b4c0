#include <algorithm>
#include <memory>
#include <new>

#include "batch.h"
#include "commands/commands.h"

namespace tool {
namespace {

/** The library enlarges no picture with a longer side. */
constexpr int kLongestSide = 2000;

struct EnlargeOptions : Options {
  std::string method = "linear";
};

Finding not_enlarged(const std::string& reason) {
  Finding finding;
  finding.message = "not enlarged: " + reason;
  finding.details = {{"result", 0}};
  return finding;
}

Finding enlarge(const EnlargeOptions& options, Scan& scan) {
  if (scan.image.depth() == 1) return not_enlarged("a bilevel picture has no levels between its pixels");
  if (std::max(scan.image.width(), scan.image.height()) > kLongestSide) {
    return not_enlarged("a side is longer than " + std::to_string(kLongestSide) + " pixels");
  }
  Bitmap enlarged;
  const auto entry = options.method == "linear" ? BiLinear : BiCubic;
  if (entry(scan.image.handle(), enlarged.record()) != 1) throw std::bad_alloc();
  Finding finding;
  finding.found = true;
  finding.message = "enlarged to " + std::to_string(enlarged.width()) + " x " + std::to_string(enlarged.height());
  finding.details = {{"result", 1}, {"method", options.method}};
  finding.pictures.push_back(std::move(enlarged));
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
