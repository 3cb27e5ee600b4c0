/**
 * @file help_text.h
 * @brief What --help prints, in the tool's own words; and checks of numbers that tell their bounds to it.
 */
#ifndef VANTREL_CLI_HELP_TEXT_H
#define VANTREL_CLI_HELP_TEXT_H

#include <CLI/CLI.hpp>
#include <string>

namespace tool {

/** A line of usage, then each option with its description, its bounds, and what it needs or does not go with. */
class HelpText : public CLI::Formatter {
 public:
  HelpText();
  std::string make_usage(const CLI::App* app, std::string name) const override;
  std::string make_option(const CLI::Option* option, bool is_positional) const override;
};

/** Takes whole decimal numbers within bounds, both included; by transform(), so that a leading zero says nothing. */
CLI::Validator whole_between(int least, int most);

/** Takes decimal numbers within bounds, both included. */
CLI::Validator between(double least, double most);

}  // namespace tool

#endif
