/**
 * @file tally.h
 * @brief Counts which branches a second implementation took, so that a comparison can show that it met them all.
 */
#ifndef VANTREL_TESTS_SUPPORT_TALLY_H
#define VANTREL_TESTS_SUPPORT_TALLY_H

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <string>

namespace support::tally {

inline std::map<std::string, long>& counters() {
  static std::map<std::string, long> all;
  return all;
}

#ifdef VANTREL_NO_TALLY
/** For a fuzzer, which cannot wait for names to be put together. */
struct Branch {
  template <class Name>
  Branch(const Name&) {}
};
inline void count(const Branch&) {}
inline long& counter(const Branch&) {
  static long none = 0;
  return none;
}
#else
/** The counter of a branch; the reference stays valid for good. */
inline long& counter(const std::string& branch) { return counters()[branch]; }
inline void count(const std::string& branch) { ++counter(branch); }
#endif

/** Sets every counter to zero: what a test does first. */
inline void reset() {
  for (auto& [branch, times] : counters()) times = 0;
}

/** Fails the test when a branch was taken less often than `least`. */
inline void expect(const std::string& branch, long least) {
  EXPECT_GE(counter(branch), least) << "the comparison hardly met the branch: " << branch;
}
inline void expect(std::initializer_list<const char*> branches, long least) {
  for (const char* branch : branches) expect(branch, least);
}

}  // namespace support::tally

#endif
