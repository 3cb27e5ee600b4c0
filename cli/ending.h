/**
 * @file ending.h
 * @brief How the tool ends in the middle of its work: one line on standard error, no temporary file, status 1.
 */
#ifndef VANTREL_CLI_ENDING_H
#define VANTREL_CLI_ENDING_H

#include <array>
#include <string>
#include <string_view>

namespace tool {

/** An input as messages name it, or the begin of that; to destroy a string would be registered, with memory. */
using InputName = std::array<char, 1024>;

/** What this thread works on. */
InputName& input_name();

/** What this thread works on from now on, for the messages that end the tool. */
void name_input(const std::string& path);

/** The line for standard error that names what this thread works on. */
std::string message_of_input(const std::string& reason);

/** Ends the tool. Needs no memory. */
[[noreturn]] void end_with(std::string_view message);
[[noreturn]] void end_without_memory();

}  // namespace tool

#endif
