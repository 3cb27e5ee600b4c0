/**
 * @file card_document.h
 * @brief All the cards of a batch in one PDF file.
 */
#ifndef VANTREL_CLI_CARD_DOCUMENT_H
#define VANTREL_CLI_CARD_DOCUMENT_H

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "formats/codecs.h"
#include "safe_file.h"

namespace tool {

/** Takes pages as they come, from any thread, and puts them into the order of the inputs. */
class CardDocument {
 public:
  /** None: nothing may be added, and nothing is written. */
  CardDocument() = default;

  /** @param protect, force as of OutputFile. @throws Failure as that */
  CardDocument(const std::string& path, const std::vector<std::string>& protect, bool force);

  /** The pages of one input. @throws std::bad_alloc */
  void add(std::size_t index, std::vector<PdfPage> pages);

  /** Writes the file, unless there is no page for it. @throws Failure, std::bad_alloc */
  void conclude();

 private:
  std::unique_ptr<OutputFile> file_;
  std::mutex mutex_;
  std::map<std::size_t, std::vector<PdfPage>> pages_;
};

}  // namespace tool

#endif
