// Draws scans of a set into a folder, with what is true of them in truth.jsonl, one object a line.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "drawing/drawn_scan.h"

namespace {

using vantrel::drawing::DrawnScan;

constexpr const char* kUsage =
    "vantrel_draw_scans --set SET --first SEED --count COUNT --out FOLDER [--truth-only] [--crisp]\n"
    "  --truth-only  writes no pictures\n"
    "  --crisp       draws the scenes without blur, noise and compression\n"
    "Sets:";

struct Options {
  std::string set, out = ".";
  unsigned long long first = 1, count = 1;
  bool truth_only = false, crisp = false;
};

Options parse(int count, char** words) {
  Options options;
  for (int i = 1; i < count; ++i) {
    const std::string word = words[i];
    const auto value = [&] {
      if (++i >= count) throw std::invalid_argument(word + " needs a value");
      return std::string(words[i]);
    };
    if (word == "--set")
      options.set = value();
    else if (word == "--out")
      options.out = value();
    else if (word == "--first")
      options.first = std::stoull(value());
    else if (word == "--count")
      options.count = std::stoull(value());
    else if (word == "--truth-only")
      options.truth_only = true;
    else if (word == "--crisp")
      options.crisp = true;
    else
      throw std::invalid_argument("unknown: " + word);
  }
  return options;
}

void write_picture(const std::filesystem::path& path, const DrawnScan& scan) {
  std::ofstream file(path, std::ios::binary);
  file << "P6\n" << scan.width << ' ' << scan.height << "\n255\n";
  std::vector<char> rgb(scan.bgr.size());
  for (std::size_t i = 0; i < rgb.size(); i += 3) {
    for (std::size_t channel = 0; channel < 3; ++channel)
      rgb[i + channel] = static_cast<char>(scan.bgr[i + 2 - channel]);
  }
  file.write(rgb.data(), static_cast<std::streamsize>(rgb.size()));
  if (!file) throw std::runtime_error("cannot write " + path.string());
}

// None of the words that a scan bears needs escaping.
std::string quoted(const std::string& word) { return '"' + word + '"'; }

std::string cards_text(const DrawnScan& scan) {
  std::string text;
  for (const auto& card : scan.cards) {
    text += text.empty() ? "{\"corners\": [" : ", {\"corners\": [";
    for (std::size_t i = 0; i < 4; ++i) {
      char point[80];
      std::snprintf(point, sizeof point, "%s[%.4f, %.4f]", i == 0 ? "" : ", ", card.corners[i].x, card.corners[i].y);
      text += point;
    }
    text += "], \"visible\": [";
    for (std::size_t i = 0; i < 4; ++i) text += std::string(i == 0 ? "" : ", ") + (card.visible[i] ? "true" : "false");
    text += "]}";
  }
  return text;
}

void write_truth(std::ostream& out, const std::string& picture, unsigned long long seed, const DrawnScan& scan) {
  std::string effects;
  for (const auto& effect : scan.effects) effects += (effects.empty() ? "" : ", ") + quoted(effect);
  out << "{\"picture\": " << quoted(picture) << ", \"set\": " << quoted(scan.set) << ", \"seed\": " << seed
      << ", \"width\": " << scan.width << ", \"height\": " << scan.height << ", \"dpi\": " << scan.dpi
      << ", \"ground\": " << quoted(scan.ground) << ", \"card\": " << quoted(scan.card)
      << ", \"place\": " << quoted(scan.place) << ", \"effects\": [" << effects << "], \"cards\": [" << cards_text(scan)
      << "]}\n";
}

void draw_all(const Options& options) {
  const std::filesystem::path folder = options.out;
  std::filesystem::create_directories(folder);
  std::ofstream truth(folder / "truth.jsonl", std::ios::app);
  for (unsigned long long seed = options.first; seed < options.first + options.count; ++seed) {
    const DrawnScan scan = options.crisp ? vantrel::drawing::draw_crisp_scan(options.set, seed)
                                         : vantrel::drawing::draw_scan(options.set, seed);
    char number[32];
    std::snprintf(number, sizeof number, "-%06llu.ppm", seed);
    if (!options.truth_only) write_picture(folder / (options.set + number), scan);
    write_truth(truth, options.set + number, seed, scan);
  }
  if (!truth.flush()) throw std::runtime_error("cannot write the truth to " + folder.string());
}

}  // namespace

int main(int count, char** words) {
  try {
    draw_all(parse(count, words));
    return EXIT_SUCCESS;
  } catch (const std::exception& problem) {
    std::cerr << problem.what() << '\n' << kUsage;
    for (const auto& set : vantrel::drawing::sets()) std::cerr << ' ' << set;
    std::cerr << '\n';
    return 2;
  }
}
