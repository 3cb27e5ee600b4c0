#include "card_document.h"

#include <utility>

namespace tool {

CardDocument::CardDocument(const std::string& path, const std::vector<std::string>& protect, bool force)
    : file_(std::make_unique<OutputFile>(path, protect, force)) {}

void CardDocument::add(std::size_t index, std::vector<PdfPage> pages) {
  const std::lock_guard lock(mutex_);
  pages_.insert_or_assign(index, std::move(pages));
}

void CardDocument::conclude() {
  if (!file_ || pages_.empty()) return;
  std::vector<PdfPage> all;
  for (auto& [index, pages] : pages_) {
    for (PdfPage& page : pages) all.push_back(std::move(page));
  }
  file_->commit(write_pdf(std::move(all)));
}

}  // namespace tool
