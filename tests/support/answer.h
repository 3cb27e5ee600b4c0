/**
 * @file answer.h
 * @brief What an operation gave, as bytes that can be compared.
 */
#ifndef VANTREL_TESTS_SUPPORT_ANSWER_H
#define VANTREL_TESTS_SUPPORT_ANSWER_H

#include <gtest/gtest.h>
#include <vantrel.h>

#include <vector>

namespace support {

/** An operation's code, and the bytes of its result. */
struct Answer {
  int code = 0;
  std::vector<unsigned char> bytes;

  bool operator==(const Answer&) const = default;
};

template <class Value>
void append(Answer& answer, const Value& value) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(&value);
  answer.bytes.insert(answer.bytes.end(), bytes, bytes + sizeof value);
}

/** Takes over what a call handed back and releases it as a host does, whether it succeeded or not. */
inline Answer taken(int code, BITMAPPTR& out) {
  Answer answer{code, {}};
  if (out.pInfo != nullptr) answer.bytes.assign(out.pBits, out.pBits + out.pInfo->biSizeImage);
  EXPECT_EQ(FreeCardImg(reinterpret_cast<void**>(&out.pInfo)), 1);
  return answer;
}

}  // namespace support

#endif
