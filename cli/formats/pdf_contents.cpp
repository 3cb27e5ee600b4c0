// What qpdf has of its older interface is not wanted.
#define POINTERHOLDER_TRANSITION 4
#include <algorithm>
#include <cmath>
#include <exception>
#include <map>
#include <memory>
#include <new>
#include <qpdf/Buffer.hh>
#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFWriter.hh>
#include <set>
#include <string>
#include <vector>

#include "failure.h"
#include "formats/codecs.h"
#include "memory.h"

// What the page of a PDF file is drawn with, judged before it is: a few bytes can be drawn for hours.
namespace tool {
namespace {

/** Bytes to copy, about what the time for it is. Sums stay far below what their type holds. */
using Work = std::int64_t;
constexpr Work kMuchWork = std::int64_t{1} << 50;
constexpr Work kWorkOfForm = 1000;

Work times(std::int64_t count, Work work) {
  return work != 0 && count > kMuchWork / work ? kMuchWork : std::min(kMuchWork, count * work);
}

struct TooMuch : std::exception {};

/** Reads drawings: how long they are, what they draw and how often, and the images that stand in them. */
class Drawing : public Pipeline {
 public:
  Drawing(Work most, const Limits& limits) : Pipeline("drawing", nullptr), most_(most), limits_(limits) {}

  void write(const unsigned char* data, std::size_t size) override {
    constexpr Work kWorkOfByte = 10;
    work_ += times(static_cast<std::int64_t>(size), kWorkOfByte);
    for (std::size_t i = 0; i < size; ++i) read(static_cast<char>(data[i]));
    if (work_ > most_) throw TooMuch();
  }
  void finish() override { end_word(); }

  Work work() const { return work_; }
  const std::map<std::string, std::int64_t>& uses() const { return uses_; }
  /** How many bytes stand where text is, more than there are letters. */
  std::int64_t text() const { return text_; }
  /** An image in the drawing itself that is larger than allowed, or "". */
  const std::string& refusal() const { return refusal_; }

 private:
  void read(char c) {
    constexpr std::size_t kLongest = 127;
    text_ += in_text_ ? 1 : 0;
    static const std::string kBetween("\0\t\n\f\r ()<>[]{}%", 15);
    if (kBetween.find(c) != std::string::npos) return end_word();
    if (c == '/') end_word();
    if (word_.size() <= kLongest) word_ += c;
  }

  void end_word() {
    if (word_.empty()) return;
    if (word_[0] == '/') {
      name_ = word_;
    } else if (word_ == "Do") {
      ++uses_[plain(name_)];
    } else if (word_ == "BT" || word_ == "ET") {
      in_text_ = word_ == "BT";
    } else if (word_ == "BI") {
      width_ = height_ = 0;
    } else if (word_ == "ID") {
      take_image();
    } else if (std::all_of(word_.begin(), word_.end(), [](char c) { return c >= '0' && c <= '9'; })) {
      if (name_ == "/W" || name_ == "/Width") width_ = number();
      if (name_ == "/H" || name_ == "/Height") height_ = number();
    }
    word_.clear();
  }

  std::int64_t number() const {
    constexpr std::size_t kDigits = 9;
    return std::stoll(word_.substr(0, kDigits));
  }

  void take_image() {
    work_ += times(width_, height_);
    try {
      check_size(width_, height_, 8, limits_);
    } catch (const Failure& failure) {
      if (refusal_.empty()) refusal_ = failure.what();
    }
    width_ = height_ = 0;
  }

  /** A name as the dictionaries have it, with #20 and the like resolved. */
  static std::string plain(const std::string& name) {
    try {
      return QPDFObjectHandle::parse(name).getName();
    } catch (const std::exception&) {
      return name;
    }
  }

  Work most_;
  const Limits& limits_;
  Work work_ = 0;
  std::string word_;
  std::string name_;
  bool in_text_ = false;
  std::int64_t text_ = 0;
  std::map<std::string, std::int64_t> uses_;
  std::int64_t width_ = 0;
  std::int64_t height_ = 0;
  std::string refusal_;
};

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

/** A page has it itself, or from those above it. */
QPDFObjectHandle inherited(QPDFObjectHandle page, const char* key) {
  constexpr int kDeepest = 50;
  QPDFObjectHandle at = page;
  for (int depth = 0; depth < kDeepest && at.isDictionary(); ++depth, at = at.getKey("/Parent")) {
    QPDFObjectHandle value = at.getKey(key);
    if (!value.isNull()) return value;
  }
  return QPDFObjectHandle::newNull();
}

class Page {
 public:
  explicit Page(const Limits& limits) : limits_(limits), most_(limits.megabytes * Budget::kMega) {}

