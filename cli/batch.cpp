#include "batch.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <new>
#include <system_error>
#include <thread>

#include "failure.h"
#include "memory.h"
#include "progress.h"
#include "safe_file.h"

namespace tool {
namespace {

Outcome outcome_of(Certainty certainty) {
  if (certainty == Certainty::kSure) return Outcome::kDone;
  return certainty == Certainty::kLikely ? Outcome::kLikely : Outcome::kDoubtful;
}

/** The work on one input, from its file to its results. */
class Task {
 public:
  Task(const Options& options, Naming naming, const std::vector<std::string>& protect, const Job& job)
      : options_(options), naming_(naming), protect_(protect), job_(job) {
    report_.input = job.input;
    report_.page = options.page;
  }

  Report run(const Work& work) {
    try {
      work_on_input(work);
    } catch (const std::bad_alloc&) {
      fail(kNotEnoughMemory);
    } catch (const std::exception& problem) {
      fail(problem.what());
    }
    return std::move(report_);
  }

 private:
  void work_on_input(const Work& work) {
    if (!job_.conflict.empty()) throw Failure(job_.conflict);
    const std::unique_ptr<OutputFile> overlay = open(job_.overlay);
    const std::unique_ptr<OutputFile> output = naming_ == Naming::kOneFile ? open(job_.output) : nullptr;
    Scan scan = decode_image(read_file(job_.input, options_.limits.megabytes), options_.page, options_.limits);
    if (options_.dpi != 0) scan.image.set_resolution({options_.dpi, options_.dpi});
    report_.pages = scan.pages;
    report_.scan.emplace(scan.image);

    const auto start = std::chrono::steady_clock::now();
    Finding finding = work(scan);
    report_.milliseconds = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    report_.message = finding.message;
    report_.advice = finding.advice;
    if (options_.json && finding.details) {
      const ForeignCode json(Large::kCrashes);
      report_.details = finding.details();
    }
    if (overlay) write_overlay(scan, finding, *overlay);
    if (finding.found) {
      write_pictures(scan, finding.pictures, output.get());
      report_.outcome = outcome_of(finding.certainty);
    } else if (options_.keep_unclipped && output) {
      write_untouched(scan, *output);
      report_.outcome = Outcome::kKept;
    } else {
      report_.outcome = Outcome::kNothing;
    }
  }

  void fail(const std::string& reason) {
    report_.outcome = Outcome::kFailed;
    report_.message = reason;
  }

  std::unique_ptr<OutputFile> open(const std::string& path) const {
    return path.empty() ? nullptr : std::make_unique<OutputFile>(path, protect_, options_.force);
  }

  Format format_for(const std::string& path) const {
    if (path == kPipe) return options_.format.value_or(Format::kPng);
    return format_of_path(path).value_or(Format::kPng);
  }

  void write_overlay(const Scan& scan, const Finding& finding, OutputFile& file) {
    Canvas canvas(scan.image);
    if (finding.draw) finding.draw(canvas);
    Encoding quick = options_.encoding;
    quick.quick = true;
    file.commit(encode_image(canvas.picture(), format_for(job_.overlay), scan.metadata, quick));
    report_.overlay = job_.overlay;
  }

  void tell_of_reduction(const Scan& scan) {
    if (scan.reduced && report_.outputs.empty()) report_.message += ", its samples reduced to 8 bits";
  }

  void write_picture(const Scan& scan, const Bitmap& picture, const std::string& path, OutputFile& file) {
    file.commit(encode_image(picture, format_for(path), scan.metadata, options_.encoding));
    tell_of_reduction(scan);
    report_.outputs.push_back({path, PictureInfo(picture)});
  }

  void write_pictures(const Scan& scan, const std::vector<Bitmap>& pictures, OutputFile* file) {
    if (pictures.empty() || job_.output.empty()) return;
    if (naming_ == Naming::kOneFile || (naming_ == Naming::kOneOrMoreFiles && pictures.size() == 1)) {
      const std::unique_ptr<OutputFile> late = file == nullptr ? open(job_.output) : nullptr;
      write_picture(scan, pictures.front(), job_.output, late ? *late : *file);
      return;
    }
    if (job_.output == kPipe) {
      throw Failure(std::to_string(pictures.size()) + " cards do not go to standard output (try --cards 1)");
    }
    int number = 0;
    for (const Bitmap& picture : pictures) {
      const std::string path = number_path(job_.output, ++number);
      write_picture(scan, picture, path, *open(path));
    }
  }

  /** The input's own bytes where they fit the output, so that nothing of the scan is lost. */
  void write_untouched(const Scan& scan, OutputFile& file) {
    const Format format = format_for(job_.output);
    const bool as_it_is = format == scan.format && scan.pages == 1 && options_.dpi == 0;
    if (!as_it_is) tell_of_reduction(scan);
    file.commit(as_it_is ? scan.file : encode_image(scan.image, format, scan.metadata, options_.encoding));
    report_.outputs.push_back({job_.output, PictureInfo(scan.image)});
  }

  const Options& options_;
  Naming naming_;
  const std::vector<std::string>& protect_;
  const Job& job_;
  Report report_;
};

Progress::Style style_of(const Options& options) {
  if (options.json) return Progress::Style::kJson;
  const bool picture = options.output == kPipe || options.overlay == kPipe;
  return picture ? Progress::Style::kLinesOnConsole : Progress::Style::kLines;
}

/** Calls `step` with 0 to count - 1, each once, from as many threads as asked for. */
void in_parallel(std::size_t count, int threads, const std::function<void(std::size_t)>& step) {
  std::atomic<std::size_t> next = 0;
  const auto steps = [&] {
    for (std::size_t i = next++; i < count; i = next++) step(i);
  };
  std::vector<std::jthread> helpers;
  const std::size_t most = std::min(count, static_cast<std::size_t>(threads));
  try {
    while (helpers.size() + 1 < most) helpers.emplace_back(steps);
  } catch (const std::system_error&) {
    // As many as there can be do the same work.
  }
  steps();
}

}  // namespace

int run_batch(const Options& options, Naming naming, const std::vector<std::string>& also_read, const Work& work) {
  const std::vector<Job> jobs = plan_jobs(options, naming);
  std::vector<std::string> protect = options.inputs;
  protect.insert(protect.end(), also_read.begin(), also_read.end());
  Progress progress(jobs.size(), style_of(options));
  in_parallel(jobs.size(), options.jobs,
              [&](std::size_t i) { progress.finish(i, Task(options, naming, protect, jobs[i]).run(work)); });
  return progress.conclude() ? 0 : 1;
}

}  // namespace tool
