/**
 * @file printable.h
 * @brief Names of files as they may be shown: a name can hold any byte, and some move a terminal's cursor.
 */
#ifndef VANTREL_CLI_PRINTABLE_H
#define VANTREL_CLI_PRINTABLE_H

#include <string>

namespace tool {

/** A text on one line, with `\x1b` and the like for what controls a terminal. */
std::string printable(const std::string& text);

bool is_utf8(const std::string& text);

/** The bytes as hexadecimal digits. */
std::string hexadecimal(const std::string& bytes);

}  // namespace tool

#endif