  /** Judges all that is drawn. */
  void check(QPDFObjectHandle page, QPDFObjectHandle resources) {
    QPDFObjectHandle box = inherited(page, "/MediaBox");
    if (box.isRectangle()) {
      const QPDFObjectHandle::Rectangle sides = box.getArrayAsRectangle();
      area_ = (sides.urx - sides.llx) * (sides.ury - sides.lly);
    }
    Work work = work_of_drawing(page.getKey("/Contents"), resources);
    QPDFObjectHandle notes = page.getKey("/Annots");
    for (int i = 0; notes.isArray() && i < notes.getArrayNItems(); ++i) {
      QPDFObjectHandle note = notes.getArrayItem(i);
      QPDFObjectHandle looks = note.isDictionary() ? note.getKey("/AP") : note;
      if (looks.isDictionary()) work += work_of_each(looks.getKey("/N"), resources);
    }
    check(work);
  }

  /** The samples of all images. */
  std::int64_t samples() const { return samples_; }

 private:
  void check(Work work) const {
    if (work <= most_) return;
    throw Failure("to draw the page takes the work of more than " + std::to_string(limits_.megabytes) +
                  " megabytes (--most-megabytes allows more)");
  }

  /** Of a drawing in one stream or in several. */
  Work work_of_drawing(QPDFObjectHandle content, QPDFObjectHandle resources) {
    Drawing drawing(most_, limits_);
    const auto pipe = [&](QPDFObjectHandle stream) {
      try {
        if (stream.isStream()) stream.pipeStreamData(&drawing, 0, qpdf_dl_generalized, true);
      } catch (const std::bad_alloc&) {
        throw;
      } catch (const std::exception&) {
        // It was too much, or damaged, and is drawn as far as it goes.
      }
      check(drawing.work());
    };
    for (int i = 0; content.isArray() && i < content.getArrayNItems(); ++i) pipe(content.getArrayItem(i));
    pipe(content);
    if (!drawing.refusal().empty()) throw Failure(drawing.refusal());
    Work work = drawing.work() + work_of_resources(resources) + times(drawing.text(), work_of_letter(resources));
    QPDFObjectHandle drawn = resources.isDictionary() ? resources.getKey("/XObject") : resources;
    for (const auto& [name, count] : drawing.uses()) {
      if (drawn.isDictionary()) work = std::min(kMuchWork, work + times(count, work_of(drawn.getKey(name), resources)));
    }
    return work;
  }

  /** Of what is drawn through a mask or in a pattern: once, however often it is. */
  Work work_of_resources(QPDFObjectHandle resources) {
    if (!resources.isDictionary() || !seen_.insert(resources.unparse()).second) return 0;
    Work work = 0;
    for (QPDFObjectHandle pattern : values_of(resources, "/Pattern")) {
      if (pattern.isStream()) work += work_of_pattern(pattern, resources);
    }
    for (QPDFObjectHandle state : values_of(resources, "/ExtGState")) {
      QPDFObjectHandle mask = state.isDictionary() ? state.getKey("/SMask") : state;
      if (mask.isDictionary()) work += work_of(mask.getKey("/G"), resources);
    }
    return std::min(kMuchWork, work);
  }

  /** Of as many tiles as the page has room for. */
  Work work_of_pattern(QPDFObjectHandle pattern, QPDFObjectHandle resources) {
    constexpr Work kWorkOfTile = 300;
    constexpr double kMostTiles = 1e12;
    QPDFObjectHandle dictionary = pattern.getDict();
    const auto number = [](QPDFObjectHandle value) { return value.isNumber() ? value.getNumericValue() : 1.0; };
    double tile = std::abs(number(dictionary.getKey("/XStep")) * number(dictionary.getKey("/YStep")));
    QPDFObjectHandle matrix = dictionary.getKey("/Matrix");
    if (matrix.isMatrix()) {
      const QPDFObjectHandle::Matrix m = matrix.getArrayAsMatrix();
      tile *= std::abs(m.a * m.d - m.b * m.c);
    }
    const double tiles = 1 + std::abs(area_) / std::max(tile, std::abs(area_) / kMostTiles);
    const Work work = work_of(pattern, resources) - kWorkOfForm + kWorkOfTile;
    return std::isfinite(tiles) && work > 0 ? times(static_cast<std::int64_t>(tiles), work) : 0;
  }

  /** Of the letter that takes most, where the letters of a font are drawings. */
  Work work_of_letter(QPDFObjectHandle resources) {
    Work most = 0;
    for (QPDFObjectHandle font : values_of(resources, "/Font")) {
      if (!font.isDictionary()) continue;
      for (const QPDFObjectHandle& letter : values_of(font, "/CharProcs"))
        most = std::max(most, work_of(letter, resources));
    }
    return most;
  }

  /** What is in a dictionary of a dictionary. */
  static std::vector<QPDFObjectHandle> values_of(QPDFObjectHandle of, const char* key) {
    std::vector<QPDFObjectHandle> values;
    QPDFObjectHandle inner = of.isDictionary() ? of.getKey(key) : of;
    if (!inner.isDictionary()) return values;
    for (const std::string& name : inner.getKeys()) values.push_back(inner.getKey(name));
    return values;
  }

