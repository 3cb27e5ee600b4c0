// The main function of the test programs. They report failures only, so that one that crashes has to say where.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <initializer_list>

namespace {

void name_the_crashed_test(int signal) {
  if (const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info()) {
    std::fprintf(stderr, "Signal %d in %s.%s\n", signal, test->test_suite_name(), test->name());
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  for (const int signal : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV}) {
    // A sanitizer that has its own report to make keeps the signal.
    const auto before = std::signal(signal, name_the_crashed_test);
    if (before != SIG_DFL) std::signal(signal, before);
  }
  return RUN_ALL_TESTS();
}
