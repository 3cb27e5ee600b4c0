#ifdef VANTREL_WITH_PDF
#include <fontconfig/fontconfig.h>
#include <poppler-document.h>
#include <poppler-global.h>
#include <poppler-image.h>
#include <poppler-page-renderer.h>
#include <poppler-page.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <string>

#include "formats/codecs.h"
#include "memory.h"
#include "reading_time.h"

namespace tool {
namespace {

/** A page has no pixels of its own; this is what cards are scanned with. */
constexpr int kDotsPerInch = 300;

/** What drawing takes at most: without pixels, for each of them, and for each sample of an image. */
constexpr std::int64_t kBytesAside = 64 * Budget::kMega;
constexpr std::int64_t kBytesOfPixel = 40;
constexpr std::int64_t kBytesOfSample = 12;

std::int64_t bytes_to_open(const Bytes& file) { return kBytesAside + 8 * static_cast<std::int64_t>(file.size()); }

/** Fonts and settings are the whole process's. */
std::mutex poppler_mutex;

/** The mutex is held. */
std::unique_ptr<poppler::document> open_pdf(const Bytes& file) {
  poppler::set_debug_error_function([](const std::string&, void*) {}, nullptr);
  std::unique_ptr<poppler::document> document(
      poppler::document::load_from_raw_data(reinterpret_cast<const char*>(file.data()), static_cast<int>(file.size())));
  if (!document) refuse_damaged(Format::kPdf);
  if (document->is_locked()) refuse_kind(Format::kPdf, "it wants a password");
  return document;
}

}  // namespace

void prepare_pdf() {
  const ForeignCode foreign;
  const std::lock_guard lock(poppler_mutex);
  FcInit();
}

int count_pdf_pages(const Bytes& file, const Limits& limits) {
  const Budget budget(bytes_to_open(file), limits.megabytes);
  return pages_of_pdf(file);
}

Picture read_pdf(const Bytes& file, int page, const Limits& limits) {
  Budget budget(bytes_to_open(file), limits.megabytes);
  const JudgedPage judged = check_pdf_page(file, page, limits);
  budget.allow(kBytesOfSample * judged.samples);
  const ForeignCode foreign(Large::kCrashes);
  const std::lock_guard lock(poppler_mutex);
  const std::unique_ptr<poppler::document> document = open_pdf(judged.mended.empty() ? file : judged.mended);
  Picture picture;
  picture.pages = judged.pages;
  if (page > document->pages()) refuse_damaged(Format::kPdf);
  const std::unique_ptr<poppler::page> sheet(document->create_page(page - 1));
  if (!sheet) refuse_damaged(Format::kPdf);
  const poppler::rectf size = sheet->page_rect();
  constexpr double kPoints = 72;
  const auto pixels = [](double points) {
    return static_cast<std::int64_t>(std::ceil(std::min(points, 1e9) * kDotsPerInch / kPoints));
  };
  const std::int64_t width = pixels(size.width());
  const std::int64_t height = pixels(size.height());
  check_size(width, height, 32, limits);
  budget.allow(kBytesOfPixel * width * height);
  if (limits.time != nullptr) {
    limits.time->expect(width * height + judged.samples);
    limits.time->expect_drawing();
  }
  poppler::page_renderer renderer;
  renderer.set_image_format(poppler::image::format_rgb24);
  renderer.set_render_hint(poppler::page_renderer::antialiasing);
  renderer.set_render_hint(poppler::page_renderer::text_antialiasing);
  const poppler::image image = renderer.render_page(sheet.get(), kDotsPerInch, kDotsPerInch);
  if (!image.is_valid() || image.format() != poppler::image::format_rgb24) refuse_damaged(Format::kPdf);
  picture.image = Bitmap(image.width(), image.height(), VANTREL_FORMAT_RGB, {kDotsPerInch, kDotsPerInch});
  for (int y = 0; y < image.height(); ++y) {
    std::memcpy(picture.image.row(y), image.const_data() + std::ptrdiff_t{image.bytes_per_row()} * y,
                std::size_t{3} * static_cast<std::size_t>(image.width()));
  }
  return picture;
}

}  // namespace tool
#endif
