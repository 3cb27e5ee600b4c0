/**
 * @file failure.h
 * @brief The two ways in which the tool gives up.
 */
#ifndef VANTREL_CLI_FAILURE_H
#define VANTREL_CLI_FAILURE_H

#include <stdexcept>

namespace tool {

/** One input or output cannot be worked on; the message is the reason without the file's name. */
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/** The command line asks for something impossible. */
struct WrongUsage : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace tool

#endif
