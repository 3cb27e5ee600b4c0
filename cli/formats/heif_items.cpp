#include "formats/heif_items.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "big_endian.h"
#include "formats/codecs.h"
#include "formats/hevc.h"

// The boxes of a HEIC file as far as they say how pictures are put together from others (ISO/IEC 14496-12 and
// 23008-12): the decoder makes room for what they announce before it has seen a tile.
namespace tool {
namespace {

/** Numbers from a stretch of a file; beyond its end the file is damaged. */
class Reader {
 public:
  Reader(const Bytes& file, std::uint64_t begin, std::uint64_t end) : file_(file), at_(begin), end_(end) {}

  std::uint64_t number(int bytes) {
    if (left() < static_cast<std::uint64_t>(bytes)) refuse_damaged(Format::kHeif);
    const std::uint64_t value = big_endian(file_.data() + at_, static_cast<std::size_t>(bytes));
    at_ += static_cast<std::uint64_t>(bytes);
    return value;
  }
  std::uint64_t at() const { return at_; }
  std::uint64_t left() const { return end_ - at_; }

  /** The next so many bytes, or what is left. */
  Reader part(std::uint64_t bytes) {
    const std::uint64_t begin = at_;
    at_ += std::min(bytes, left());
    return {file_, begin, at_};
  }

  void copy_to(Bytes& bytes) const {
    const auto place = [this](std::uint64_t at) { return file_.begin() + static_cast<std::ptrdiff_t>(at); };
    bytes.insert(bytes.end(), place(at_), place(end_));
  }

