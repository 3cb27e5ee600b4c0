/**
 * @file targets.h
 * @brief Which file each input's results go to.
 */
#ifndef VANTREL_CLI_TARGETS_H
#define VANTREL_CLI_TARGETS_H

#include <string>
#include <vector>

#include "options.h"

namespace tool {

/** One input and the names of what is made from it. */
struct Job {
  std::string input;
  std::string output;  /**< empty: nothing is written */
  std::string overlay; /**< empty: none is written */
  int page = 1;
  bool folder = false;         /**< the output lies in a folder that was named */
  bool overlay_folder = false; /**< the same of the overlay */
  std::string conflict;        /**< why the job cannot be done: an earlier one has the same name to write to */
};

/** How a command names its results. */
enum class Naming {
  kOneFile,        /**< OUT is a file, or a folder of files */
  kOneOrMoreFiles, /**< the same; number_path gives the names of several files */
  kNumberedFiles,  /**< OUT is a folder; number_path gives the files' names */
  kOneDocument     /**< OUT is one PDF file, a page a card */
};

/** Whether OUT is one PDF file, whatever the command: it is called like one, or a pipe of that format. */
bool names_document(const Options& options);

/**
 * Names the outputs. In a folder they are called like their inputs, with "-pageN" added when a page was asked for and
 * "-overlay" for overlays.
 *
 * @throws WrongUsage no target, several inputs for one file, an unknown ending, two uses of a pipe.
 */
std::vector<Job> plan_jobs(const Options& options, Naming naming);

/** Makes the folders of the targets that are not there yet. @throws WrongUsage */
void make_folders(const std::vector<Job>& jobs);

/** "dir/card.png" to "dir/card-3.png". */
std::string number_path(const std::string& path, int number);

}  // namespace tool

#endif
