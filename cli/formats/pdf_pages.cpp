// What qpdf has of its older interface is not wanted.
#define POINTERHOLDER_TRANSITION 4
#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>
#include <qpdf/QUtil.hh>
#include <string>
#include <string_view>

#include "failure.h"
#include "formats/codecs.h"
#include "memory.h"

namespace tool {
namespace {

/** What the pixels of a PNG file are compressed to, which PDF files hold alike. */
Bytes compressed_rows(const Bytes& png) {
  constexpr std::size_t kSignature = 8;
  constexpr std::size_t kAroundData = 12;
  constexpr std::string_view kData = "IDAT";
  Bytes rows;
  for (std::size_t at = kSignature; at + kAroundData <= png.size();) {
    std::size_t length = 0;
    for (std::size_t i = 0; i < 4; ++i) length = length << 8 | png[at + i];
    const auto type = png.begin() + static_cast<std::ptrdiff_t>(at) + 4;
    const auto data = type + 4;
    if (std::equal(kData.begin(), kData.end(), type)) rows.insert(rows.end(), data, data + static_cast<long>(length));
    at += kAroundData + length;
  }
  return rows;
}

/** A stream of bytes that outlive the document. */
QPDFObjectHandle stream_of(QPDF& document, Bytes& bytes, const std::string& dictionary) {
  QPDFObjectHandle stream =
      QPDFObjectHandle::newStream(&document, std::make_shared<Buffer>(bytes.data(), bytes.size()));
  stream.replaceDict(QPDFObjectHandle::parse(dictionary));
  return stream;
}

QPDFObjectHandle picture_of(QPDF& document, PdfPage& page) {
  const std::string colours = page.depth == 24 ? "3" : "1";
  const std::string bits = page.depth == 1 ? "1" : "8";
  const std::string space = page.depth == 24 ? "/DeviceRGB" : "/DeviceGray";
  const std::string width = std::to_string(page.width);
  const std::string filter = page.jpeg ? "/DCTDecode"
                                       : "/FlateDecode /DecodeParms << /Predictor 15 /Colors " + colours +
                                             " /BitsPerComponent " + bits + " /Columns " + width + " >>";
  QPDFObjectHandle picture =
      stream_of(document, page.data,
                "<< /Type /XObject /Subtype /Image /Width " + width + " /Height " + std::to_string(page.height) +
                    " /BitsPerComponent " + bits + " /ColorSpace " + space + " /Filter " + filter + " >>");
  if (!page.icc.empty()) {
    const QPDFObjectHandle profile = stream_of(document, page.icc, "<< /N " + colours + " /Alternate " + space + " >>");
    picture.getDict().replaceKey("/ColorSpace",
                                 QPDFObjectHandle::newArray({QPDFObjectHandle::newName("/ICCBased"), profile}));
  }
  return picture;
}

/** So many pixels in the unit of pages, 1/72 of an inch. */
double points(int pixels, int dpi) { return 72.0 * pixels / dpi; }

std::string number(double value) { return QUtil::double_to_string(value, 5); }

/**
 * The picture over the whole page, but for a hair's breadth: what draws it at its own resolution then meets its pixels
 * one to one, where a picture that ends on a pixel's border would get that pixel too.
 */
std::string drawing(double width, double height) {
  constexpr double kHair = 0.0001;
  const std::string inset = number(kHair / 2);
  return "q " + number(width - kHair) + " 0 0 " + number(height - kHair) + " " + inset + " " + inset +
         " cm /Card Do Q\n";
}

void add_page(QPDF& document, PdfPage& page) {
  const double width = points(page.width, page.resolution.x);
  const double height = points(page.height, page.resolution.y);
  QPDFObjectHandle sheet = QPDFObjectHandle::parse("<< /Type /Page /MediaBox [0 0 " + number(width) + " " +
                                                   number(height) + "] /Resources << /XObject << >> >> >>");
  sheet.getKey("/Resources").getKey("/XObject").replaceKey("/Card", picture_of(document, page));
  sheet.replaceKey("/Contents", QPDFObjectHandle::newStream(&document, drawing(width, height)));
  QPDFPageDocumentHelper(document).addPage(QPDFPageObjectHelper(document.makeIndirectObject(sheet)), false);
}

/** How many samples a pixel has; three where it is not plain. */
int samples_of(QPDFObjectHandle space) {
  const std::string name = space.isName() ? space.getName() : "";
  if (name == "/DeviceGray") return 1;
  if (name == "/DeviceCMYK") return 4;
  if (!space.isArray() || space.getArrayNItems() < 2 || !space.getArrayItem(0).isName()) return 3;
  const std::string kind = space.getArrayItem(0).getName();
  if (kind == "/Indexed" || kind == "/CalGray" || kind == "/Separation") return 1;
  QPDFObjectHandle profile = space.getArrayItem(1);
  QPDFObjectHandle samples =
      kind == "/ICCBased" && profile.isStream() ? profile.getDict().getKey("/N") : QPDFObjectHandle::newNull();
  return samples.isInteger() ? std::clamp(samples.getIntValueAsInt(), 1, 4) : 3;
}

/** Judges what the dictionary of an image says of it. */
void check_dictionary(QPDFObjectHandle image, const Limits& limits) {
  const auto number = [&](const char* key, long long otherwise) {
    QPDFObjectHandle value = image.getKey(key);
    return value.isInteger() ? value.getIntValue() : otherwise;
  };
  QPDFObjectHandle mask = image.getKey("/ImageMask");
  const bool stencil = mask.isBool() && mask.getBoolValue();
  const int bits = stencil ? 1 : static_cast<int>(std::clamp(number("/BitsPerComponent", 8), 1LL, 16LL));
  check_size(number("/Width", 0), number("/Height", 0), stencil ? 1 : bits * samples_of(image.getKey("/ColorSpace")),
             limits);
}

}  // namespace

void check_images_of_pdf_page(const Bytes& file, int page, const Limits& limits) {
  const ForeignCode foreign(Large::kCrashes);
  const auto check_image = [&](QPDFObjectHandle image) {
    for (const char* key : {"/SMask", "/Mask"}) {
      QPDFObjectHandle mask = image.getDict().getKey(key);
      if (mask.isStream()) check_dictionary(mask.getDict(), limits);
    }
    check_dictionary(image.getDict(), limits);
  };
  try {
    QPDF document;
    document.setSuppressWarnings(true);
    document.processMemoryFile("", reinterpret_cast<const char*>(file.data()), file.size());
    const auto& pages = document.getAllPages();
    if (page < 1 || static_cast<std::size_t>(page) > pages.size()) return;
    QPDFPageObjectHelper(pages[static_cast<std::size_t>(page) - 1])
        .forEachImage(true,
                      [&](QPDFObjectHandle& image, QPDFObjectHandle&, const std::string&) { check_image(image); });
  } catch (const Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {
    // What qpdf cannot make out may still be drawn.
  }
}

PdfPage page_of(const Bitmap& image, const Metadata& metadata, const Encoding& encoding) {
  PdfPage page;
  // Black and white alone are no smaller with loss.
  page.jpeg = encoding.lossy && image.depth() != 1;
  page.data = page.jpeg ? write_jpeg(image, {}, encoding) : compressed_rows(write_png(image, {}, encoding));
  page.width = image.width();
  page.height = image.height();
  page.depth = image.depth();
  page.icc = metadata.icc;
  const auto [x, y] = image.resolution();
  if (x > 0 && y > 0) page.resolution = {x, y};
  return page;
}

Bytes write_pdf(std::vector<PdfPage> pages) {
  const ForeignCode foreign(Large::kCrashes);
  QPDF document;
  document.emptyPDF();
  document.setSuppressWarnings(true);
  for (PdfPage& page : pages) add_page(document, page);
  QPDFWriter writer(document);
  writer.setOutputMemory();
  writer.setStreamDataMode(qpdf_s_preserve);
  writer.setDeterministicID(true);
  writer.write();
  const std::shared_ptr<Buffer> file = writer.getBufferSharedPointer();
  return {file->getBuffer(), file->getBuffer() + file->getSize()};
}

}  // namespace tool
