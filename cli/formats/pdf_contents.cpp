// What qpdf has of its older interface is not wanted.
#define POINTERHOLDER_TRANSITION 4
#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <map>
#include <memory>
#include <new>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFWriter.hh>
#include <string>
#include <vector>

#include "failure.h"
#include "formats/codecs.h"
#include "formats/pdf_drawing.h"
#include "memory.h"

// What the page of a PDF file is drawn with, judged before it is: a few bytes can be drawn for hours.
namespace tool {
namespace {

constexpr Work kWorkOfForm = 1000;

/** How many samples a pixel has; three where it is not plain. */
int samples_of(QPDFObjectHandle space) {
  const std::string name = space.isName() ? space.getName() : "";
  if (name == "/DeviceGray" || name == "/G") return 1;
  if (name == "/DeviceCMYK" || name == "/CMYK") return 4;
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

/** The inner dictionary `key` of a dictionary, or null. */
QPDFObjectHandle inner(QPDFObjectHandle of, const std::string& key) {
  return of.isDictionary() ? of.getKey(key) : QPDFObjectHandle::newNull();
}

void add(Work more, Work& work) { work = std::min(kMuchWork, work + more); }

/** All that a page draws. */
class Page {
 public:
  explicit Page(const Limits& limits) : limits_(limits), most_(limits.megabytes * Budget::kMega) {}

  /** Judges it. */
  void check(QPDFObjectHandle page) {
    QPDFObjectHandle box = inherited(page, "/MediaBox");
    if (box.isRectangle()) {
      const QPDFObjectHandle::Rectangle sides = box.getArrayAsRectangle();
      area_ = (sides.urx - sides.llx) * (sides.ury - sides.lly);
    }
    levels_.push_back({page.getObjGen(), inherited(page, "/Resources")});
    Work work = work_of_drawing(page.getKey("/Contents"));
    QPDFObjectHandle notes = page.getKey("/Annots");
    for (int i = 0; notes.isArray() && i < notes.getArrayNItems(); ++i) {
      add(work_of_each(inner(inner(notes.getArrayItem(i), "/AP"), "/N")), work);
    }
    check(work);
  }

  /** The samples of all images. */
  std::int64_t samples() const { return samples_; }

 private:
  /** A drawing that is being judged, within those before it; the first is the page. */
  struct Level {
    QPDFObjGen object;
    QPDFObjectHandle resources;
    Work letter = 0; /**< of the letter that takes most */
  };
  static constexpr std::size_t kNoLevel = std::numeric_limits<std::size_t>::max();

  void check(Work work) const {
    if (work <= most_) return;
    throw Failure("to draw the page takes the work of more than " + std::to_string(limits_.megabytes) +
                  " megabytes (--most-megabytes allows more)");
  }

  /** What is judged now would be judged otherwise within another drawing than that of this level. */
  void depend_on(std::size_t level) { outermost_ = std::min(outermost_, level); }

  /** What a name stands for: the innermost resources that have it say. */
  QPDFObjectHandle find(const char* kind, const std::string& name) {
    for (std::size_t i = levels_.size(); i-- > 0;) {
      QPDFObjectHandle named = inner(inner(levels_[i].resources, kind), name);
      if (named.isNull()) continue;
      if (i + 1 < levels_.size()) depend_on(i);
      return named;
    }
    depend_on(0);
    return QPDFObjectHandle::newNull();
  }

  /** Of the drawing of the last level, in one stream or in several. */
  Work work_of_drawing(QPDFObjectHandle content) {
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
    for (int i = 0; content.isArray() && i < content.getArrayNItems(); ++i) {
      judged_ += kWorkOfPart;  // however short it is
      check(judged_);
      pipe(content.getArrayItem(i));
    }
    pipe(content);
    drawing.add_images();
    judged_ += drawing.work();
    check(judged_);
    return work_of_what_it_uses(drawing);
  }

  Work work_of_what_it_uses(const Drawing& drawing) {
    Work letter = 0;
    for (const auto& [name, count] : drawing.fonts()) letter = std::max(letter, work_of_letter(find("/Font", name)));
    Work work = drawing.work();
    for (const auto& [name, count] : drawing.states()) {
      QPDFObjectHandle state = find("/ExtGState", name);
      add(times(count, work_of(inner(inner(state, "/SMask"), "/G"))), work);
      QPDFObjectHandle font = inner(state, "/Font");
      if (font.isArray() && font.getArrayNItems() > 0) letter = std::max(letter, work_of_letter(font.getArrayItem(0)));
    }
    levels_.back().letter = letter;
    if (drawing.text() > 0) add(times(drawing.text(), letter_of_levels()), work);
    // Once, however often it is chosen: most drawings fill no more than the page with it, all in all.
    for (const auto& [name, count] : drawing.patterns()) add(work_of_pattern(find("/Pattern", name)), work);
    for (const auto& [name, count] : drawing.objects()) add(times(count, work_of(find("/XObject", name))), work);
    return work;
  }

  /** A drawing that chooses no font, or none yet, has that of the drawing around it. */
  Work letter_of_levels() {
    depend_on(0);
    Work most = 0;
    for (const Level& level : levels_) most = std::max(most, level.letter);
    return most;
  }

  /** Of as many tiles as the page has room for. */
  Work work_of_pattern(QPDFObjectHandle pattern) {
    constexpr Work kWorkOfTile = 300;
    constexpr double kMostTiles = 1e12;
    if (!pattern.isStream()) return 0;
    QPDFObjectHandle dictionary = pattern.getDict();
    const auto number = [](QPDFObjectHandle value) { return value.isNumber() ? value.getNumericValue() : 1.0; };
    double tile = std::abs(number(dictionary.getKey("/XStep")) * number(dictionary.getKey("/YStep")));
    QPDFObjectHandle matrix = dictionary.getKey("/Matrix");
    if (matrix.isMatrix()) {
      const QPDFObjectHandle::Matrix m = matrix.getArrayAsMatrix();
      tile *= std::abs(m.a * m.d - m.b * m.c);
    }
    const double tiles = 1 + std::abs(area_) / std::max(tile, std::abs(area_) / kMostTiles);
    const Work work = work_of(pattern) - kWorkOfForm + kWorkOfTile;
    return std::isfinite(tiles) && work > 0 ? times(static_cast<std::int64_t>(tiles), work) : 0;
  }

  /** Of the letter that takes most, where the letters of a font are drawings. */
  Work work_of_letter(QPDFObjectHandle font) {
    QPDFObjectHandle letters = inner(font, "/CharProcs");
    if (!letters.isDictionary()) return 0;
    Work most = 0;
    QPDFObjectHandle resources = font.getKey("/Resources");
    for (const std::string& name : letters.getKeys()) {
      QPDFObjectHandle letter = letters.getKey(name);
      if (letter.isStream() && !is_not_drawn(letter.getObjGen())) most = std::max(most, judged(letter, resources));
    }
    return most;
  }

  /** Of a stream, or of each in a dictionary. */
  Work work_of_each(QPDFObjectHandle object) {
    if (!object.isDictionary()) return work_of(object);
    Work work = 0;
    for (const std::string& name : object.getKeys()) add(work_of(object.getKey(name)), work);
    return work;
  }

  /** Of an image, or of a form with what it draws. Kept, unless it hangs on what is around it. */
  Work work_of(QPDFObjectHandle object) {
    if (!object.isStream()) return 0;
    const QPDFObjGen number = object.getObjGen();
    const auto known = works_.find(number);
    if (known != works_.end()) return known->second;
    QPDFObjectHandle kind = object.getDict().getKey("/Subtype");
    if (kind.isName() && kind.getName() == "/Image") return works_[number] = work_of_image(object.getDict());
    if (is_not_drawn(number)) return 0;
    const std::size_t before = outermost_;
    outermost_ = kNoLevel;
    const Work work = judged(object, object.getDict().getKey("/Resources"));
    if (outermost_ >= levels_.size()) {
      works_[number] = work;
      outermost_ = before;
    }
    depend_on(before);
    return work;
  }

  /** A form with what it draws by these resources, which are a font's for a letter. */
  Work judged(QPDFObjectHandle object, QPDFObjectHandle resources) {
    judged_ += kWorkOfJudging;  // whatever it draws
    levels_.push_back({object.getObjGen(), resources});
    const Work work = kWorkOfForm + work_of_drawing(object);
    levels_.pop_back();
    return work;
  }

  /** What draws itself is not drawn then, nor what lies too deep. */
  bool is_not_drawn(QPDFObjGen number) {
    constexpr std::size_t kDeepest = 100;
    for (std::size_t i = 0; i < levels_.size(); ++i) {
      if (levels_[i].object != number) continue;
      depend_on(i);
      return true;
    }
    if (levels_.size() <= kDeepest) return false;
    depend_on(0);
    return true;
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
    // The short keys are for images within drawings, and taken everywhere.
    const auto value = [&](const char* key, const char* short_key) {
      QPDFObjectHandle found = image.getKey(key);
      return found.isNull() ? image.getKey(short_key) : found;
    };
    const auto number = [](QPDFObjectHandle found, double otherwise) {
      constexpr double kMost = 1e9;
      return static_cast<int>(std::clamp(found.isNumber() ? found.getNumericValue() : otherwise, 0.0, kMost));
    };
    QPDFObjectHandle mask = value("/ImageMask", "/IM");
    const bool stencil = mask.isBool() && mask.getBoolValue();
    const int bits = stencil ? 1 : std::clamp(number(value("/BitsPerComponent", "/BPC"), 8), 1, 16);
    const int samples = stencil ? 1 : samples_of(value("/ColorSpace", "/CS"));
    const std::int64_t width = number(value("/Width", "/W"), 0);
    const std::int64_t height = number(value("/Height", "/H"), 0);
    check_size(width, height, bits * samples, limits_);
    samples_ = std::min(kMuchWork, samples_ + times(width * height, samples));
    return width * height * bits * samples / 8;
  }

  static constexpr Work kWorkOfJudging = 5000;
  static constexpr Work kWorkOfPart = 50000;

  const Limits& limits_;
  Work most_;
  Work judged_ = 0;
  std::map<QPDFObjGen, Work> works_;
  std::vector<Level> levels_;
  std::size_t outermost_ = kNoLevel; /**< of the levels that what is judged now depends on */
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
    drawn.check(sheet);
    judged.samples = drawn.samples();
    if (document.anyWarnings()) judged.mended = mended(document);
    return judged;
  });
}

}  // namespace tool
