#include "batch.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <memory>
#include <new>
#include <system_error>
#include <thread>

#include "card_document.h"
#include "contact_sheet.h"
#include "failure.h"
#include "memory.h"
#include "printable.h"
#include "progress.h"
#include "review.h"
#include "safe_file.h"

namespace tool {
namespace {

Outcome outcome_of(Certainty certainty) {
  if (certainty == Certainty::kSure) return Outcome::kDone;
  return certainty == Certainty::kLikely ? Outcome::kLikely : Outcome::kDoubtful;
}

bool is_there(const std::string& path) {
  std::error_code error;
  return !path.empty() && path != kPipe && std::filesystem::exists(path, error);
}

/** The output of an earlier run, of several cards the first; empty where there is none. */
std::string existing_output(const Job& job, Naming naming) {
  if (naming != Naming::kNumberedFiles && is_there(job.output)) return job.output;
  if (naming == Naming::kOneDocument) return "";
  const std::string first = job.output.empty() ? "" : number_path(job.output, 1);
  return naming != Naming::kOneFile && is_there(first) ? first : "";
}

bool is_done(const Job& job, Naming naming) { return !existing_output(job, naming).empty(); }

/** What the work on all inputs has in common. */
struct Batch {
  const Options& options;
  Naming naming;
  const std::vector<std::string>& protect; /**< never written to */
  Review& review;
  ContactSheet& sheet;
  CardDocument& document;
};

/** The work on one input, from its file to its results. */
class Task {
 public:
  Task(const Batch& batch, const Job& job, std::size_t index)
      : batch_(batch), options_(batch.options), naming_(batch.naming), job_(job), index_(index) {
    report_.input = job.input;
    report_.page = job.page;
    report_.timed = options_.verbose;
  }

