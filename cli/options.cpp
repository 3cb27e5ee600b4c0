#include "options.h"

#include <algorithm>
#include <string>
#include <thread>

#include "help_text.h"

namespace tool {
namespace {

/** "all", or a page from 1 on. */
std::string check_page(std::string& text) {
  if (text == "all") return "";
  return whole_between(1, 65535)(text).empty() ? "" : "'" + text + "' is neither a page nor 'all'";
}

}  // namespace

void add_input_options(CLI::App& command, Options& options) {
  options.jobs = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  command
      .add_option(
          "INPUT", options.inputs,
          "Scans to read: PNG, JPEG, TIFF, BMP, PNM, WebP and more; a folder: the pictures in it; - is standard input")
      ->required();
  command
      .add_option_function<std::string>(
          "--page",
          [&options](const std::string& text) {
            options.all_pages = text == "all";
            options.page = options.all_pages ? 1 : std::stoi(text);
            options.page_given = true;
          },
          "Read page N of a TIFF or PDF file (default 1), or all of them, each as a scan of its own")
      ->type_name("N|all")
      ->check(CLI::Validator(check_page, ""));
  command.add_flag("-r,--recursive", options.recursive, "Take the pictures in the folders of a folder, too");
  command.add_option("--dpi", options.dpi, "Take the scan's resolution as N dots per inch, whatever its file says")
      ->type_name("N")
      ->transform(whole_between(1, 100000));
  CLI::Option* json =
      command.add_flag("--json", options.json, "Print one JSON array with all that was found instead of lines of text");
  command.add_flag("--json-lines", options.json_lines, "Print a line of JSON for each scan as soon as it is done")
      ->excludes(json);
  CLI::Option* quiet = command.add_flag("-q,--quiet", options.quiet, "Print nothing but errors");
  command
      .add_flag("-v,--verbose", options.verbose, "Tell more of each scan: what was seen, why it counts, and the time")
      ->excludes(quiet);
  command.add_option("-j,--jobs", options.jobs, "Work on N scans at a time (default: the number of processors)")
      ->type_name("N")
      ->transform(whole_between(1, 1024));
  command
      .add_option(
          "--most-megapixels", options.limits.megapixels,
          "Refuse larger pictures, before they are decoded (default " + std::to_string(Limits{}.megapixels) + ")")
      ->type_name("N")
      ->transform(whole_between(1, 2000));
  command
      .add_option("--most-megabytes", options.limits.megabytes,
                  "Refuse larger files, and pictures that take more memory (default " +
                      std::to_string(Limits{}.megabytes) + ")")
      ->type_name("N")
      ->transform(whole_between(1, 16000));
  command
      .add_option("--most-seconds", options.limits.seconds,
                  "End where a file takes longer to decode (default: by its size)")
      ->type_name("N")
      ->transform(whole_between(1, 100000));
}

void add_output_options(CLI::App& command, Options& options) {
  command
      .add_option("-o,--output", options.output,
                  "Write to this file, or into this folder (needed for several inputs, unless OUT is a PDF file of all "
                  "cards); - is standard output")
      ->type_name("OUT");
  command.add_flag("--force", options.force, "Replace existing output files; an input is never replaced");
  command.add_flag("--skip-existing", options.skip_existing, "Leave inputs alone whose output file is there already")
      ->excludes("--force");
  command.add_flag("--dry-run", options.dry_run, "Say what would be written where, and do nothing");
  command
      .add_option_function<std::string>(
          "--format", [&options](const std::string& name) { options.format = format_of_name(name); },
          "Format of standard output and of the files in a folder: png, jpeg, tiff, bmp, pnm, webp or pdf")
      ->type_name("FORMAT")
      ->check(CLI::Validator(
          [](const std::string& name) { return format_of_name(name) ? "" : "unknown format '" + name + "'"; }, ""));
  command
      .add_option_function<int>(
          "--quality",
          [&options](int quality) {
            options.encoding.quality = quality;
            options.encoding.lossy = true;
          },
          "Quality of JPEG files (default " + std::to_string(Encoding{}.quality) +
              "), and write WebP and PDF files with loss, of that quality")
      ->type_name("N")
      ->transform(whole_between(1, 100));
}

void add_overlay_option(CLI::App& command, Options& options) {
  command
      .add_option("--overlay", options.overlay,
                  "Write the scan with what was seen drawn on it to this file, or into this folder")
      ->type_name("FILE");
}

void add_review_options(CLI::App& command, Options& options) {
  CLI::Option* review =
      command
          .add_option("--review", options.review,
                      "Collect overlays of what is not found, or not sure, in this folder, with a page index.html")
          ->type_name("FOLDER");
  command.add_option("--review-below", options.review_below, "Review what has a lower confidence than X (default 0.9)")
      ->type_name("X")
      ->check(between(0, 1.01))
      ->needs(review);
  command
      .add_option(
          "--sheet", options.sheet,
          "Write a contact sheet to this file: every scan small, with what was seen drawn on it and its outcome")
      ->type_name("FILE");
}

void add_detect_only_option(CLI::App& command, Options& options) {
  command.add_flag("--detect-only", options.detect_only, "Say what is found and write no picture")
      ->excludes(command.get_option("--output"));
}

}  // namespace tool
