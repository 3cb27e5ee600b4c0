#include "formats/heif_items.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/codecs.h"

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
    std::uint64_t value = 0;
    for (int i = 0; i < bytes; ++i) value = value << 8 | file_[at_++];
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
  std::map<Item, Place> places;
  std::map<Item, std::vector<Item>> made_from; /**< one as often as it is named: it is decoded as often */
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
    items.kinds[item] = static_cast<std::uint32_t>(entry.number(4));
  });
}

/** Of an item in pieces the first one. */
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
    for (bool first = true; pieces > 0; --pieces, first = false) {
      box.number(index_bytes);
      const std::uint64_t offset = base + box.number(offset_bytes);
      const std::uint64_t length = box.number(length_bytes);
      if (first) items.places[item] = {offset, length, in_box};
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

void read_properties(Reader box, Items& items) {
  for_each_box(box, [&](std::uint32_t kind, Reader part) {
    if (kind == code("ipma")) read_associations(part, items);
    if (kind != code("ipco")) return;
    for_each_box(part, [&](std::uint32_t of, Reader content) { items.properties.push_back({of, content}); });
  });
}

Items items_of(const Bytes& file) {
  Items items;
  for_each_box({file, 0, file.size()}, [&](std::uint32_t outer, Reader meta) {
    if (outer != code("meta")) return;
    version_of(meta);
    for_each_box(meta, [&](std::uint32_t kind, Reader box) {
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

Reader content_of(const Bytes& file, const Items& items, Item item) {
  const auto found = items.places.find(item);
  if (found == items.places.end() || (found->second.in_box && !items.data)) refuse_damaged(Format::kHeif);
  const Place& place = found->second;
  Reader from = place.in_box ? *items.data : Reader(file, 0, file.size());
  from.part(place.offset);
  return from.part(place.length == 0 ? from.left() : place.length);
}

bool is_made(const Items& items, Item item) {
  const auto kind = items.kinds.find(item);
  return kind != items.kinds.end() &&
         (kind->second == code("grid") || kind->second == code("iovl") || kind->second == code("iden"));
}

/** The size that a picture is put together to. */
AssembledSize canvas_of(Reader content, std::uint32_t kind) {
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

/** The size that is told of a picture. */
std::optional<AssembledSize> size_told(const Items& items, Item item) {
  const auto found = items.numbers_of_properties.find(item);
  if (found == items.numbers_of_properties.end()) return std::nullopt;
  for (const std::size_t number : found->second) {
    if (number == 0 || number > items.properties.size()) continue;
    Property property = items.properties[number - 1];
    if (property.kind != code("ispe")) continue;
    version_of(property.content);
    const auto width = static_cast<std::int64_t>(property.content.number(4));
    const auto height = static_cast<std::int64_t>(property.content.number(4));
    return AssembledSize{width, height};
  }
  return std::nullopt;
}

/** Each part is decoded, and as often as it is named, however little of it is seen. */
void check_parts(const Items& items, const std::vector<Item>& parts, std::uint32_t kind, const AssembledSize& canvas) {
  constexpr std::size_t kMostLayers = 256;
  if (kind == code("iovl") && parts.size() > kMostLayers) {
    refuse_kind(Format::kHeif, "more than " + std::to_string(kMostLayers) + " pictures over each other");
  }
  // Tiles reach beyond the canvas, layers cover each other.
  constexpr double kMostCovered = 8;
  constexpr double kPixelsAside = 4e6;
  double pixels = 0;
  for (const Item part : parts) {
    const std::optional<AssembledSize> size = size_told(items, part);
    if (size) pixels += static_cast<double>(size->width) * static_cast<double>(size->height);
  }
  const double seen = static_cast<double>(canvas.width) * static_cast<double>(canvas.height);
  if (pixels > kMostCovered * seen + kPixelsAside) {
    refuse_kind(Format::kHeif, "a picture put together from far more pixels than it has");
  }
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
  std::optional<AssembledSize> primary;
  for (const auto& [item, kind] : items.kinds) {
    if (!is_made(items, item)) continue;
    const auto made_from = items.made_from.find(item);
    const std::vector<Item> parts = made_from != items.made_from.end() ? made_from->second : std::vector<Item>();
    for (const Item part : parts) {
      if (is_made(items, part)) refuse_kind(Format::kHeif, "a picture put together from such as are so themselves");
    }
    if (kind == code("iden")) continue;
    const AssembledSize canvas = canvas_of(content_of(file, items, item), kind);
    check_size(canvas.width, canvas.height, kBits, limits);
    check_parts(items, parts, kind, canvas);
    if (item == items.primary) primary = canvas;
  }
  return primary;
}

}  // namespace tool
