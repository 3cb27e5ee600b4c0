#include "safe_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <list>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

#include "console.h"
#include "ending.h"
#include "failure.h"
#include "size_limits.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

/** What a new file may have: everything but the process's mask, which can only be asked for by changing it. */
mode_t new_file_mode() {
  static const mode_t mode = [] {
    const mode_t mask = umask(0);
    umask(mask);
    return static_cast<mode_t>(0666 & ~mask);
  }();
  return mode;
}

std::string reason_of(int error) { return std::generic_category().message(error); }

/** The temporary files there are, for the thread that ends the process. Never destroyed: that thread outlives main. */
struct Temporaries {
  std::mutex mutex;
  std::list<std::string> paths;
};

constinit std::atomic<Temporaries*> all_temporaries = nullptr;

Temporaries& temporaries() {
  static Temporaries* const all = all_temporaries = new Temporaries;
  return *all;
}

[[noreturn]] void refuse(const std::string& path, const std::string& reason) { throw Failure(path + ": " + reason); }

/** Follows a link to what it names, so that the link itself stays. */
fs::path real_target(const std::string& path) {
  std::error_code error;
  if (!fs::is_symlink(path, error)) return path;
  fs::path target = fs::weakly_canonical(path, error);
  if (error) refuse(path, "cannot be written: " + error.message());
  return target;
}

[[noreturn]] void refuse_existing(const std::string& path) { refuse(path, "exists already (--force replaces it)"); }

void check_target(const fs::path& target, bool force, const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(target, error);
  if (!fs::exists(status)) return;
  if (fs::is_directory(status)) refuse(path, "is a folder");
  if (!fs::is_regular_file(status)) refuse(path, "is not a regular file");
  if (!force) refuse_existing(path);
}

/** The permissions for the finished file: those of the file that it replaces, or a new file's. */
mode_t mode_for(const fs::path& target) {
  struct stat old {};
  return stat(target.c_str(), &old) == 0 ? old.st_mode & 07777 : new_file_mode();
}

/** Fills and finishes an open file; 0 or an error number. */
int fill(int descriptor, const std::vector<unsigned char>& content, mode_t mode) {
  const bool filled = write_all(descriptor, content.data(), content.size()) && fchmod(descriptor, mode) == 0;
  return filled ? 0 : errno;
}

fs::path folder_of(const fs::path& target) {
  const fs::path folder = target.parent_path();
  return folder.empty() ? "." : folder;
}

/** The name under which the system knows an open file that has none. */
std::string name_of_open(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

/** Opens a file without a name in a folder; -1 where the system has no such files, or could not name them later. */
int open_unnamed(const fs::path& folder) {
#ifdef O_TMPFILE
  static const bool nameable = access("/proc/self/fd", X_OK) == 0;
  if (nameable) return open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
#endif
  return -1;
}

/** Gives an open file without a name one that is free; 0 or an error number. */
int link_unnamed(int descriptor, const std::string& name) {
  const std::string open_name = name_of_open(descriptor);
  return linkat(AT_FDCWD, open_name.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
}

int replace(const std::string& temporary, const fs::path& target) {
  return rename(temporary.c_str(), target.c_str()) == 0 ? 0 : errno;
}

/** Gives a complete file its name without ever replacing another; 0 or an error number. */
int link_to_name(const std::string& temporary, const fs::path& target) {
  if (link(temporary.c_str(), target.c_str()) == 0) return unlink(temporary.c_str()) == 0 ? 0 : errno;
  if (errno == EEXIST) return EEXIST;
  // A file system without hard links: look and rename.
  if (access(target.c_str(), F_OK) == 0) return EEXIST;
  return replace(temporary, target);
}

/** The signals that end the process and are not ignored already (as they are in the background of some shells). */
sigset_t ending_signals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction now {};
    if (sigaction(signal, nullptr, &now) == 0 && now.sa_handler != SIG_IGN) sigaddset(&signals, signal);
  }
  return signals;
}

/** What is done before a signal ends the process. Never destroyed, as the above. */
struct Words {
  std::mutex mutex;
  std::function<void()> say;
};

Words& last_words() {
  static Words* const words = new Words;
  return *words;
}

void set_last_words(std::function<void()> say) {
  const std::lock_guard lock(last_words().mutex);
  last_words().say = std::move(say);
}

void say_last_words() {
  const std::lock_guard lock(last_words().mutex);
  try {
    if (last_words().say) last_words().say();
  } catch (const std::exception& problem) {
    print_error(std::string("vantrel: ") + problem.what() + "\n");
  }
}

[[noreturn]] void end_by(int signal, const sigset_t& signals) {
  say_last_words();
  remove_temporaries();
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  raise(signal);
  _exit(128 + signal);
}

/** A file that is read, or standard input. */
class Input {
 public:
  explicit Input(const std::string& path)
      : pipe_(path == kPipe), descriptor_(pipe_ ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (descriptor_ < 0) throw Failure(reason_of(errno));
  }
  ~Input() {
    if (!pipe_) close(descriptor_);
  }
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

  int descriptor() const { return descriptor_; }

  /** Its size; 0 where it is not known. @throws Failure it is larger than allowed */
  std::uint64_t size(int most_megabytes) const {
    struct stat facts {};
    if (fstat(descriptor_, &facts) != 0 || !S_ISREG(facts.st_mode)) return 0;
    check_file_size(static_cast<std::uint64_t>(facts.st_size), most_megabytes);
    return static_cast<std::uint64_t>(facts.st_size);
  }

