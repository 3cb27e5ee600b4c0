#include <vantrel_cards.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "commands/commands.h"
#include "console.h"
#include "failure.h"
#include "memory.h"
#include "safe_file.h"

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
  const std::vector<std::string> rest = parser.remaining();
  const std::string reason =
      parser.get_subcommands().empty() && !rest.empty() ? "unknown subcommand '" + rest.front() + "'" : error.what();
  tool::print_error("vantrel: " + reason + " (see vantrel --help)\n");
  return kWrongUsage;
}

/** What the command line asks for: parsed and done. Throws what the commands throw. */
int parse_and_run(int argc, char** argv) {
  CLI::App parser("Image pre-processing for scanned business cards", "vantrel");
  parser.set_version_flag("--version", std::string("vantrel ") + vantrel_version(), "Print the version and end");
  parser.set_help_flag("-h,--help", "Print this help and end");
  parser.require_subcommand(1);
  const std::vector<tool::Command> commands = {tool::add_clip(parser),  tool::add_cut(parser),
                                               tool::add_split(parser), tool::add_enlarge(parser),
                                               tool::add_crop(parser),  tool::add_detect(parser)};
  try {
    parser.parse(argc, argv);
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
    return parse_and_run(argc, argv);
  } catch (const tool::WrongUsage& error) {
    tool::print_error(std::string("vantrel: ") + error.what() + "\n");
    return kWrongUsage;
  } catch (const std::bad_alloc&) {
    tool::end_without_memory();
  } catch (const std::exception& error) {
    tool::print_error(std::string("vantrel: ") + error.what() + "\n");
    return 1;
  }
}