  /** Of a stream, or of each in a dictionary. */
  Work work_of_each(QPDFObjectHandle object, QPDFObjectHandle resources) {
    if (!object.isDictionary()) return work_of(object, resources);
    Work work = 0;
    for (const std::string& name : object.getKeys()) work += work_of(object.getKey(name), resources);
    return std::min(kMuchWork, work);
  }

  /** Of an image, or of a form with what it draws. */
  Work work_of(QPDFObjectHandle object, QPDFObjectHandle resources) {
    constexpr int kDeepest = 100;  // as it is drawn
    if (!object.isStream() || depth_ >= kDeepest) return 0;
    // What draws itself is not drawn then.
    const auto [known, fresh] = works_.emplace(object.getObjGen(), 0);
    if (!fresh) return known->second;
    QPDFObjectHandle dictionary = object.getDict();
    QPDFObjectHandle kind = dictionary.getKey("/Subtype");
    if (kind.isName() && kind.getName() == "/Image") return known->second = work_of_image(dictionary);
    QPDFObjectHandle own = dictionary.getKey("/Resources");
    ++depth_;
    known->second = kWorkOfForm + work_of_drawing(object, own.isDictionary() ? own : resources);
    --depth_;
    return known->second;
  }

  Work work_of_image(QPDFObjectHandle image) {
    Work work = 0;
    for (const char* key : {"/SMask", "/Mask"}) {
      QPDFObjectHandle mask = image.getKey(key);
      if (mask.isStream()) work += check_image(mask.getDict());
    }
    return work + check_image(image);
  }

  /** Judges what the dictionary of an image says of it. */
  Work check_image(QPDFObjectHandle image) {
    const auto number = [&](const char* key, long long otherwise) {
      QPDFObjectHandle value = image.getKey(key);
      return value.isInteger() ? value.getIntValue() : otherwise;
    };
    QPDFObjectHandle mask = image.getKey("/ImageMask");
    const bool stencil = mask.isBool() && mask.getBoolValue();
    const int bits = stencil ? 1 : static_cast<int>(std::clamp(number("/BitsPerComponent", 8), 1LL, 16LL));
    const int samples = stencil ? 1 : samples_of(image.getKey("/ColorSpace"));
    const std::int64_t width = std::max(number("/Width", 0), 0LL);
    const std::int64_t height = std::max(number("/Height", 0), 0LL);
    check_size(width, height, bits * samples, limits_);
    samples_ = std::min(kMuchWork, samples_ + times(width * height, samples));
    return width * height * bits * samples / 8;
  }

  const Limits& limits_;
  Work most_;
  std::map<QPDFObjGen, Work> works_;
  std::set<std::string> seen_;
  int depth_ = 0;
  double area_ = 0;
  std::int64_t samples_ = 0;
};

/** What was read of a damaged file: another program may read something else of it, which was not judged. */
Bytes mended(QPDF& document) {
  QPDFWriter writer(document);
  writer.setOutputMemory();
  writer.write();
  const std::shared_ptr<Buffer> file = writer.getBufferSharedPointer();
  return {file->getBuffer(), file->getBuffer() + file->getSize()};
}

/** Opens a file and gives it to `use`; what is wrong with it becomes a refusal. */
template <class Use>
auto with_document(const Bytes& file, Use use) {
  const ForeignCode foreign(Large::kCrashes);
  try {
    QPDF document;
    document.setSuppressWarnings(true);
    document.processMemoryFile("", reinterpret_cast<const char*>(file.data()), file.size());
    return use(document);
  } catch (const Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const QPDFExc& problem) {
    if (problem.getErrorCode() == qpdf_e_password) refuse_kind(Format::kPdf, "it wants a password");
    refuse_damaged(Format::kPdf);
  } catch (const std::exception&) {
    refuse_damaged(Format::kPdf);
  }
}

}  // namespace

int pages_of_pdf(const Bytes& file) {
  return with_document(file, [](QPDF& document) { return static_cast<int>(document.getAllPages().size()); });
}

JudgedPage check_pdf_page(const Bytes& file, int page, const Limits& limits) {
  return with_document(file, [&](QPDF& document) {
    JudgedPage judged;
    const auto& pages = document.getAllPages();
    judged.pages = static_cast<int>(pages.size());
    if (page < 1 || page > judged.pages) refuse_page(page, judged.pages);
    QPDFObjectHandle sheet = pages[static_cast<std::size_t>(page) - 1];
    Page drawn(limits);
    drawn.check(sheet, inherited(sheet, "/Resources"));
    judged.samples = drawn.samples();
    if (document.anyWarnings()) judged.mended = mended(document);
    return judged;
  });
}

}  // namespace tool
