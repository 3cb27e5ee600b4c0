#include "components/exports.h"

#include <algorithm>

#include "components/components.h"
#include "components/exports_block_list.h"
#include "components/extract.h"
#include "image/dib.h"

namespace vantrel::components {
namespace {

using geometry::Span;

/** Keeps components as the characters of one line, in the order of their creation. */
class CharacterStore {
 public:
  CharacterStore(_BLIST& list, _BNODE* line, _BNODE*& last_character, int& label)
      : list_(list), line_(line), last_character_(last_character), label_(label) {}

  _BNODE* create(Span run, int row) {
    const auto at = static_cast<std::int16_t>(row);
    _BNODE* character =
        request_character(list_, line_, last_character_, nullptr,
                          {static_cast<std::int16_t>(run.first), at, static_cast<std::int16_t>(run.last()), at, 0});
    if (character == nullptr) return nullptr;
    character->pixelCount = static_cast<std::uint32_t>(run.size());
    character->label = label_++;
    last_character_ = character;
    return character;
  }

  void extend(_BNODE& character, Span run, int row) {
    character.rect.top = static_cast<std::int16_t>(row);
    character.rect.left = std::min(character.rect.left, static_cast<std::int16_t>(run.first));
    character.rect.right = std::max(character.rect.right, static_cast<std::int16_t>(run.last()));
    character.pixelCount += static_cast<std::uint32_t>(run.size());
  }

  int first_row(const _BNODE& character) const { return character.rect.bottom; }

  void absorb(_BNODE& survivor, _BNODE& absorbed) {
    survivor.rect.left = std::min(survivor.rect.left, absorbed.rect.left);
    survivor.rect.right = std::max(survivor.rect.right, absorbed.rect.right);
    survivor.pixelCount += absorbed.pixelCount;
    absorbed.label = survivor.label;
    if (last_character_ == &absorbed) last_character_ = absorbed.prev;
    return_character(list_, &absorbed);
  }

 private:
  _BLIST& list_;
  _BNODE* line_;
  _BNODE*& last_character_;
  int& label_;
};

/** Stores the components of a picture under one new group and line; false when there is none, or no room or memory. */
template <class ForEachRun>
bool extract_to_list(_BLIST& list, int width, int height, ForEachRun for_each_run) {
  RunBuffers<_BNODE> runs(width);
  if (!runs.ready()) return false;
  _BNODE* group = request_group(list, nullptr, nullptr, {});
  if (group == nullptr) return false;
  _BNODE* line = request_line(list, group, nullptr, nullptr, {});
  if (line == nullptr) return false;

  _BNODE* last_character = nullptr;
  int label = 1;
  CharacterStore store(list, line, last_character, label);
  runs.extract(height, store, for_each_run);
  if (line->child != nullptr) return true;
  return_group(list, group);
  return false;
}

}  // namespace
}  // namespace vantrel::components

namespace components = vantrel::components;

int ECC_SetRunComponent(unsigned short start, unsigned short end, unsigned short row, _RUN* prevRuns, _RUN* curRuns,
                        unsigned short prevCount, unsigned short& prevIndex, unsigned short& curCount, _BLIST& list,
                        _BNODE* line, _BNODE*& lastChar, unsigned short /*width*/, int& label) {
  components::CharacterStore store(list, line, lastChar, label);
  return components::add_run<_RUN>({start, end}, row, {prevRuns, curRuns, prevCount, prevIndex, curCount}, store,
                                   components::OwnNames())
             ? 1
             : 0;
}

int Extract_Eight_Connected_Components(BITMAPPTR bitmap, _BLIST& list) {
  const auto width = static_cast<unsigned short>(bitmap.pInfo->biWidth);
  const auto height = static_cast<unsigned short>(bitmap.pInfo->biHeight);
  const vantrel::image::ConstPixels bits = vantrel::image::pixels_of(bitmap);
  const bool any = components::extract_to_list(
      list, width, height, [&](int row, auto found) { components::for_each_run_of_bits(bits.row(row), width, found); });
  return any ? 1 : 0;
}

bool Gray2Bin(unsigned char* edge, _BLIST& list, int rows, int cols) {
  if (rows < 0 || cols < 0 || rows > components::kLongestSide || cols > components::kLongestSide) return false;
  const vantrel::image::ConstPixels map{edge, rows, cols,
                                        static_cast<std::ptrdiff_t>(vantrel::image::stride_bytes(cols, 8))};
  const auto runs_of = [&](int row, auto found) __attribute__((always_inline)) {
    components::for_each_run_of_bytes(map.row(row), cols, found);
  };
  return components::extract_to_list(list, cols, rows, runs_of);
}