 private:
  const Bytes& file_;
  std::uint64_t at_;
  std::uint64_t end_;
};

constexpr std::uint32_t code(std::string_view name) {
  std::uint32_t value = 0;
  for (const char c : name) value = value << 8 | static_cast<unsigned char>(c);
  return value;
}

/** Calls `use` with the kind and the content of each box. */
template <class Use>
void for_each_box(Reader from, Use use) {
  constexpr std::uint64_t kHead = 8;
  while (from.left() >= kHead) {
    std::uint64_t length = from.number(4);
    const auto kind = static_cast<std::uint32_t>(from.number(4));
    std::uint64_t head = kHead;
    if (length == 1) {
      length = from.number(8);
      head += 8;
    } else if (length == 0) {
      length = head + from.left();  // to the end
    }
    if (length < head) refuse_damaged(Format::kHeif);
    use(kind, from.part(length - head));
  }
}

/** What a box that has a version begins with. */
int version_of(Reader& box) { return static_cast<int>(box.number(4) >> 24); }

using Item = std::uint32_t;

struct Place {
  std::uint64_t offset = 0;
  std::uint64_t length = 0;
  bool in_box = false; /**< in the box of data, else in the file */
};

/** What is said of items, by its kind: a size, how they are turned or cut. */
struct Property {
  std::uint32_t kind;
  Reader content;
};

struct Items {
  Item primary = 0;
  std::map<Item, std::uint32_t> kinds;
  std::map<Item, std::vector<Place>> places;
  std::map<Item, std::vector<Item>> made_from; /**< one as often as it is named: it is decoded as often */
  std::set<Item> belonging;                    /**< to another picture, as its opacity */
  std::vector<Property> properties;
  std::map<Item, std::vector<std::size_t>> numbers_of_properties; /**< from 1 */
  std::optional<Reader> data;
};

void read_kinds(Reader box, Items& items) {
  box.number(version_of(box) == 0 ? 2 : 4);
  for_each_box(box, [&](std::uint32_t kind, Reader entry) {
    if (kind != code("infe")) return;
    const int version = version_of(entry);
    if (version < 2) return;
    const auto item = static_cast<Item>(entry.number(version == 2 ? 2 : 4));
    entry.number(2);
    const bool is_new = items.kinds.emplace(item, static_cast<std::uint32_t>(entry.number(4))).second;
    if (!is_new) refuse_damaged(Format::kHeif);
  });
}

void read_places(Reader box, Items& items) {
  const int version = version_of(box);
  const auto sizes = static_cast<int>(box.number(2));
  const int offset_bytes = sizes >> 12;
  const int length_bytes = sizes >> 8 & 15;
  const int base_bytes = sizes >> 4 & 15;
  const int index_bytes = version > 0 ? sizes & 15 : 0;
  const int item_bytes = version < 2 ? 2 : 4;
  for (std::uint64_t count = box.number(item_bytes); count > 0; --count) {
    const auto item = static_cast<Item>(box.number(item_bytes));
    const bool in_box = version > 0 && (box.number(2) & 15) == 1;
    box.number(2);
    const std::uint64_t base = box.number(base_bytes);
    std::uint64_t pieces = box.number(2);
    // Pieces of which nothing is said take no bytes of the file: they could go on for minutes.
    if (index_bytes + offset_bytes + length_bytes == 0) pieces = std::min<std::uint64_t>(pieces, 1);
    const auto [entry, is_new] = items.places.try_emplace(item);
    if (!is_new) refuse_damaged(Format::kHeif);
    for (; pieces > 0; --pieces) {
      box.number(index_bytes);
      const std::uint64_t offset = base + box.number(offset_bytes);
      entry->second.push_back({offset, box.number(length_bytes), in_box});
    }
  }
}

void read_references(Reader box, Items& items) {
  const int bytes = version_of(box) == 0 ? 2 : 4;
  for_each_box(box, [&](std::uint32_t kind, Reader entry) {
    const auto from = static_cast<Item>(entry.number(bytes));
    for (std::uint64_t count = entry.number(2); count > 0; --count) {
      const auto to = static_cast<Item>(entry.number(bytes));
      if (kind == code("dimg")) items.made_from[from].push_back(to);
      if (kind == code("auxl")) items.belonging.insert(from);
    }
  });
}

void read_associations(Reader box, Items& items) {
  const std::uint64_t head = box.number(4);
  const int item_bytes = head >> 24 == 0 ? 2 : 4;
  const bool wide = (head & 1) != 0;
  for (std::uint64_t count = box.number(4); count > 0; --count) {
    const auto item = static_cast<Item>(box.number(item_bytes));
    for (std::uint64_t properties = box.number(1); properties > 0; --properties) {
      // The highest bit says whether the property must be understood.
      const std::uint64_t number = wide ? box.number(2) & 0x7FFF : box.number(1) & 0x7F;
      items.numbers_of_properties[item].push_back(static_cast<std::size_t>(number));
    }
  }
}

/** Of several boxes of a kind the decoder takes one, whichever. */
class OncePerKind {
 public:
  void operator()(std::uint32_t kind) {
    if (!met_.insert(kind).second) refuse_damaged(Format::kHeif);
  }

