// What qpdf has of its older interface is not wanted.
#define POINTERHOLDER_TRANSITION 4
#include "formats/pdf_drawing.h"

#include <algorithm>
#include <array>
#include <functional>
#include <qpdf/QPDFObjectHandle.hh>
#include <string_view>

namespace tool {
namespace {

constexpr std::string_view kDigits = "0123456789";

/** Of which a number is made; the first other character begins another word. */
constexpr std::string_view kNumber = "+-.0123456789";

bool is_among(char c, std::string_view characters) { return characters.find(c) != std::string_view::npos; }

bool is_between_words(char c) {
  static constexpr auto kBetween = [] {
    std::array<bool, 256> result{};
    for (const char between : std::string_view("\0\t\n\f\r ()<>[]{}%", 15))
      result[static_cast<unsigned char>(between)] = true;
    return result;
  }();
  return kBetween[static_cast<unsigned char>(c)];
}

/** As it stands in dictionaries, with #20 and the like resolved. */
std::string resolved(const std::string& name) {
  if (name.find('#') == std::string::npos) return name;
  try {
    return QPDFObjectHandle::parse(name).getName();
  } catch (const std::exception&) {
    return name;
  }
}

/** Without its fraction; 0 where it is less. */
std::int64_t whole_number(std::string_view word) {
  constexpr std::size_t kMostDigits = 9;
  if (!word.empty() && word[0] == '+') word.remove_prefix(1);
  word = word.substr(0, std::min(word.find_first_not_of(kDigits), word.size()));
  word.remove_prefix(std::min(word.find_first_not_of('0'), word.size()));
  std::int64_t number = 0;
  for (const char c : word.substr(0, kMostDigits)) number = 10 * number + (c - '0');
  return number;
}

}  // namespace

void Drawing::write(const unsigned char* data, std::size_t size) {
  constexpr Work kWorkOfByte = 10;
  work_ += times(static_cast<std::int64_t>(size), kWorkOfByte);
  for (std::size_t i = 0; i < size; ++i) read(static_cast<char>(data[i]));
  if (work_ > most_) throw TooMuch();
}

void Drawing::add_images() {
  end_word();
  if (widths_.empty() || heights_.empty()) return;
  // Each number is that of one image. The largest widths with the largest heights make the most pixels.
  std::sort(widths_.begin(), widths_.end(), std::greater<>());
  std::sort(heights_.begin(), heights_.end(), std::greater<>());
  check_size(widths_[0], heights_[0], 8, limits_);
  for (std::size_t i = 0; i < std::min(widths_.size(), heights_.size()); ++i) {
    work_ = std::min(kMuchWork, work_ + times(widths_[i], heights_[i]));
  }
}

void Drawing::read(char c) {
  read_text(c);
  if (is_between_words(c)) {
    end_word();
    if (in_comment_ && (c == '\r' || c == '\n')) end_comment();
    if (c == '%') begin_comment();
    return;
  }
  if (c == '/' || (!word_.empty() && is_among(word_[0], kNumber) && !is_among(c, kNumber))) end_word();
  constexpr std::size_t kLongestOperator = 127;
  if (word_.size() <= kLongestOperator || word_[0] == '/') word_ += c;
}

/** A parenthesis that opens always counts, one that closes none that was not open: there are never too few open. */
void Drawing::read_text(char c) {
  if (open_parentheses_ > 0 || in_hex_) ++text_;
  if (c == '<') in_hex_ = true;
  if (c == '>') in_hex_ = false;
  const bool escaped = after_backslash_;
  after_backslash_ = open_parentheses_ > 0 && !escaped && c == '\\';
  if (escaped) return;
  if (c == '(') ++open_parentheses_;
  if (c == ')' && open_parentheses_ > 0) --open_parentheses_;
}

void Drawing::end_word() {
  if (word_.empty()) return;
  if (word_[0] == '/') {
    names_ = {resolved(word_)};
  } else if (is_among(word_[0], kNumber)) {
    take_number();
  } else {
    take_operator();
    names_.clear();
  }
  word_.clear();
}

void Drawing::take_number() {
  constexpr Work kWorkOfName = 10;
  constexpr Work kWorkOfSide = 1000;
  work_ += times(static_cast<std::int64_t>(names_.size()), kWorkOfName);
  for (const std::string& name : names_) {
    const bool width = name == "/W" || name == "/Width";
    if (!width && name != "/H" && name != "/Height") continue;
    work_ += kWorkOfSide;
    (width ? widths_ : heights_).push_back(whole_number(word_));
  }
}

void Drawing::take_operator() {
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
  }
}

void Drawing::use(Uses& uses) {
  for (const std::string& name : names_) ++uses[name];
}

void Drawing::begin_comment() {
  in_comment_ = true;
  add(names_, before_comment_);
}

/** Was it one, the names before it hold; else those in it. */
void Drawing::end_comment() {
  in_comment_ = false;
  add(before_comment_, names_);
  before_comment_.clear();
}

/** None twice. Many, or long ones again and again, come of nothing but a file that was made for it. */
void Drawing::add(const Names& more, Names& names) {
  constexpr std::size_t kMost = 100;
  for (const std::string& name : more) {
    work_ += static_cast<Work>(name.size() * (1 + names.size()));
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  }
  if (names.size() > kMost) work_ = kMuchWork;
  if (work_ > most_) throw TooMuch();
}

}  // namespace tool
