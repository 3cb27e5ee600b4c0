/**
 * @file console.h
 * @brief Standard error for the tool alone.
 *
 * The codecs behind Leptonica (libpng, libjpeg) print their complaints to descriptor 2 themselves, without naming the
 * file. The tool therefore keeps standard error under another descriptor for its own lines, and points descriptor 2
 * nowhere while a codec works.
 */
#ifndef VANTREL_CLI_CONSOLE_H
#define VANTREL_CLI_CONSOLE_H

#include <string_view>

namespace tool {

/** Takes standard error and switches Leptonica's and libtiff's messages off; to be called first in main. */
void open_console();

/** Whether standard error is a terminal. */
bool console_is_terminal();

/** Writes to standard error at once. Any thread. */
void print_error(std::string_view text);

/** As long as one of these lives, descriptor 2 leads nowhere. Any thread. */
class QuietCodecs {
 public:
  QuietCodecs();
  ~QuietCodecs();
  QuietCodecs(const QuietCodecs&) = delete;
  QuietCodecs& operator=(const QuietCodecs&) = delete;
};

}  // namespace tool

#endif
