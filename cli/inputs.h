/**
 * @file inputs.h
 * @brief The scans that the named inputs stand for: files, the pictures in folders, the pages of files.
 */
#ifndef VANTREL_CLI_INPUTS_H
#define VANTREL_CLI_INPUTS_H

#include <string>
#include <vector>

#include "options.h"

namespace tool {

struct Input {
  std::string path;
  std::string below; /**< the folder that it lies in below the one that was named; empty for that itself */
  int page = 1;
};

/**
 * The inputs in the order in which they were named, those of a folder by their names. Of a folder the files are taken
 * that are called like pictures, but for hidden ones, among which are the tool's own temporary files.
 *
 * @throws WrongUsage a folder holds no pictures.
 */
std::vector<Input> expanded_inputs(const Options& options);

/** Whether a path is a folder. */
bool is_folder(const std::string& path);

/** Whether a folder is among the named inputs, so that there may be any number of scans. */
bool names_folder(const Options& options);

}  // namespace tool

#endif
