// A process that is forked while its threads are at work: the child computes as the parent does.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vantrel.h>

#include <atomic>
#include <thread>

#include "support/answer.h"
#include "support/scans.h"

namespace {

using support::Answer;

Answer clip() {
  support::Image scan = support::scan_of({20, 15, 180, 12, 22, 140, 178, 143}, 200, 160, 24);
  BITMAPPTR out{};
  const int code = AutoClipRedundantImg(scan.handle(), nullptr, &out, 1);
  return support::taken(code, out);
}

TEST(Fork, TheChildOfABusyProcessComputesAsItsParent) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer's allocator may be locked for good in a child";
#endif
  const Answer wanted = clip();
  ASSERT_EQ(wanted.code, 1);
  std::atomic<bool> ends = false;
  std::atomic<int> wrong = 0;
  std::thread other([&] {
    while (!ends) wrong += clip() == wanted ? 0 : 1;
  });
  int good = 0;
  for (int i = 0; i < 20; ++i) {
    const pid_t child = fork();
    if (child == 0) _exit(clip() == wanted ? 7 : 1);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    good += WIFEXITED(status) && WEXITSTATUS(status) == 7;
    EXPECT_TRUE(clip() == wanted);
  }
  ends = true;
  other.join();
  EXPECT_EQ(good, 20);
  EXPECT_EQ(wrong, 0);
}

}  // namespace
