/**
 * @file commands.h
 * @brief The subcommands. Each adds itself and its options to the tool; its work runs in the returned function.
 */
#ifndef VANTREL_CLI_COMMANDS_COMMANDS_H
#define VANTREL_CLI_COMMANDS_COMMANDS_H

#include <CLI/CLI.hpp>
#include <functional>

namespace tool {

/** A subcommand: its parser, and what to do when it was asked for. `run` returns the exit status. */
struct Command {
  CLI::App* parser;
  std::function<int()> run;
};

Command add_auto(CLI::App& tool);
Command add_clip(CLI::App& tool);
Command add_crop(CLI::App& tool);
Command add_cut(CLI::App& tool);
Command add_detect(CLI::App& tool);
Command add_enlarge(CLI::App& tool);
Command add_split(CLI::App& tool);

}  // namespace tool

#endif
