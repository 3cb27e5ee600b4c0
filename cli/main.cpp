#include <vantrel_cards.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "commands/commands.h"
#include "console.h"
#include "ending.h"
#include "failure.h"
#include "help_text.h"
#include "memory.h"
#include "printable.h"
#include "safe_file.h"
#include "usage.h"

namespace {

constexpr int kWrongUsage = 2;

int run(const CLI::App& parser, const std::vector<tool::Command>& commands) {
  for (const tool::Command& command : commands) {
    if (parser.got_subcommand(command.parser)) return command.run();
  }
  return kWrongUsage;
}

/** --help and --version end well; everything else that the parser throws is wrong usage. */
int end_of_parsing(const CLI::App& parser, const CLI::ParseError& error) {
  if (error.get_exit_code() == 0) return parser.exit(error);
  const bool known = !parser.get_subcommands().empty();
  const std::string page = known ? parser.get_subcommands().front()->get_name() + " --help" : "--help";
  tool::print_error("vantrel: " + tool::printable(tool::words_of(parser, error)) + " (see vantrel " + page + ")\n");
  return kWrongUsage;
}

void add_version(CLI::App& parser) {
  parser.set_version_flag("-V,--version", std::string("vantrel ") + vantrel_version(), "Print the version and end");
}

/** What the command line asks for: parsed and done. Throws what the commands throw. */
int parse_and_run(int argc, char** argv) {
  CLI::App parser("Find business cards on scans, straighten and cut them out", "vantrel");
  parser.formatter(std::make_shared<tool::HelpText>());
  parser.footer("The manual, man vantrel, tells the rest.");
  add_version(parser);
  parser.set_help_flag("-h,--help", "Print this help and end");
  parser.require_subcommand(1);
  const std::vector<tool::Command> commands = {
      tool::add_auto(parser),    tool::add_clip(parser), tool::add_cut(parser),   tool::add_split(parser),
      tool::add_enlarge(parser), tool::add_crop(parser), tool::add_detect(parser)};
  for (const tool::Command& command : commands) add_version(*command.parser);
  try {
    std::vector<std::string> arguments = tool::meant_arguments(parser, {argv + 1, argv + argc});
    std::reverse(arguments.begin(), arguments.end());  // as the parser takes them
    parser.parse(std::move(arguments));
    return run(parser, commands);
  } catch (const CLI::ParseError& error) {
    return end_of_parsing(parser, error);
  }
}

}  // namespace

int main(int argc, char** argv) {
  tool::begin_own_code();
  tool::keep_memory();
  tool::open_console();
  // A write that is refused is told of, and its file is removed.
  for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_IGN);
  try {
    tool::clean_up_on_signals();
    tool::expect_libraries_to_give_up();
    return parse_and_run(argc, argv);
  } catch (const tool::WrongUsage& error) {
    tool::print_error("vantrel: " + tool::printable(error.what()) + "\n");
    return kWrongUsage;
  } catch (const std::bad_alloc&) {
    tool::end_without_memory();
  } catch (const std::exception& error) {
    tool::print_error("vantrel: " + tool::printable(error.what()) + "\n");
    return 1;
  }
}
