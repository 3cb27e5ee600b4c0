/**
 * @file usage.h
 * @brief The command line before and after it is parsed: what is meant by it, and what is wrong with it.
 */
#ifndef VANTREL_CLI_USAGE_H
#define VANTREL_CLI_USAGE_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace tool {

/**
 * The arguments without the program's name, with what people type brought to what the parser knows: `help` and
 * `help clip`, and a command line without a subcommand, which is one of `auto`.
 *
 * @throws WrongUsage the first word is neither a subcommand nor a file.
 */
std::vector<std::string> meant_arguments(const CLI::App& parser, const std::vector<std::string>& given);

/** What is wrong, for people, with what they may have meant. */
std::string words_of(const CLI::App& parser, const CLI::ParseError& error);

/** The name that a word is a slip of the pen away from; empty when there is none. */
std::string nearest(const std::string& word, const std::vector<std::string>& names);

}  // namespace tool

#endif
