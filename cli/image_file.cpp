#include "image_file.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "colours.h"
#include "console.h"
#include "failure.h"
#include "reading_time.h"

namespace tool {
namespace {

/** What a file of a format begins with; a dot is any byte. */
struct Signature {
  std::string_view start;
  Format format;
};

constexpr std::array kSignatures = {Signature{"\x89PNG\r\n\x1a\n", Format::kPng},
                                    Signature{"\xff\xd8\xff", Format::kJpeg},
                                    Signature{{"II*\0", 4}, Format::kTiff},
                                    Signature{{"MM\0*", 4}, Format::kTiff},
                                    Signature{{"II+\0", 4}, Format::kTiff},
                                    Signature{{"MM\0+", 4}, Format::kTiff},
                                    Signature{"BM", Format::kBmp},
                                    Signature{"RIFF....WEBP", Format::kWebp},
                                    Signature{"GIF8", Format::kGif},
                                    Signature{{"\0\0\0\x0cjP  ", 8}, Format::kJpeg2000},
                                    Signature{"....ftyphei", Format::kHeif},
                                    Signature{"....ftypmif1", Format::kHeif},
                                    Signature{"%PDF-", Format::kPdf}};

bool begins_with(const Bytes& file, std::string_view start) {
  return file.size() >= start.size() && std::equal(start.begin(), start.end(), file.begin(), [](char wanted, int byte) {
           return wanted == '.' || static_cast<unsigned char>(wanted) == byte;
         });
}

/** P1 to P7, and a blank or a comment. */
bool is_pnm(const Bytes& file) {
  constexpr std::string_view kAfter = " \t\r\n#";
  return file.size() > 2 && file[0] == 'P' && file[1] >= '1' && file[1] <= '7' &&
         kAfter.find(static_cast<char>(file[2])) != std::string_view::npos;
}

Format format_of_content(const Bytes& file) {
  if (file.empty()) throw Failure("the file is empty");
  for (const Signature& known : kSignatures) {
    if (begins_with(file, known.start)) return known.format;
  }
  if (is_pnm(file)) return Format::kPnm;
  throw Failure(std::string("not an image (") + kFormatNames + ")");
}

/** Whether the libraries for it were there when this was built. */
bool is_read(Format format) {
  switch (format) {
#ifndef VANTREL_WITH_GIF
    case Format::kGif:
      return false;
#endif
#ifndef VANTREL_WITH_JPEG2000
    case Format::kJpeg2000:
      return false;
#endif
#ifndef VANTREL_WITH_HEIF
    case Format::kHeif:
      return false;
#endif
#ifndef VANTREL_WITH_PDF
    case Format::kPdf:
      return false;
#endif
    default:
      return true;
  }
}

/** What is not the file's time. */
void prepare([[maybe_unused]] Format format) {
#ifdef VANTREL_WITH_PDF
  if (format == Format::kPdf) prepare_pdf();
#endif
}

Limits with_time(Limits limits, ReadingTime& time) {
  limits.time = &time;
  return limits;
}

Picture read_picture(const Bytes& file, Format format, int page, const Limits& limits) {
  if (!is_read(format)) refuse_format(format);
  switch (format) {
    case Format::kTiff:
      return read_tiff(file, page, limits);
#ifdef VANTREL_WITH_PDF
    case Format::kPdf:
      return read_pdf(file, page, limits);
#endif
    default:
      break;
  }
  if (page > 1) refuse_page(page, 1);
  switch (format) {
    case Format::kPng:
      return read_png(file, limits);
    case Format::kJpeg:
      return read_jpeg(file, limits);
    case Format::kBmp:
      return read_bmp(file, limits);
    case Format::kPnm:
      return read_pnm(file, limits);
    case Format::kWebp:
      return read_webp(file, limits);
#ifdef VANTREL_WITH_JPEG2000
    case Format::kJpeg2000:
      return read_jpeg2000(file, limits);
#endif
#ifdef VANTREL_WITH_GIF
    case Format::kGif:
      return read_gif(file, limits);
#endif
#ifdef VANTREL_WITH_HEIF
    case Format::kHeif:
      return read_heif(file, limits);
#endif
    default:
      refuse_format(format);
  }
}

Profiles profiles_of(Format format) {
  switch (format) {
    case Format::kPng:
    case Format::kJpeg:
    case Format::kTiff:
      return Profiles::kOwn;
    case Format::kWebp:
      return Profiles::kColourOnly;
    default:
      return Profiles::kNone;
  }
}

Bytes write_picture(const Bitmap& image, Format format, const Metadata& metadata, const Encoding& encoding) {
  switch (format) {
    case Format::kPng:
      return write_png(image, metadata, encoding);
    case Format::kJpeg:
      return write_jpeg(image, metadata, encoding);
    case Format::kTiff:
      return write_tiff(image, metadata);
    case Format::kBmp:
      return write_bmp(image);
    case Format::kPnm:
      return write_pnm(image);
    case Format::kWebp:
      return write_webp(image, metadata, encoding);
    default:
      refuse_to_write(format);
  }
}

}  // namespace

Scan decode_image(Bytes file, int page, const Limits& limits) {
  const Format format = format_of_content(file);
  const QuietCodecs quiet;
  prepare(format);
  ReadingTime time(format, file.size(), limits.seconds);
  Picture picture = read_picture(file, format, page, with_time(limits, time));
  const ExifFacts facts = facts_of(picture.metadata.exif);
  const auto [x, y] = picture.image.resolution();
  if ((x == 0 || y == 0) && format != Format::kTiff) picture.image.set_resolution(facts.resolution);
  const int orientation = picture.orientation != 0 ? picture.orientation : facts.orientation;
  return {upright(std::move(picture.image), orientation),
          format,
          page,
          picture.pages,
          std::move(file),
          picture.sample_bits > 8,
          std::move(picture.metadata)};
}

int count_pages(const Bytes& file, const Limits& limits) {
  const Format format = format_of_content(file);
  const ReadingTime time(format, file.size(), limits.seconds);
  switch (format) {
    case Format::kTiff:
      return count_tiff_pages(file);
#ifdef VANTREL_WITH_PDF
    case Format::kPdf:
      return count_pdf_pages(file, limits);
#endif
    default:
      return 1;
  }
}

Bytes encode_image(const Bitmap& image, Format format, const Metadata& metadata, const Encoding& encoding) {
  const QuietCodecs quiet;
  if (format == Format::kPdf) return write_pdf({encode_page(image, metadata, encoding)});
  const Profiles held = profiles_of(format);
  Metadata fitting;
  if (held != Profiles::kNone) {
    fitting.exif = exif_for(metadata.exif, image);
    fitting.xmp = xmp_for(metadata.xmp);
  }
  const FittingColours colours = fit_colours(image, metadata.icc, held);
  if (colours.profile_stays) fitting.icc = metadata.icc;
  return write_picture(colours.converted ? *colours.converted : image, format, fitting, encoding);
}

PdfPage encode_page(const Bitmap& image, const Metadata& metadata, const Encoding& encoding) {
  const QuietCodecs quiet;
  const FittingColours colours = fit_colours(image, metadata.icc, Profiles::kOwn);
  Metadata fitting;
  if (colours.profile_stays) fitting.icc = metadata.icc;
  return page_of(colours.converted ? *colours.converted : image, fitting, encoding);
}

}  // namespace tool
