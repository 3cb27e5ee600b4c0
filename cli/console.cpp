#include "console.h"

#include <allheaders.h>
#include <fcntl.h>
#include <tiffio.h>
#include <unistd.h>

#include <mutex>

#include "safe_file.h"

namespace tool {
namespace {

int console = STDERR_FILENO;
int nowhere = -1;
std::mutex quiet_mutex;
int quiet_codecs = 0;

}  // namespace

void open_console() {
  const int own = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (own >= 0) console = own;
  setMsgSeverity(L_SEVERITY_NONE);
  leptSetStderrHandler([](const char*) {});
  TIFFSetErrorHandler(nullptr);
  TIFFSetWarningHandler(nullptr);
}

bool console_is_terminal() { return isatty(console) == 1; }

void print_error(std::string_view text) { write_all(console, text.data(), text.size()); }

QuietCodecs::QuietCodecs() {
  const std::lock_guard lock(quiet_mutex);
  if (quiet_codecs++ == 0 && nowhere >= 0 && console != STDERR_FILENO) dup2(nowhere, STDERR_FILENO);
}

QuietCodecs::~QuietCodecs() {
  const std::lock_guard lock(quiet_mutex);
  if (--quiet_codecs == 0 && nowhere >= 0 && console != STDERR_FILENO) dup2(console, STDERR_FILENO);
}

}  // namespace tool
