#include "help_text.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <set>
#include <sstream>
#include <system_error>
#include <type_traits>
#include <vector>

#include "words.h"

namespace tool {
namespace {

constexpr std::size_t kNameWidth = 28;
constexpr std::size_t kTextWidth = 72;

template <class Number>
std::optional<Number> number_of(const std::string& text) {
  Number value{};
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || rest != end) return {};
  return value;
}

/** The number in its plainest form: to the parser a leading zero means base 8. */
template <class Number>
CLI::Validator number_between(Number least, Number most) {
  const std::string bounds = rounded(double(least), "%g") + " to " + rounded(double(most), "%g");
  const auto check = [=](std::string& text) -> std::string {
    const std::optional<Number> value = number_of<Number>(text);
    if (!value || !(*value >= least) || !(*value <= most)) return "'" + text + "' is no number from " + bounds;
    if constexpr (std::is_integral_v<Number>) text = std::to_string(*value);
    return "";
  };
  return CLI::Validator(check, bounds);
}

std::string listed(const std::set<CLI::Option*>& options) {
  std::vector<std::string> names;
  names.reserve(options.size());
  for (const CLI::Option* option : options) names.push_back(option->get_name());
  std::sort(names.begin(), names.end());
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

/** " (1 to 5; needs --scale; not with --second)", or nothing. The parser keeps bounds behind the value's name. */
std::string conditions_of(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  const std::size_t colon = type.find(':');
  std::string text;
  const auto add = [&](const std::string& condition) { text += (text.empty() ? "" : "; ") + condition; };
  if (colon != std::string::npos && type.find('{', colon) == std::string::npos) add(type.substr(colon + 1));
  if (!option.get_positional() && option.get_required()) add("is needed");
  if (!option.get_needs().empty()) add("needs " + listed(option.get_needs()));
  if (!option.get_excludes().empty()) add("not with " + listed(option.get_excludes()));
  return text.empty() ? "" : " (" + text + ")";
}

std::string name_of(const CLI::Option& option, bool is_positional) {
  if (is_positional) return option.get_name(true, false) + "...";
  const std::string type = option.get_type_name();
  const std::string name = option.get_name(false, true);
  return option.get_type_size() == 0 ? name : name + " " + type.substr(0, type.find(':'));
}

}  // namespace

HelpText::HelpText() { label("Positionals", "Inputs"); }

std::string HelpText::make_usage(const CLI::App* app, std::string name) const {
  if (app->get_parent() == nullptr) {
    return "Usage: " + name + " [OPTIONS] INPUT... -o OUT\n       " + name + " SUBCOMMAND [OPTIONS] INPUT...\n       " +
           name + " help SUBCOMMAND\n";
  }
  const bool rectangle = app->get_option_no_throw("--rect") != nullptr;
  const bool output = app->get_option_no_throw("--output") != nullptr;
  return "Usage: " + name + (rectangle ? " --rect L,T,R,B" : "") + " [OPTIONS] INPUT..." + (output ? " -o OUT" : "") +
         "\n";
}

std::string HelpText::make_option(const CLI::Option* option, bool is_positional) const {
  std::string text = "  " + name_of(*option, is_positional);
  const std::string indent = "\n" + std::string(kNameWidth + 2, ' ');
  text += text.size() > kNameWidth ? indent : std::string(kNameWidth + 2 - text.size(), ' ');
  std::istringstream words(option->get_description() + conditions_of(*option));
  std::size_t column = 0;
  for (std::string word; words >> word;) {
    if (column > 0 && column + 1 + word.size() > kTextWidth) {
      text += indent;
      column = 0;
    }
    text += (column > 0 ? " " : "") + word;
    column += (column > 0 ? 1 : 0) + word.size();
  }
  return text + "\n";
}

CLI::Validator whole_between(int least, int most) { return number_between<int>(least, most); }

CLI::Validator between(double least, double most) { return number_between<double>(least, most); }

}  // namespace tool
