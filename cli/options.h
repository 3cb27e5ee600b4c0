/**
 * @file options.h
 * @brief The options that the subcommands share.
 */
#ifndef VANTREL_CLI_OPTIONS_H
#define VANTREL_CLI_OPTIONS_H

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "formats/codecs.h"
#include "image_format.h"
#include "size_limits.h"

namespace tool {

struct Options {
  std::vector<std::string> inputs;
  std::string output; /**< empty: none is written */
  std::string overlay;
  std::optional<Format> format;
  bool force = false;
  bool keep_unclipped = false;
  bool detect_only = false;
  bool json = false;
  bool json_lines = false;
  bool quiet = false;
  bool verbose = false;
  bool dry_run = false;
  bool recursive = false;
  bool all_pages = false;
  bool skip_existing = false;
  std::string review; /**< a folder for what somebody should look at; empty: none */
  double review_below = 0.9;
  std::string sheet; /**< a contact sheet; empty: none */
  bool page_given = false;
  int page = 1;
  int dpi = 0; /**< 0: that of the file */
  int jobs = 1;
  Limits limits;
  Encoding encoding;
};

/** Adds INPUT..., what says which scans they are, what is decoded of them, how they are worked on and told of. */
void add_input_options(CLI::App& command, Options& options);

/** Adds -o, --force, --skip-existing, --dry-run, --format and --quality. */
void add_output_options(CLI::App& command, Options& options);

/** Adds --overlay. */
void add_overlay_option(CLI::App& command, Options& options);

/** Adds --review, --review-below and --sheet. */
void add_review_options(CLI::App& command, Options& options);

/** Adds --detect-only, which excludes -o. */
void add_detect_only_option(CLI::App& command, Options& options);

}  // namespace tool

#endif