 private:
  bool pipe_;
  int descriptor_;
};

}  // namespace

std::vector<unsigned char> read_file(const std::string& path, int most_megabytes) {
  name_input(path);
  const Input input(path);
  // One more, so that the end is seen without asking for more memory.
  std::vector<unsigned char> content(static_cast<std::size_t>(input.size(most_megabytes)) + 1);
  std::size_t size = 0;
  for (;;) {
    if (size == content.size()) content.resize(2 * size + (1 << 16));
    const ssize_t count = read(input.descriptor(), content.data() + size, content.size() - size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw Failure(reason_of(errno));
    if (count == 0) break;
    size += static_cast<std::size_t>(count);
    check_file_size(size, most_megabytes);
  }
  content.resize(size);
  return content;
}

bool write_all(int descriptor, const void* data, std::size_t size) {
  const auto* from = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t count = write(descriptor, from, size);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    from += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

bool same_file(const std::string& path, const std::string& other) {
  struct stat a {};
  struct stat b {};
  return path != kPipe && other != kPipe && stat(path.c_str(), &a) == 0 && stat(other.c_str(), &b) == 0 &&
         a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

void clean_up_on_signals() {
  new_file_mode();
  temporaries();
  last_words();
  const sigset_t signals = ending_signals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  try {
    std::thread([signals] {
      int signal = 0;
      if (sigwait(&signals, &signal) == 0) end_by(signal, signals);
    }).detach();
  } catch (const std::system_error&) {
    throw std::bad_alloc();
  }
}

LastWords::LastWords(std::function<void()> words) { set_last_words(std::move(words)); }

LastWords::~LastWords() { set_last_words(nullptr); }

void remove_temporaries() {
  Temporaries* const all = all_temporaries;
  if (all == nullptr) return;
  all->mutex.lock();  // for good
  for (const std::string& path : all->paths) unlink(path.c_str());
}

OutputFile::OutputFile(const std::string& path, const std::vector<std::string>& protect, bool force)
    : path_(path), force_(force) {
  if (path == kPipe) return;
  struct stat existing {};
  const bool exists = stat(path.c_str(), &existing) == 0;
  for (const std::string& input : protect) {
    if (!exists) break;
    if (same_file(path, input)) refuse(path, "is an input (" + input + ") and stays as it is");
  }
  target_ = real_target(path);
  check_target(target_, force, path);
  descriptor_ = open_unnamed(folder_of(target_));
  if (descriptor_ < 0) create_named();
}

void OutputFile::create_named() {
  // From the moment on at which there is a file it is known to those who clean up: nothing may fail in between.
  std::list<std::string> own{(folder_of(target_) / ".vantrel-XXXXXX").string()};
  const std::lock_guard lock(temporaries().mutex);
  descriptor_ = mkostemp(own.front().data(), O_CLOEXEC);
  if (descriptor_ < 0) refuse(path_, "cannot be written: " + reason_of(errno));
  temporary_ = own.begin();
  has_temporary_ = true;
  temporaries().paths.splice(temporaries().paths.end(), own);
}

OutputFile::~OutputFile() { discard(); }

void OutputFile::commit(const std::vector<unsigned char>& content) {
  if (path_ == kPipe) {
    if (!write_all(STDOUT_FILENO, content.data(), content.size())) {
      throw Failure("standard output: cannot be written: " + reason_of(errno));
    }
    return;
  }
  int error = fill(descriptor_, content, mode_for(target_));
  // Some file systems tell only now that there was no room.
  if (error == 0 && has_temporary_ && close(std::exchange(descriptor_, -1)) != 0) error = errno;
  if (error == 0) error = give_name();
  if (error == EEXIST) refuse_existing(path_);
  if (error != 0) refuse(path_, "cannot be written: " + reason_of(error));
}

/** Gives the complete file its name; 0 or an error number. */
int OutputFile::give_name() {
  if (!has_temporary_) {
    const int error = link_unnamed(descriptor_, target_.string());
    return error == EEXIST && force_ ? give_name_of_another() : error;
  }
  const std::lock_guard lock(temporaries().mutex);
  const int error = force_ ? replace(*temporary_, target_) : link_to_name(*temporary_, target_);
  if (error == 0) forget_temporary();
  return error;
}

/** A file without a name cannot take that of another: it gets one of its own first. */
int OutputFile::give_name_of_another() {
  static std::atomic<unsigned> next = 0;
  const std::string start = (folder_of(target_) / ".vantrel-").string() + std::to_string(getpid()) + "-";
  for (;;) {
    std::list<std::string> own{start + std::to_string(next++)};
    const std::lock_guard lock(temporaries().mutex);
    int error = link_unnamed(descriptor_, own.front());
    if (error == EEXIST) continue;
    if (error == 0) error = replace(own.front(), target_);
    if (error != 0) unlink(own.front().c_str());
    return error;
  }
}

void OutputFile::forget_temporary() {
  temporaries().paths.erase(temporary_);
  has_temporary_ = false;
}

void OutputFile::discard() {
  if (descriptor_ >= 0) close(descriptor_);
  if (!has_temporary_) return;
  const std::lock_guard lock(temporaries().mutex);
  unlink(temporary_->c_str());
  forget_temporary();
}

}  // namespace tool