  Report run(const Work& work) {
    try {
      if (options_.skip_existing && is_done(job_, naming_)) {
        report_.outcome = Outcome::kSkipped;
        report_.message = "skipped, there is " + existing_output(job_, naming_);
        batch_.sheet.add_without_picture(index_, report_);
        return std::move(report_);
      }
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
    const std::unique_ptr<OutputFile> output = open(naming_ == Naming::kOneFile ? job_.output : std::string());
    Scan scan = decode_image(read_file(job_.input, options_.limits.megabytes), job_.page, options_.limits);
    if (options_.dpi != 0) scan.image.set_resolution({options_.dpi, options_.dpi});
    report_.pages = scan.pages;
    report_.scan.emplace(scan.image);
    report_.reduced = scan.reduced;

    const auto start = std::chrono::steady_clock::now();
    Finding finding = work(scan);
    report_.milliseconds = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    report_.message = finding.message;
    report_.advice = finding.advice;
    if ((options_.json || options_.json_lines) && finding.details) {
      const ForeignCode json(Large::kCrashes);
      report_.details = finding.details();
    }
    if (overlay) write_overlay(scan, finding, *overlay);
    if (finding.found) {
      write_pictures(scan, finding.pictures, output.get());
      report_.outcome = outcome_of(finding.certainty);
    } else if (options_.keep_unclipped && naming_ == Naming::kOneDocument) {
      write_pages(scan, &scan.image, 1);
      report_.outcome = Outcome::kKept;
    } else if (options_.keep_unclipped && output) {
      write_untouched(scan, *output);
      report_.outcome = Outcome::kKept;
    } else {
      report_.outcome = Outcome::kNothing;
    }
    batch_.review.add(index_, report_, scan, finding);
    batch_.sheet.add(index_, report_, scan, finding);
  }

  void fail(const std::string& reason) {
    report_.outcome = Outcome::kFailed;
    report_.message = reason;
    batch_.review.add_failed(index_, report_);
    batch_.sheet.add_without_picture(index_, report_);
  }

  std::unique_ptr<OutputFile> open(const std::string& path) const {
    return path.empty() ? nullptr : std::make_unique<OutputFile>(path, batch_.protect, options_.force);
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
    const Format format = format_for(path);
    file.commit(encode_image(picture, format, scan.metadata, options_.encoding));
    tell_of_reduction(scan);
    if (format == Format::kPdf) tell_of_size(picture);
    report_.outputs.push_back({path, PictureInfo(picture)});
  }

  /** A page has a size even where the scan does not tell its own. */
  void tell_of_size(const Bitmap& picture) {
    const auto [x, y] = picture.resolution();
    if ((x > 0 && y > 0) || !report_.outputs.empty()) return;
    report_.message += ", its page as of " + std::to_string(kPageDotsPerInch) + " dpi, which the scan does not tell";
  }

  void write_pages(const Scan& scan, const Bitmap* pictures, std::size_t count) {
    std::vector<PdfPage> pages;
    for (std::size_t i = 0; i < count; ++i) {
      pages.push_back(encode_page(pictures[i], scan.metadata, options_.encoding));
    }
    batch_.document.add(index_, std::move(pages));
    for (std::size_t i = 0; i < count; ++i) {
      tell_of_reduction(scan);
      tell_of_size(pictures[i]);
      report_.outputs.push_back({job_.output, PictureInfo(pictures[i])});
    }
  }

  void write_pictures(const Scan& scan, const std::vector<Bitmap>& pictures, OutputFile* file) {
    if (pictures.empty() || job_.output.empty()) return;
    if (naming_ == Naming::kOneDocument) {
      write_pages(scan, pictures.data(), pictures.size());
      return;
    }
    if (naming_ == Naming::kOneFile || (naming_ == Naming::kOneOrMoreFiles && pictures.size() == 1)) {
      if (file != nullptr) return write_picture(scan, pictures.front(), job_.output, *file);
      OutputFile late(job_.output, batch_.protect, options_.force);
      return write_picture(scan, pictures.front(), job_.output, late);
    }
    if (job_.output == kPipe) {
      throw Failure(std::to_string(pictures.size()) + " cards do not go to standard output (try --cards 1)");
    }
    // The first one last: where it is, all are, also after the tool was killed on the way.
    for (int number = static_cast<int>(pictures.size()); number > 0; --number) {
      const std::string path = number_path(job_.output, number);
      write_picture(scan, pictures[static_cast<std::size_t>(number - 1)], path, *open(path));
    }
    std::reverse(report_.outputs.begin(), report_.outputs.end());
  }

  /** The input's own bytes where they fit the output, so that nothing of the scan is lost. */
  void write_untouched(const Scan& scan, OutputFile& file) {
    const Format format = format_for(job_.output);
    const bool as_it_is = format == scan.format && scan.pages == 1 && options_.dpi == 0;
    if (!as_it_is) tell_of_reduction(scan);
    if (!as_it_is && format == Format::kPdf) tell_of_size(scan.image);
    file.commit(as_it_is ? scan.file : encode_image(scan.image, format, scan.metadata, options_.encoding));
    report_.outputs.push_back({job_.output, PictureInfo(scan.image)});
  }

  const Batch& batch_;
  const Options& options_;
  Naming naming_;
  const Job& job_;
  std::size_t index_;
  Report report_;
};

Progress::Style style_of(const Options& options) {
  if (options.json) return Progress::Style::kJson;
  if (options.json_lines) return Progress::Style::kJsonLines;
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

/** What a job would write, on a line. */
std::string plan_of(const Options& options, const Job& job, Naming naming) {
  std::string output = job.output.empty() ? "nothing" : job.output;
  if (!job.output.empty() && naming != Naming::kOneFile && naming != Naming::kOneDocument) {
    const std::string numbered = number_path(job.output, 1) + " and so on";
    output = naming == Naming::kNumberedFiles ? numbered : output + ", or " + numbered;
  }
  std::string line = job.input + (options.all_pages ? ", page " + std::to_string(job.page) : "") + " -> " + output;
  if (!job.overlay.empty()) line += ", overlay " + job.overlay;
  if (!job.conflict.empty()) return line + ": fails, " + job.conflict;
  const std::string existing = existing_output(job, naming);
  if (existing.empty() || options.force) return line;
  return line + (options.skip_existing ? ": skipped, there is " : ": fails without --force, there is ") + existing;
}

int tell_plan(const Options& options, Naming naming, const std::vector<Job>& jobs) {
  std::string text;
  for (const Job& job : jobs) text += printable(plan_of(options, job, naming)) + "\n";
  if (!options.sheet.empty()) {
    const bool kept = is_there(options.sheet) && !options.force;
    text += printable("contact sheet " + options.sheet) + (kept ? ": fails without --force, it is there\n" : "\n");
  }
  return write_all(STDOUT_FILENO, text.data(), text.size()) ? 0 : 1;
}

/** The PDF file of all cards; none where it is not asked for, or there and to be left alone. */
std::unique_ptr<CardDocument> document_of(const Options& options, Naming naming,
                                          const std::vector<std::string>& protect) {
  const bool kept = options.skip_existing && is_there(options.output);
  if (naming != Naming::kOneDocument || kept) return std::make_unique<CardDocument>();
  return std::make_unique<CardDocument>(options.output, protect, options.force);
}

/** Why the document is not written; empty where it is. */
std::string reason_of_loss(CardDocument& document) {
  try {
    document.conclude();
  } catch (const Failure& problem) {
    return problem.what();
  }
  return "";
}

}  // namespace

int run_batch(const Options& options, Naming asked, const std::vector<std::string>& also_read, const Work& work) {
  const Naming naming = names_document(options) ? Naming::kOneDocument : asked;
  const std::vector<Job> jobs = plan_jobs(options, naming);
  if (options.dry_run) return tell_plan(options, naming, jobs);
  make_folders(jobs);
  std::vector<std::string> protect = also_read;
  for (const Job& job : jobs) protect.push_back(job.input);
  Review review(options.review, options.review_below);
  ContactSheet sheet(options.sheet, protect, options.force);
  const std::unique_ptr<CardDocument> document = document_of(options, naming, protect);
  Progress progress(jobs.size(), style_of(options), options.quiet, naming == Naming::kOneDocument);
  const Batch batch{options, naming, protect, review, sheet, *document};
  std::atomic<std::size_t> finished = 0;
  const auto show = [&] {
    review.conclude(finished);
    sheet.conclude();
  };
  const LastWords interrupted(show);
  in_parallel(jobs.size(), options.jobs, [&](std::size_t i) {
    progress.finish(i, Task(batch, jobs[i], i).run(work));
    ++finished;
  });
  const std::string lost = reason_of_loss(*document);
  const bool all_done = progress.conclude(lost);
  show();
  return all_done ? 0 : 1;
}

}  // namespace tool
