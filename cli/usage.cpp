#include "usage.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <regex>
#include <utility>

#include "failure.h"
#include "image_format.h"
#include "safe_file.h"

namespace tool {
namespace {

std::vector<std::string> subcommands_of(const CLI::App& parser) {
  std::vector<std::string> names;
  for (const CLI::App* command : parser.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(command->get_name());
  }
  return names;
}

std::vector<std::string> options_of(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    for (const std::string& name : option->get_snames()) names.push_back("-" + name);
  }
  return names;
}

/** Insertions, deletions, exchanges and swaps of neighbours between two words. */
std::size_t distance(const std::string& a, const std::string& b) {
  std::vector<std::vector<std::size_t>> d(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) d[i][0] = i;
  for (std::size_t j = 0; j <= b.size(); ++j) d[0][j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    for (std::size_t j = 1; j <= b.size(); ++j) {
      d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
    }
  }
  return d[a.size()][b.size()];
}

bool exists(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

/** Whether a word is an input rather than a subcommand that there is not. */
bool looks_like_input(const std::string& word) {
  return word == kPipe || word.find('/') != std::string::npos || format_of_path(word) || exists(word);
}

std::string did_you_mean(std::string word, const std::vector<std::string>& names) {
  std::transform(word.begin(), word.end(), word.begin(), [](unsigned char c) { return std::tolower(c); });
  const std::string name = nearest(word, names);
  return name.empty() ? "" : " (did you mean '" + name + "'?)";
}

bool asks_for_tool(const std::string& word) {
  return word == "-h" || word == "--help" || word == "-V" || word == "--version";
}

/** The subcommand that was asked for, else the tool itself. */
const CLI::App& active(const CLI::App& parser) {
  const std::vector<CLI::App*> used = parser.get_subcommands();
  return used.empty() ? parser : *used.front();
}

bool is_option(const std::string& word) { return word.size() > 1 && word.front() == '-'; }

std::string words_of_unknown(const CLI::App& parser, const std::vector<std::string>& words) {
  for (const std::string& word : words) {
    if (!is_option(word)) continue;
    const std::string name = word.substr(0, word.find('='));
    return "unknown option '" + name + "'" + did_you_mean(name, options_of(active(parser)));
  }
  return words.empty() ? "what is meant?" : "'" + words.front() + "' is not expected here";
}

/** What the parser says of a value, in the tool's words; what it says in its own is kept otherwise. */
std::string retold(const std::string& said) {
  static const std::array<std::pair<std::regex, const char*>, 7> kTales = {{
      {std::regex("(\\S+): (.*) not in \\{(.*)\\}"), "$1: '$2' is none of $3"},
      {std::regex("(\\S+): At Most 1 required but received (\\d+)"), "$1 is given more than once"},
      {std::regex("Could not convert: (\\S+) = (.*)"), "$1: '$2' is no number"},
      {std::regex("Could not convert: (\\S+)"), "$1 takes no such value"},
      {std::regex("(\\S+): (\\d+) required (.*) missing"), "$1 needs a value"},
      {std::regex("(\\S+) requires (\\S+)"), "$1 needs $2"},
      {std::regex("(\\S+) excludes (\\S+)"), "$1 and $2 do not go together"},
  }};
  for (const auto& [pattern, tale] : kTales) {
    if (std::regex_match(said, pattern)) return std::regex_replace(said, pattern, tale);
  }
  return said;
}

std::string words_of_one_dash(const std::string& name) {
  return "unknown option '" + name + "' (did you mean '-" + name + "'?)";
}

/**
 * The parser takes `--json=3` for `--json`, "=card.png" for the file of `-o=card.png`, and `-rotate` for `-r`, `-o
 * tate`; who types that means none of these.
 */
void check_values(const CLI::App& command, const std::vector<std::string>& words) {
  const auto refuse = [&](const std::string& what) {
    throw WrongUsage(what + " (see vantrel " + command.get_name() + " --help)");
  };
  for (std::size_t i = 0; i < words.size() && words[i] != "--"; ++i) {
    const std::size_t equals = words[i].find('=');
    const std::string name = words[i].substr(0, equals);
    if (!is_option(name)) continue;
    if (name.size() > 2 && name[1] != '-' && command.get_option_no_throw("-" + name) != nullptr) {
      refuse(words_of_one_dash(name));
    }
    const CLI::Option* option = command.get_option_no_throw(name);
    if (option == nullptr) continue;
    const bool is_flag = option->get_items_expected_max() == 0;
    if (equals == std::string::npos) {
      i += is_flag ? 0 : 1;  // a value may look like an option
    } else if (is_flag) {
      refuse(name + " takes no value");
    } else if (name[1] != '-') {
      refuse(name + " takes its value without '='");
    }
  }
}

std::vector<std::string> with_subcommand(const CLI::App& parser, const std::vector<std::string>& given) {
  if (given.empty() || asks_for_tool(given.front())) return given;
  const std::vector<std::string> names = subcommands_of(parser);
  const auto is_subcommand = [&](const std::string& word) {
    return std::find(names.begin(), names.end(), word) != names.end();
  };
  const std::string& first = given.front();
  if (is_subcommand(first)) return given;
  if (first == "help") {
    if (given.size() == 1) return {"--help"};
    if (is_subcommand(given[1])) return {given[1], "--help"};
    throw WrongUsage("unknown subcommand '" + given[1] + "'" + did_you_mean(given[1], names) + " (see vantrel --help)");
  }
  if (first.front() != '-' && !looks_like_input(first)) {
    throw WrongUsage("unknown subcommand '" + first + "', and no file or folder" + did_you_mean(first, names) +
                     " (see vantrel --help)");
  }
  std::vector<std::string> meant = {"auto"};
  meant.insert(meant.end(), given.begin(), given.end());
  return meant;
}

}  // namespace

std::string nearest(const std::string& word, const std::vector<std::string>& names) {
  const auto least = std::min_element(names.begin(), names.end(), [&](const std::string& a, const std::string& b) {
    return distance(word, a) < distance(word, b);
  });
  if (least == names.end()) return "";
  const std::size_t most = std::max<std::size_t>(1, least->size() / 3);
  return distance(word, *least) <= most ? *least : "";
}

std::vector<std::string> meant_arguments(const CLI::App& parser, const std::vector<std::string>& given) {
  std::vector<std::string> meant = with_subcommand(parser, given);
  if (!meant.empty() && meant.front().front() != '-') {
    check_values(*parser.get_subcommand_ptr(meant.front()), {meant.begin() + 1, meant.end()});
  }
  return meant;
}

std::string words_of(const CLI::App& parser, const CLI::ParseError& error) {
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) return words_of_unknown(parser, parser.remaining(true));
  if (dynamic_cast<const CLI::RequiredError*>(&error) == nullptr) return retold(error.what());
  const std::vector<std::string> unknown = parser.remaining(true);
  if (std::any_of(unknown.begin(), unknown.end(), is_option)) return words_of_unknown(parser, unknown);
  if (parser.get_subcommands().empty()) return "a subcommand or an INPUT is needed";
  const std::string what = error.what();
  return what.substr(0, what.find(' ')) + " is needed";
}

}  // namespace tool
