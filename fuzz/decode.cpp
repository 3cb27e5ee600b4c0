// The tool's decoding of files of every format, and writing what was decoded.
#include <array>
#include <exception>
#include <new>

#include "cli/console.h"
#include "cli/failure.h"
#include "cli/image_file.h"
#include "fuzz/check.h"

namespace {

constexpr tool::Limits kLimits{1, 10};

void decode(tool::Bytes file, int page) {
  const tool::Scan scan = tool::decode_image(std::move(file), page, kLimits);
  const int depth = scan.image.depth();
  FUZZ_CHECK(depth == 1 || depth == 8 || depth == 24);
  FUZZ_CHECK(scan.image.width() > 0 && scan.image.height() > 0);
  if (scan.image.width() > 200 || scan.image.height() > 200) return;
  // Without loss it comes back as it was.
  const tool::Scan again = tool::decode_image(tool::encode_image(scan.image, tool::Format::kPng, {}), 1, kLimits);
  FUZZ_CHECK(again.image.width() == scan.image.width() && again.image.height() == scan.image.height());
  FUZZ_CHECK(again.image.depth() == depth);
}

}  // namespace

/** The first byte says which page is asked for; the rest is the file. */
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  static const bool quiet = (tool::open_console(), true);
  if (!quiet || size == 0) return 0;
  try {
    decode({data + 1, data + size}, 1 + data[0] % 3);
  } catch (const tool::Failure&) {
  } catch (const std::bad_alloc&) {
  }
  return 0;
}
