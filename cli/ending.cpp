#include "ending.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <new>

#include "console.h"
#include "printable.h"
#include "safe_file.h"

namespace tool {
namespace {

/**
 * Where an exception cannot go on, as out of a destructor or of a thread, or has no memory for itself. Missing memory
 * is the one reason for it that is no mistake.
 */
[[noreturn]] void end_of_exceptions() {
  const std::exception_ptr current = std::current_exception();
  if (!current) end_without_memory();
  try {
    std::rethrow_exception(current);
  } catch (const std::bad_alloc&) {
    end_without_memory();
  } catch (...) {
    remove_temporaries();
    std::abort();
  }
}

/** Before the objects of other files are made: that takes memory too. */
struct Guard {
  Guard() { std::set_terminate(end_of_exceptions); }
};
[[gnu::init_priority(101)]] const Guard guard;

}  // namespace

InputName& input_name() {
  thread_local InputName name{};
  return name;
}

void name_input(const std::string& path) {
  InputName& name = input_name();
  const std::string shown = printable(path);
  std::size_t length = std::min(shown.size(), name.size() - 1);
  const auto is_within_letter = [&](std::size_t at) { return at < shown.size() && (shown[at] & 0xC0) == 0x80; };
  while (length > 0 && is_within_letter(length)) --length;
  name[shown.copy(name.data(), length)] = '\0';
}

std::string message_of_input(const std::string& reason) {
  return "vantrel: " + std::string(input_name().data()) + ": " + reason + "\n";
}

void end_with(std::string_view message) {
  remove_temporaries();
  print_error(message);
  _exit(1);
}

void end_without_memory() { end_with("vantrel: not enough memory\n"); }

}  // namespace tool
