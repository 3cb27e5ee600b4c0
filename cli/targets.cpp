#include "targets.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <utility>

#include "failure.h"
#include "inputs.h"
#include "safe_file.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

/** Whether a path means a folder: it is one, it ends like one, or it must be one. */
bool means_folder(const std::string& path, bool needed) {
  if (path.empty() || path == kPipe) return false;
  return needed || path.back() == '/' || is_folder(path);
}

/** The name of what is made of an input, below the folder that was named as in it. */
std::string stem_of(const Options& options, const Input& input) {
  const std::string stem = input.path == kPipe ? "stdin" : fs::path(input.path).stem().string();
  const std::string named = options.page_given ? stem + "-page" + std::to_string(input.page) : stem;
  return (fs::path(input.below) / named).string();
}

/** The ending of a file in a folder, with its dot: that of the format asked for, else the input's own. */
std::string ending_for(const Options& options, const std::string& input) {
  if (options.format) return std::string(".") + ending_of(*options.format);
  return is_picture_name(input) ? fs::path(input).extension().string() : ".png";
}

/** Where one kind of result goes for one input. */
std::string target_for(const std::string& out, bool folder, const std::string& name) {
  return folder && !out.empty() ? (fs::path(out) / name).string() : out;
}

void check_one_file(const Options& options, const std::string& path, const char* option) {
  if (path.empty() || path == kPipe) return;
  const std::optional<Format> format = format_of_path(path);
  if (!format) {
    throw WrongUsage(std::string(option) + " " + path + ": the ending names no format (" + kWrittenNames + ")");
  }
  if (options.format && *options.format != *format) {
    throw WrongUsage(std::string(option) + " " + path + ": the ending is not that of --format");
  }
}

/** A folder that is not there yet is made where it can only be meant as one: it is called like no picture. */
void check_folder(const std::string& path, const char* option, bool needed) {
  if (is_folder(path)) return;
  std::error_code error;
  const std::string several = needed ? " (several files need one)" : "";
  if (fs::exists(path, error)) throw WrongUsage(std::string(option) + " " + path + " is not a folder" + several);
  if (path.back() != '/' && format_of_path(path)) {
    throw WrongUsage(std::string(option) + " " + path + ": there is no such folder" + several);
  }
}

void check_pipes(const Options& options) {
  if (std::count(options.inputs.begin(), options.inputs.end(), kPipe) > 1) {
    throw WrongUsage("standard input can be read only once");
  }
  const bool picture = options.output == kPipe;
  const bool overlay = options.overlay == kPipe;
  if (picture && overlay) throw WrongUsage("-o and --overlay cannot both be standard output");
  if ((picture || overlay) && (options.json || options.json_lines))
    throw WrongUsage("--json needs standard output for itself");
  if (options.all_pages && std::count(options.inputs.begin(), options.inputs.end(), kPipe) > 0) {
    throw WrongUsage("--page all needs files");
  }
  const bool several = options.inputs.size() > 1 || options.all_pages || names_folder(options);
  if (((picture && !names_document(options)) || overlay) && several) {
    throw WrongUsage("several inputs need a folder as output, not standard output");
  }
}

/** One path for every spelling of a target. */
std::string identity_of(const std::string& path) {
  std::error_code error;
  const fs::path whole = fs::weakly_canonical(path, error);
  return error ? path : whole.string();
}

/** Marks the jobs that would write what an earlier one writes. */
void find_conflicts(std::vector<Job>& jobs, Naming naming, const std::string& sheet) {
  std::map<std::string, std::string> writers;
  if (!sheet.empty()) writers.emplace(identity_of(sheet), "the contact sheet");
  const bool document = naming == Naming::kOneDocument;
  if (document && !jobs.empty()) writers.emplace(identity_of(jobs.front().output), "the cards");
  const bool one_name =
      document && !sheet.empty() && !jobs.empty() && identity_of(jobs.front().output) == identity_of(sheet);
  if (one_name) throw WrongUsage("-o and --sheet " + sheet + " are one file");
  for (Job& job : jobs) {
    for (const std::string& path : {document ? "" : job.output, job.overlay}) {
      if (path.empty() || path == kPipe) continue;
      const auto [writer, first] = writers.emplace(identity_of(path), job.input);
      if (!first) job.conflict = path + ": is written for " + writer->second + " already";
    }
  }
}

/** Where the last input is no file, but called like one: it may be meant as the output. */
std::string meant_output(const Options& options) {
  const std::string& last = options.inputs.back();
  std::error_code error;
  if (options.inputs.size() < 2 || fs::exists(last, error)) return "";
  return " (did you mean -o " + last + "?)";
}

}  // namespace

bool names_document(const Options& options) {
  if (options.output == kPipe) return options.format == Format::kPdf;
  return !means_folder(options.output, false) && format_of_path(options.output) == Format::kPdf;
}

std::vector<Job> plan_jobs(const Options& options, Naming naming) {
  if (options.output.empty() && !options.detect_only)
    throw WrongUsage("-o OUT is needed, or --detect-only to write nothing" + meant_output(options));
  check_pipes(options);
  if (naming == Naming::kNumberedFiles && options.output == kPipe) throw WrongUsage("-o needs a folder");
  const bool several = options.inputs.size() > 1 || options.all_pages || names_folder(options);
  const bool needs_folder = naming != Naming::kOneDocument && (several || naming == Naming::kNumberedFiles);
  const bool folder = means_folder(options.output, needs_folder);
  const bool overlay_folder = means_folder(options.overlay, several);
  if (folder) {
    check_folder(options.output, "-o", needs_folder);
  } else {
    check_one_file(options, options.output, "-o");
  }
  if (overlay_folder) {
    check_folder(options.overlay, "--overlay", several);
  } else {
    check_one_file({}, options.overlay, "--overlay");
  }

  if (options.sheet == kPipe) throw WrongUsage("--sheet needs a file");
  check_one_file({}, options.sheet, "--sheet");

  std::vector<Job> jobs;
  for (const Input& input : expanded_inputs(options)) {
    const std::string stem = stem_of(options, input);
    jobs.push_back({input.path, target_for(options.output, folder, stem + ending_for(options, input.path)),
                    target_for(options.overlay, overlay_folder, stem + "-overlay.png"), input.page, folder,
                    overlay_folder, ""});
  }
  find_conflicts(jobs, naming, options.sheet);
  return jobs;
}

void make_folders(const std::vector<Job>& jobs) {
  for (const Job& job : jobs) {
    for (const auto& [path, in_folder] :
         {std::pair(job.output, job.folder), std::pair(job.overlay, job.overlay_folder)}) {
      const fs::path folder = fs::path(path).parent_path();
      std::error_code error;
      if (!in_folder || folder.empty() || fs::exists(folder, error)) continue;
      fs::create_directories(folder, error);
      if (error) throw WrongUsage(folder.string() + ": " + error.message());
    }
  }
}

std::string number_path(const std::string& path, int number) {
  const fs::path whole(path);
  return (whole.parent_path() / (whole.stem().string() + "-" + std::to_string(number) + whole.extension().string()))
      .string();
}

}  // namespace tool