 private:
  std::set<std::uint32_t> met_;
};

void read_properties(Reader box, Items& items) {
  OncePerKind once;
  for_each_box(box, [&](std::uint32_t kind, Reader part) {
    if (kind == code("ipma")) read_associations(part, items);
    if (kind != code("ipco")) return;
    once(kind);
    for_each_box(part, [&](std::uint32_t of, Reader content) { items.properties.push_back({of, content}); });
  });
}

Items items_of(const Bytes& file) {
  constexpr std::array kRead = {code("pitm"), code("iinf"), code("iloc"), code("iref"), code("iprp"), code("idat")};
  Items items;
  OncePerKind once;
  for_each_box({file, 0, file.size()}, [&](std::uint32_t outer, Reader meta) {
    if (outer != code("meta")) return;
    once(outer);
    version_of(meta);
    for_each_box(meta, [&](std::uint32_t kind, Reader box) {
      if (std::find(kRead.begin(), kRead.end(), kind) == kRead.end()) return;
      once(kind);
      if (kind == code("pitm")) items.primary = static_cast<Item>(box.number(version_of(box) == 0 ? 2 : 4));
      if (kind == code("iinf")) read_kinds(box, items);
      if (kind == code("iloc")) read_places(box, items);
      if (kind == code("iref")) read_references(box, items);
      if (kind == code("iprp")) read_properties(box, items);
      if (kind == code("idat")) items.data.emplace(box);
    });
  });
  return items;
}

/** The begin of an item's content, so many bytes at most. */
Bytes content_of(const Bytes& file, const Items& items, Item item, std::uint64_t most) {
  const auto found = items.places.find(item);
  if (found == items.places.end()) refuse_damaged(Format::kHeif);
  Bytes content;
  for (const Place& place : found->second) {
    if (place.in_box && !items.data) refuse_damaged(Format::kHeif);
    Reader from = place.in_box ? *items.data : Reader(file, 0, file.size());
    from.part(place.offset);
    const std::uint64_t length = place.length == 0 ? from.left() : place.length;
    from.part(std::min(length, most - content.size())).copy_to(content);
  }
  return content;
}

bool is_made(const Items& items, Item item) {
  const auto kind = items.kinds.find(item);
  return kind != items.kinds.end() &&
         (kind->second == code("grid") || kind->second == code("iovl") || kind->second == code("iden"));
}

/** The size that a picture is put together to. */
AssembledSize canvas_of(const Bytes& begin, std::uint32_t kind) {
  Reader content(begin, 0, begin.size());
  content.number(1);
  const int bytes = (content.number(1) & 1) != 0 ? 4 : 2;
  // Smaller tiles are not allowed: there are no more of them than the pixels justify.
  constexpr std::int64_t kLeastTile = 64;
  std::int64_t least_width = 0;
  std::int64_t least_height = 0;
  if (kind == code("grid")) {
    least_height = kLeastTile * static_cast<std::int64_t>(content.number(1));
    least_width = kLeastTile * static_cast<std::int64_t>(content.number(1));
  } else {
    content.number(8);  // the colour behind
  }
  const auto width = static_cast<std::int64_t>(content.number(bytes));
  const auto height = static_cast<std::int64_t>(content.number(bytes));
  if (width <= least_width || height <= least_height) refuse_damaged(Format::kHeif);
  return {width, height};
}

/** Of a picture that is not put together from others, in pixels. */
struct Told {
  double shown = 0;
  double coded = 0;
};

Told told_by(Property property) {
  if (property.kind == code("ispe")) {
    version_of(property.content);
    const auto width = static_cast<double>(property.content.number(4));
    return {.shown = width * static_cast<double>(property.content.number(4))};
  }
  if (property.kind != code("hvcC")) return {};
  Bytes configuration;
  property.content.copy_to(configuration);
  return {.coded = pixels_of_configuration(configuration)};
}

/** The first size that is told of each item, and the largest that it is coded in. */
std::map<Item, Told> told_of_items(const Items& items) {
  std::vector<Told> told;
  for (const Property& property : items.properties) told.push_back(told_by(property));
  std::map<Item, Told> all;
  for (const auto& [item, numbers] : items.numbers_of_properties) {
    Told& of_item = all[item];
    for (const std::size_t number : numbers) {
      if (number == 0 || number > told.size()) continue;
      const Told& by_this = told[number - 1];
      if (of_item.shown == 0) of_item.shown = by_this.shown;
      of_item.coded = std::max(of_item.coded, by_this.coded);
    }
  }
  return all;
}

/** What is decoded for a picture beyond what is seen of it: tiles reach beyond the canvas, layers cover each other. */
void check_decoded(double decoded, double seen) {
  constexpr double kMostCovered = 2;
  constexpr double kPixelsAside = 4e6;
  if (decoded > kMostCovered * seen + kPixelsAside) {
    refuse_kind(Format::kHeif, "a picture made from far more pixels than it has");
  }
}

/** Each part is decoded, and as often as it is named, however little of it is seen. */
void check_parts(const std::map<Item, Told>& told, const std::vector<Item>& parts, std::uint32_t kind,
                 const AssembledSize& canvas) {
  constexpr std::size_t kMostLayers = 256;
  if (kind == code("iovl") && parts.size() > kMostLayers) {
    refuse_kind(Format::kHeif, "more than " + std::to_string(kMostLayers) + " pictures over each other");
  }
  double decoded = 0;
  for (const Item part : parts) {
    const auto found = told.find(part);
    if (found != told.end()) decoded += std::max(found->second.shown, found->second.coded);
  }
  check_decoded(decoded, static_cast<double>(canvas.width) * static_cast<double>(canvas.height));
}

/** What the decoder would find in the data of pictures, it is to find told of them. */
void check_coded_data(const Bytes& file, const Items& items) {
  // Pieces of one item do not overlap, and few items share their data.
  constexpr std::uint64_t kMostTimes = 16;
  std::uint64_t read = 0;
  for (const auto& [item, kind] : items.kinds) {
    if (kind != code("hvc1") || !items.places.contains(item)) continue;
    const Bytes data = content_of(file, items, item, file.size() + 1);
    read += data.size();
    if (data.size() > file.size() || read > kMostTimes * file.size()) refuse_damaged(Format::kHeif);
    if (has_parameters(data)) refuse_kind(Format::kHeif, "a picture that says its size among its data");
  }
}

/** The decoder relies on there being every picture; of other codings nothing is known before they are decoded. */
void check_coding(const Items& items, Item item) {
  const auto kind = items.kinds.find(item);
  if (kind == items.kinds.end()) refuse_damaged(Format::kHeif);
  if (kind->second != code("hvc1") && !is_made(items, item)) refuse_kind(Format::kHeif, "its coding");
}

/** The decoder turns and cuts a picture as often as it is told to; a file that is meant well tells it each once. */
void check_turns(const Items& items) {
  for (const auto& [item, numbers] : items.numbers_of_properties) {
    std::map<std::uint32_t, int> times;
    for (const std::size_t number : numbers) {
      if (number == 0 || number > items.properties.size()) continue;
      const std::uint32_t kind = items.properties[number - 1].kind;
      const bool changes = kind == code("irot") || kind == code("imir") || kind == code("clap");
      if (changes && ++times[kind] > 1) refuse_kind(Format::kHeif, "a picture turned or cut more than once");
    }
  }
}

}  // namespace

std::optional<AssembledSize> check_heif_items(const Bytes& file, const Limits& limits) {
  constexpr int kBits = 24;
  const Items items = items_of(file);
  check_turns(items);
  check_coding(items, items.primary);
  for (const Item item : items.belonging) check_coding(items, item);
  check_coded_data(file, items);
  const std::map<Item, Told> told = told_of_items(items);
  for (const auto& [item, sizes] : told) check_decoded(sizes.coded, sizes.shown);
  std::optional<AssembledSize> primary;
  for (const auto& [item, kind] : items.kinds) {
    if (!is_made(items, item)) continue;
    const auto made_from = items.made_from.find(item);
    const std::vector<Item> parts = made_from != items.made_from.end() ? made_from->second : std::vector<Item>();
    for (const Item part : parts) {
      if (is_made(items, part)) refuse_kind(Format::kHeif, "a picture put together from such as are so themselves");
      check_coding(items, part);
    }
    if (kind == code("iden")) continue;
    constexpr std::uint64_t kLongestHead = 20;
    const AssembledSize canvas = canvas_of(content_of(file, items, item, kLongestHead), kind);
    check_size(canvas.width, canvas.height, kBits, limits);
    check_parts(told, parts, kind, canvas);
    if (item == items.primary) primary = canvas;
  }
  return primary;
}

}  // namespace tool
