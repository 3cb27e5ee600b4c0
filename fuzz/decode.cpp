// The tool's decoding of files of every format, and writing what was decoded.
#include <array>
#include <exception>
#include <new>

#include "cli/console.h"
#include "cli/failure.h"
#include "cli/image_file.h"
#include "fuzz/check.h"

namespace {

/** A picture may be within the one and beyond the other; what takes long, the fuzzer ends itself. */
constexpr tool::Limits kLimits{2, 10, 1000};

constexpr std::array kWritten = {tool::Format::kPng,  tool::Format::kTiff, tool::Format::kJpeg, tool::Format::kBmp,
                                 tool::Format::kWebp, tool::Format::kPnm,  tool::Format::kPdf};

/** What a first byte chooses. */
struct Choice {
  explicit Choice(int byte)
      : page(1 + byte % 3), written(kWritten[static_cast<std::size_t>(byte / 3) % kWritten.size()]) {
    const int rest = byte / 21;
    encoding.quick = rest % 2 != 0;
    encoding.lossy = rest / 2 % 2 != 0;
    if (rest / 4 % 2 != 0) encoding.quality = 30;
  }

  int page;
  tool::Format written;
  tool::Encoding encoding;
};

void decode(const tool::Bytes& file, const Choice& choice) {
  const auto& [page, written, encoding] = choice;
  const tool::Scan scan = tool::decode_image(file, page, kLimits);
  const int depth = scan.image.depth();
  FUZZ_CHECK(depth == 1 || depth == 8 || depth == 24);
  FUZZ_CHECK(scan.image.width() > 0 && scan.image.height() > 0);
  FUZZ_CHECK(tool::count_pages(file, kLimits) == scan.pages && page <= scan.pages);
  if (scan.image.width() > 200 || scan.image.height() > 200) return;
  // With what the file says of itself, whatever that is.
  const tool::Bytes copy = tool::encode_image(scan.image, written, scan.metadata, encoding);
  if (written == tool::Format::kPdf) return;
  const tool::Scan again = tool::decode_image(copy, 1, kLimits);
  FUZZ_CHECK(again.image.width() == scan.image.width() && again.image.height() == scan.image.height());
  if (written == tool::Format::kPng || written == tool::Format::kTiff) FUZZ_CHECK(again.image.depth() == depth);
}

}  // namespace

/** The library of fonts behind the reading of PDF keeps a little for the whole process. */
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }

/** The first byte says which page is asked for, and what is written and how; the rest is the file. */
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  static const bool quiet = (tool::open_console(), true);
  if (!quiet || size == 0) return 0;
  try {
    decode({data + 1, data + size}, Choice(data[0]));
  } catch (const tool::Failure&) {
  } catch (const std::bad_alloc&) {
  }
  return 0;
}
