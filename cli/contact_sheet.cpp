#include "contact_sheet.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <new>
#include <utility>

#include "colours.h"
#include "leptonica_pix.h"
#include "memory.h"
#include "printable.h"
#include "shown.h"
#include "words.h"

namespace tool {
namespace {

constexpr int kThumbnailSide = 240;
constexpr int kMargin = 8;
constexpr int kLineHeight = 16;
constexpr int kCellWidth = kThumbnailSide + 2 * kMargin;
constexpr int kCellHeight = kThumbnailSide + 2 * kLineHeight + 3 * kMargin;
/** More would make a picture that few programs open. */
constexpr std::size_t kMostPictures = 2000;
/** Of Leptonica's built-in fonts, the smallest. */
constexpr int kFontSize = 4;
/** Of pure black Leptonica makes gray. */
constexpr l_uint32 kInk = 0x20202000;

struct FontRelease {
  void operator()(L_BMF* font) const { bmfDestroy(&font); }
};
using Font = std::unique_ptr<L_BMF, FontRelease>;

Font font_of_captions() {
  const ForeignCode foreign(Large::kCrashes);
  Font font(bmfCreate(nullptr, kFontSize));
  if (!font) throw std::bad_alloc();
  return font;
}

l_uint32 word_of(Colour colour) {
  return l_uint32{colour.red} << L_RED_SHIFT | l_uint32{colour.green} << L_GREEN_SHIFT |
         l_uint32{colour.blue} << L_BLUE_SHIFT;
}

Colour colour_of(Outcome outcome) {
  switch (outcome) {
    case Outcome::kDone:
      return kGreen;
    case Outcome::kLikely:
    case Outcome::kDoubtful:
      return kAmber;
    case Outcome::kNothing:
    case Outcome::kFailed:
      return kRed;
    default:
      return kBlue;
  }
}

/** The picture, with its longer side as long as there is room; a smaller one as it is. */
Bitmap fitted(Bitmap picture) {
  const int longer = std::max(picture.width(), picture.height());
  if (longer <= kThumbnailSide) return picture;
  const auto part = [&](int side) { return std::max(1, side * kThumbnailSide / longer); };
  const PixPtr whole = colour_pix_of(picture);
  const ForeignCode foreign(Large::kCrashes);
  return bitmap_of(checked(pixScaleToSize(whole.get(), part(picture.width()), part(picture.height()))));
}

/** The scan with what was seen, small and in the sheet's colours: a profile is one scan's, and the sheet has none. */
Bitmap thumbnail_of(const Scan& scan, const Finding& finding) {
  Bitmap picture = fitted(small_overlay(scan, finding, kThumbnailSide));
  FittingColours colours = fit_colours(picture, scan.metadata.icc, Profiles::kNone);
  return colours.converted ? std::move(*colours.converted) : std::move(picture);
}

/** The font has nothing beyond ASCII. */
std::string in_ascii(const std::string& text) {
  std::string plain;
  for (const char c : printable(text)) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      plain += c;
    } else if (byte >= 0xc0) {
      plain += '?';  // one for each character, whose other bytes are smaller
    }
  }
  return plain;
}

/** The text, with dots for its middle where it is too long. */
std::string shortened(const std::string& text, L_BMF* font) {
  const auto fits = [&](const std::string& line) {
    l_int32 width = 0;
    return bmfGetStringWidth(font, line.c_str(), &width) == 0 && width <= kThumbnailSide;
  };
  std::string line = text;
  for (std::size_t kept = std::min<std::size_t>(text.size(), kThumbnailSide); !fits(line) && kept > 0; --kept) {
    line = text.substr(0, kept / 2) + "..." + text.substr(text.size() - (kept - kept / 2));
  }
  return line;
}

PixPtr blank(int width, int height) {
  PixPtr pix = checked(pixCreate(width, height, 32));
  pixSetAll(pix.get());
  return pix;
}

