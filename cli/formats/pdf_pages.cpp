// What qpdf has of its older interface is not wanted.
#define POINTERHOLDER_TRANSITION 4
#include <algorithm>
#include <memory>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>
#include <qpdf/QUtil.hh>
#include <string>
#include <string_view>

#include "big_endian.h"
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
    const std::size_t length = big_endian(png.data() + at, 4);
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

}  // namespace

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
