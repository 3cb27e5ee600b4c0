/**
 * @file safe_file.h
 * @brief Reading whole inputs, and writing outputs so that nobody loses a file.
 *
 * An output grows in a file without a name, which the system forgets with the process, and gets its name when it is
 * complete; or, where the system has no such files, in a temporary file beside its target. Whatever goes wrong before
 * that, an interrupt included, leaves neither a temporary file nor a half-written target.
 */
#ifndef VANTREL_CLI_SAFE_FILE_H
#define VANTREL_CLI_SAFE_FILE_H

#include <cstddef>
#include <filesystem>
#include <functional>
#include <list>
#include <string>
#include <vector>

namespace tool {

/** Stands for standard input and standard output. */
inline constexpr const char* kPipe = "-";

/**
 * Reads a file, or standard input for "-".
 *
 * @throws Failure with the system's reason, or that it is larger than allowed.
 */
std::vector<unsigned char> read_file(const std::string& path, int most_megabytes);

/** Writes everything to a descriptor; false when the system refuses. */
bool write_all(int descriptor, const void* data, std::size_t size);

/** Whether two paths name one existing file, through links and other spellings too. */
bool same_file(const std::string& path, const std::string& other);

/**
 * Removes the temporary files when SIGINT, SIGTERM or SIGHUP ends the process. To be called once, before any other
 * thread is started.
 */
void clean_up_on_signals();

/**
 * As long as one lives, what it was given is done when one of these signals ends the process, on a thread of its own,
 * while the others go on. There is one at a time.
 */
class LastWords {
 public:
  explicit LastWords(std::function<void()> words);
  ~LastWords();
  LastWords(const LastWords&) = delete;
  LastWords& operator=(const LastWords&) = delete;
};

/** Removes the temporary files for good, before the process ends: no output is finished after that. */
void remove_temporaries();

/**
 * A file that is being written, or standard output for "-".
 *
 * Making one creates the file that it grows in, so an unwritable target shows before the work begins.
 */
class OutputFile {
 public:
  /**
   * @param protect files that the target must not be.
   * @param force   whether an existing target is replaced.
   * @throws Failure the target exists, is protected, is no regular file or cannot be created; the message names it.
   */
  OutputFile(const std::string& path, const std::vector<std::string>& protect, bool force);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /**
   * Writes the whole content and gives the file its name.
   *
   * @throws Failure with the target and the system's reason.
   */
  void commit(const std::vector<unsigned char>& content);

 private:
  void create_named();
  int give_name();
  int give_name_of_another();
  void forget_temporary();
  void discard();

  std::string path_;
  bool force_;
  int descriptor_ = -1;
  std::filesystem::path target_;
  std::list<std::string>::iterator temporary_; /**< the path of a temporary file, while there is one */
  bool has_temporary_ = false;
};

}  // namespace tool

#endif