/** Two lines of text under a picture, and a stripe of the outcome's colour above it. */
Bitmap cell_of(const Bitmap& picture, const std::string& name, const std::string& text, Outcome outcome, L_BMF* font) {
  const PixPtr small = picture.empty() ? nullptr : colour_pix_of(picture);
  const ForeignCode foreign(Large::kCrashes);
  PixPtr cell = blank(kCellWidth, kCellHeight);
  for (int y = 0; y < kMargin / 2; ++y) {
    for (int x = kMargin; x < kCellWidth - kMargin; ++x) pixSetPixel(cell.get(), x, y, word_of(colour_of(outcome)));
  }
  if (small) {
    const int width = pixGetWidth(small.get());
    const int height = pixGetHeight(small.get());
    pixRasterop(cell.get(), (kCellWidth - width) / 2, kMargin + (kThumbnailSide - height) / 2, width, height, PIX_SRC,
                small.get(), 0, 0);
  }
  int baseline = kMargin + kThumbnailSide + kLineHeight;
  for (const std::string& line : {name, text}) {
    pixSetTextline(cell.get(), font, shortened(in_ascii(line), font).c_str(), kInk, kMargin, baseline, nullptr,
                   nullptr);
    baseline += kLineHeight;
  }
  return bitmap_of(std::move(cell));
}

void place(const Bitmap& cell, Bitmap& sheet, int column, int row) {
  constexpr std::ptrdiff_t kBytes = 3;
  for (int y = 0; y < cell.height(); ++y) {
    std::memcpy(sheet.row(row * kCellHeight + y) + kBytes * column * kCellWidth, cell.row(y),
                static_cast<std::size_t>(kBytes * cell.width()));
  }
}

std::string outcome_text(const Report& report, const Finding& finding) {
  const std::string outcome = name_of(report.outcome);
  // What marks on a sheet tell has no confidence.
  return finding.found && finding.confidence > 0 ? outcome + ", confidence " + rounded(finding.confidence, "%.2f")
                                                 : outcome;
}

}  // namespace

ContactSheet::ContactSheet(const std::string& path, const std::vector<std::string>& protect, bool force) : path_(path) {
  if (!path.empty()) file_ = std::make_unique<OutputFile>(path, protect, force);
}

void ContactSheet::add(std::size_t index, const Report& report, const Scan& scan, const Finding& finding) {
  if (path_.empty()) return;
  Bitmap picture = index < kMostPictures ? thumbnail_of(scan, finding) : Bitmap();
  take(index, {title_of(report), outcome_text(report, finding), report.outcome, std::move(picture)});
}

void ContactSheet::add_without_picture(std::size_t index, const Report& report) {
  if (!path_.empty()) take(index, {title_of(report), outcome_text(report, {}), report.outcome, Bitmap()});
}

void ContactSheet::take(std::size_t index, Entry entry) {
  entry.name = std::filesystem::path(entry.name).filename().string();
  const std::lock_guard lock(mutex_);
  if (index < kMostPictures) {
    entries_.insert_or_assign(index, std::move(entry));
  } else {
    ++left_out_;
  }
}

void ContactSheet::conclude() {
  const std::lock_guard lock(mutex_);
  const std::unique_ptr<OutputFile> file = std::move(file_);
  if (!file || entries_.empty()) return;
  if (left_out_ > 0) {
    const std::string more = std::to_string(left_out_) + " more are not shown";
    entries_.insert_or_assign(kMostPictures, Entry{more, "", Outcome::kSkipped, Bitmap()});
  }
  const Font font = font_of_captions();
  const int count = static_cast<int>(entries_.size());
  const int columns = static_cast<int>(std::ceil(std::sqrt(count * double{kCellHeight} / kCellWidth)));
  const int width = std::min(columns, count);
  Bitmap sheet(width * kCellWidth, (count + width - 1) / width * kCellHeight, VANTREL_FORMAT_RGB);
  for (int y = 0; y < sheet.height(); ++y)
    std::memset(sheet.row(y), 0xff, std::size_t{3} * static_cast<std::size_t>(sheet.width()));
  int place_of_next = 0;
  for (const auto& [index, entry] : entries_) {
    const Bitmap cell = cell_of(entry.picture, entry.name, entry.text, entry.outcome, font.get());
    place(cell, sheet, place_of_next % width, place_of_next / width);
    ++place_of_next;
  }
  file->commit(encode_image(sheet, *format_of_path(path_), {}));
}

}  // namespace tool
