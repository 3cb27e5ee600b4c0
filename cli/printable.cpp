#include "printable.h"

#include <cstddef>

namespace tool {
namespace {

constexpr const char* kDigits = "0123456789abcdef";

unsigned char byte_at(const std::string& text, std::size_t i) { return static_cast<unsigned char>(text[i]); }

bool is_control(unsigned char c) { return c < 0x20 || c == 0x7f; }

/** The bytes that a character of UTF-8 has that begins here; 0 where none does. */
std::size_t character_at(const std::string& text, std::size_t i) {
  const unsigned char first = byte_at(text, i);
  const std::size_t length = first < 0x80   ? 1
                             : first < 0xc2 ? 0
                             : first < 0xe0 ? 2
                             : first < 0xf0 ? 3
                             : first < 0xf5 ? 4
                                            : 0;
  if (length == 0 || i + length > text.size()) return 0;
  for (std::size_t k = 1; k < length; ++k) {
    if ((byte_at(text, i + k) & 0xc0) != 0x80) return 0;
  }
  if (length < 3) return length;
  // Forms that are longer than they need be, surrogates, and what lies beyond the last character.
  const unsigned char second = byte_at(text, i + 1);
  const bool wrong = (first == 0xe0 && second < 0xa0) || (first == 0xed && second >= 0xa0) ||
                     (first == 0xf0 && second < 0x90) || (first == 0xf4 && second >= 0x90);
  return wrong ? 0 : length;
}

void append_escape(std::string& text, unsigned char c) {
  text += "\\x";
  text += kDigits[c >> 4];
  text += kDigits[c & 15];
}

}  // namespace

std::string printable(const std::string& text) {
  std::string shown;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = character_at(text, i);
    // The second row of control characters begins with the byte c2.
    const bool control = length <= 1 ? is_control(byte_at(text, i)) || length == 0
                                     : byte_at(text, i) == 0xc2 && byte_at(text, i + 1) < 0xa0;
    const std::size_t step = length == 0 ? 1 : length;
    for (std::size_t k = 0; control && k < step; ++k) append_escape(shown, byte_at(text, i + k));
    if (!control) shown.append(text, i, step);
    i += step;
  }
  return shown;
}

bool is_utf8(const std::string& text) {
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = character_at(text, i);
    if (length == 0) return false;
    i += length;
  }
  return true;
}

std::string hexadecimal(const std::string& bytes) {
  std::string digits;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    digits += kDigits[byte_at(bytes, i) >> 4];
    digits += kDigits[byte_at(bytes, i) & 15];
  }
  return digits;
}

}  // namespace tool
