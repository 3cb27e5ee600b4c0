#include "card_options.h"

#include <array>

#include "help_text.h"

namespace tool {
namespace {

constexpr int kMostAlternatives = 5;

struct NamedMethod {
  const char* name;
  std::optional<vantrel_method> method;
};

const std::array<NamedMethod, 5> kMethods = {{{"auto", {}},
                                              {"anywhere", VANTREL_METHOD_ANYWHERE},
                                              {"dark-glass", VANTREL_METHOD_DARK_GLASS},
                                              {"flat", VANTREL_METHOD_FLAT_LIGHT},
                                              {"sheet", VANTREL_METHOD_SHEET}}};

std::optional<vantrel_method> method_of(const std::string& name) {
  for (const NamedMethod& named : kMethods) {
    if (named.name == name) return named.method;
  }
  return {};
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : "|") + name;
  return text;
}

/** "all", or how many from 1 on. */
std::string check_count(std::string& text) {
  if (text == "all") return "";
  const std::string complaint = whole_between(1, vantrel_limit_value(VANTREL_LIMIT_CARDS))(text);
  return complaint.empty() ? "" : "'" + text + "' is neither a number of cards nor 'all'";
}

}  // namespace

void add_method_option(CLI::App& command, CardOptions& options, const std::vector<std::string>& others,
                       const std::string& help) {
  std::vector<std::string> names = {"auto", "anywhere"};
  names.insert(names.end(), others.begin(), others.end());
  command
      .add_option_function<std::string>(
          "--method", [&options](const std::string& name) { options.method = method_of(name); }, help)
      ->type_name(joined(names))
      ->check(CLI::IsMember(names));
}

void add_card_options(CLI::App& command, CardOptions& options) {
  command
      .add_option_function<std::string>(
          "--cards", [&options](const std::string& text) { options.cards = text == "all" ? 0 : std::stoi(text); },
          "Find so many cards at most, those that are surest")
      ->type_name("N|all")
      ->check(CLI::Validator(check_count, ""));
  command
      .add_option("--alternatives", options.alternatives,
                  "Tell of N other quadrilaterals a card, nested in it or its rivals, and draw them on the overlay")
      ->type_name("N")
      ->transform(whole_between(0, kMostAlternatives));
  add_demand_options(command, options.demands);
  CLI::Option* portrait =
      command.add_flag("--portrait", options.orientation.portrait, "Turn cards that lie by a quarter, clockwise");
  CLI::Option* landscape =
      command.add_flag("--landscape", options.orientation.landscape, "Turn cards that stand by a quarter, clockwise");
  CLI::Option* rotate = command.add_option("--rotate", options.orientation.degrees, "Turn cards clockwise")
                            ->type_name("0|90|180|270")
                            ->check(CLI::IsMember({0, 90, 180, 270}));
  portrait->excludes(landscape)->excludes(rotate);
  landscape->excludes(rotate);
}

void add_demand_options(CLI::App& command, Demands& demands) {
  command
      .add_option("--min-sides", demands.sides,
                  "A card of whose four sides fewer than N were found counts as not found")
      ->type_name("N")
      ->transform(whole_between(0, 4));
  command.add_option("--min-confidence", demands.confidence, "A card with a confidence below X counts as not found")
      ->type_name("X")
      ->check(between(0, 1));
}

Bitmap oriented(Bitmap picture, const Orientation& orientation) {
  const bool lies = picture.width() > picture.height();
  const bool stands = picture.height() > picture.width();
  const bool turns = (orientation.portrait && lies) || (orientation.landscape && stands);
  const int quarters = turns ? 1 : orientation.degrees / 90;
  return turned(std::move(picture), quarters);
}

}  // namespace tool
