/**
 * @file contact_sheet.h
 * @brief A batch at a glance: one picture on which each input stands small, with its outcome.
 */
#ifndef VANTREL_CLI_CONTACT_SHEET_H
#define VANTREL_CLI_CONTACT_SHEET_H

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "batch.h"
#include "report.h"
#include "safe_file.h"

namespace tool {

/** Takes inputs as they are done, from any thread, and puts them into their order. */
class ContactSheet {
 public:
  /** @param path empty: none is made. @param protect, force as of OutputFile. @throws Failure as that */
  ContactSheet(const std::string& path, const std::vector<std::string>& protect, bool force);

  /** @throws Failure, std::bad_alloc */
  void add(std::size_t index, const Report& report, const Scan& scan, const Finding& finding);

  /** An input that failed, or was skipped, has no picture. */
  void add_without_picture(std::size_t index, const Report& report);

  /** Writes the sheet of all that were taken, once. @throws Failure, std::bad_alloc */
  void conclude();

 private:
  struct Entry {
    std::string name;
    std::string text;
    Outcome outcome;
    Bitmap picture; /**< may be empty */
  };

  void take(std::size_t index, Entry entry);

  std::string path_;
  std::unique_ptr<OutputFile> file_;
  std::mutex mutex_;
  std::map<std::size_t, Entry> entries_;
  std::size_t left_out_ = 0;
};

}  // namespace tool

#endif
