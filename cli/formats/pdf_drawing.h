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
#include <qpdf/QPDFObjectHandle.hh>
#include <string>

#include "failure.h"
#include "size_limits.h"

namespace tool {

/** Bytes to copy, about what the time for it is. Sums stay far below what their type holds. */
using Work = std::int64_t;
inline constexpr Work kMuchWork = std::int64_t{1} << 50;

inline Work times(std::int64_t count, Work work) {
  return work != 0 && count > kMuchWork / work ? kMuchWork : std::min(kMuchWork, count * work);
}

struct TooMuch : std::exception {};

/** Reads drawings: how long they are, what they name and how often, and the images that stand in them. */
class Drawing : public Pipeline {
 public:
  /** How often each name is used. */
  using Uses = std::map<std::string, std::int64_t>;

  Drawing(Work most, const Limits& limits) : Pipeline("drawing", nullptr), most_(most), limits_(limits) {}

  void write(const unsigned char* data, std::size_t size) override {
    constexpr Work kWorkOfByte = 10;
    work_ += times(static_cast<std::int64_t>(size), kWorkOfByte);
    for (std::size_t i = 0; i < size; ++i) read(static_cast<char>(data[i]));
    if (work_ > most_) throw TooMuch();
  }
  void finish() override { end_word(); }

  Work work() const { return work_; }
  const Uses& objects() const { return objects_; }
  const Uses& patterns() const { return patterns_; }
  const Uses& states() const { return states_; }
  const Uses& fonts() const { return fonts_; }
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
    } else if (word_.find_first_not_of("+-.0123456789") == std::string::npos) {
      if (name_ == "/W" || name_ == "/Width") width_ = number();
      if (name_ == "/H" || name_ == "/Height") height_ = number();
    } else {
      take_operator();
      name_.clear();
    }
    word_.clear();
  }

  void take_operator() {
    constexpr Work kWorkOfOperator = 50;
    work_ += kWorkOfOperator;
    if (word_ == "Do") {
      use(objects_);
    } else if (word_ == "scn" || word_ == "SCN") {
      use(patterns_);
    } else if (word_ == "gs") {
      use(states_);
    } else if (word_ == "Tf") {
      use(fonts_);
    } else if (word_ == "BT" || word_ == "ET") {
      in_text_ = word_ == "BT";
    } else if (word_ == "BI") {
      width_ = height_ = 0;
    } else if (word_ == "ID") {
      take_image();
    }
  }

  /** By the name before the operator, as the dictionaries have it, with #20 and the like resolved. */
  void use(Uses& uses) {
    if (name_.empty()) return;
    if (name_.find('#') == std::string::npos) {
      ++uses[name_];
      return;
    }
    try {
      ++uses[QPDFObjectHandle::parse(name_).getName()];
    } catch (const std::exception&) {
      ++uses[name_];
    }
  }

  std::int64_t number() const {
    constexpr std::size_t kDigits = 9;
    const std::string digits = word_.substr(0, kDigits);
    return digits.find_first_not_of("0123456789") == std::string::npos ? std::stoll(digits) : 0;
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

  Work most_;
  const Limits& limits_;
  Work work_ = 0;
  std::string word_;
  std::string name_;
  bool in_text_ = false;
  std::int64_t text_ = 0;
  Uses objects_;
  Uses patterns_;
  Uses states_;
  Uses fonts_;
  std::int64_t width_ = 0;
  std::int64_t height_ = 0;
  std::string refusal_;
};

}  // namespace tool

#endif
