#include <array>
#include <string>

#include "failure.h"
#include "formats/codecs.h"

namespace tool {
namespace {

std::string name_of(Format format) {
  constexpr std::array kNames = {"PNG", "JPEG", "TIFF", "BMP", "PNM", "WebP", "GIF", "JPEG 2000", "HEIC", "PDF"};
  return kNames[static_cast<std::size_t>(format)];
}

}  // namespace

void refuse_damaged(Format format) { throw Failure("the " + name_of(format) + " data is truncated or damaged"); }

void refuse_kind(Format format, const std::string& kind) {
  throw Failure("this kind of " + name_of(format) + " is not read: " + kind);
}

void refuse_format(Format format) { throw Failure(name_of(format) + " is not read by this build"); }

void refuse_page(int page, int pages) {
  throw Failure("no page " + std::to_string(page) + " (it has " + std::to_string(pages) + ")");
}

void refuse_to_write(Format format) { throw Failure("the picture cannot be written as " + name_of(format)); }

}  // namespace tool
