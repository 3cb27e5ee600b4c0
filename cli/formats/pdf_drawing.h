/**
 * @file pdf_drawing.h
 * @brief What a drawing of a PDF file does, read without drawing it.
 */
#ifndef VANTREL_CLI_FORMATS_PDF_DRAWING_H
#define VANTREL_CLI_FORMATS_PDF_DRAWING_H

#include <algorithm>
#include <cstdint>
#include <exception>
#include <map>
#include <qpdf/Pipeline.hh>
#include <string>
#include <vector>

#include "size_limits.h"

namespace tool {

/** Bytes to copy, about what the time for it is. Sums stay far below what their type holds. */
using Work = std::int64_t;
inline constexpr Work kMuchWork = std::int64_t{1} << 50;

inline Work times(std::int64_t count, Work work) {
  return work != 0 && count > kMuchWork / work ? kMuchWork : std::min(kMuchWork, count * work);
}

struct TooMuch : std::exception {};

/**
 * Reads drawings: how long they are, what they name and how often, and the images that stand in them.
 *
 * Where a string, a comment or the data of an image begins and ends only drawing tells. So words count wherever they
 * stand, and what may be hidden counts both ways: it is never less than what is drawn.
 */
class Drawing : public Pipeline {
 public:
  /** How often each name is used. */
  using Uses = std::map<std::string, std::int64_t>;

  Drawing(Work most, const Limits& limits) : Pipeline("drawing", nullptr), most_(most), limits_(limits) {}

  /** @throws TooMuch */
  void write(const unsigned char* data, std::size_t size) override;
  /** After each of the streams that it stands in. */
  void finish() override { end_word(); }

  /** To be called after the last: the work of the images that stand in it. @throws Failure one is too large. */
  void add_images();

  Work work() const { return work_; }
  const Uses& objects() const { return objects_; }
  const Uses& patterns() const { return patterns_; }
  const Uses& states() const { return states_; }
  const Uses& fonts() const { return fonts_; }
  /** How many bytes stand in strings, at most; there are no more letters. */
  std::int64_t text() const { return text_; }

 private:
  /** Those that the next operator or number may belong to: more than one where a comment may have been. */
  using Names = std::vector<std::string>;

  void read(char c);
  void read_text(char c);
  void end_word();
  void take_number();
  void take_operator();
  void use(Uses& uses);
  void begin_comment();
  void end_comment();
  void add(const Names& more, Names& names);

  Work most_;
  const Limits& limits_;
  Work work_ = 0;
  std::string word_;
  Names names_;
  bool in_comment_ = false;
  Names before_comment_;
  std::int64_t open_parentheses_ = 0;
  bool after_backslash_ = false;
  bool in_hex_ = false;
  std::int64_t text_ = 0;
  Uses objects_;
  Uses patterns_;
  Uses states_;
  Uses fonts_;
  std::vector<std::int64_t> widths_; /**< of the images that stand in it, and heights */
  std::vector<std::int64_t> heights_;
};

}  // namespace tool

#endif
