#include "inputs.h"

#include <algorithm>
#include <filesystem>
#include <type_traits>

#include "failure.h"
#include "image_file.h"
#include "safe_file.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

bool is_hidden(const fs::path& path) { return path.filename().string().front() == '.'; }

/** The pictures in a folder; links to folders are not followed. */
template <class Iterator>
std::vector<Input> pictures_in(const std::string& folder) {
  std::vector<Input> found;
  std::error_code error;
  for (Iterator entry(folder, fs::directory_options::skip_permission_denied, error), end; entry != end;) {
    const fs::path path = entry->path();
    std::error_code ignored;
    if constexpr (std::is_same_v<Iterator, fs::recursive_directory_iterator>) {
      if (is_hidden(path)) entry.disable_recursion_pending();
    }
    if (!is_hidden(path) && is_picture_name(path.string()) && fs::is_regular_file(path, ignored)) {
      found.push_back({path.string(), path.parent_path().lexically_relative(folder).string(), 1});
      if (found.back().below == ".") found.back().below.clear();
    }
    entry.increment(error);
    if (error) break;
  }
  if (error) throw WrongUsage(folder + ": " + error.message());
  std::sort(found.begin(), found.end(), [](const Input& a, const Input& b) { return a.path < b.path; });
  return found;
}

std::vector<Input> scans_of(const std::string& named, bool recursive) {
  if (!is_folder(named)) return {{named, "", 1}};
  std::vector<Input> found =
      recursive ? pictures_in<fs::recursive_directory_iterator>(named) : pictures_in<fs::directory_iterator>(named);
  if (found.empty()) {
    throw WrongUsage(named + ": holds no pictures" + (recursive ? "" : " (--recursive looks into its folders)"));
  }
  return found;
}

/** How many pages a file has; of one that cannot be read 1, which then fails where it is worked on. */
int pages_of(const std::string& path, const Limits& limits) {
  try {
    return std::max(1, count_pages(read_file(path, limits.megabytes), limits));
  } catch (const Failure&) {
    return 1;
  }
}

}  // namespace

bool is_folder(const std::string& path) {
  std::error_code error;
  return path != kPipe && fs::is_directory(path, error);
}

bool names_folder(const Options& options) {
  return std::any_of(options.inputs.begin(), options.inputs.end(), is_folder);
}

std::vector<Input> expanded_inputs(const Options& options) {
  std::vector<Input> all;
  for (const std::string& named : options.inputs) {
    for (Input& input : scans_of(named, options.recursive)) {
      const int pages = options.all_pages ? pages_of(input.path, options.limits) : 1;
      for (int page = 1; page <= pages; ++page) {
        all.push_back(input);
        all.back().page = options.all_pages ? page : options.page;
      }
    }
  }
  return all;
}

}  // namespace tool
