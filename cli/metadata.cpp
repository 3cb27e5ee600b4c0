#include "metadata.h"

#include <algorithm>
#include <array>
#include <exiv2/exiv2.hpp>
#include <mutex>
#include <new>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "memory.h"

namespace tool {
namespace {

/** Of the tags of a picture those that are as true of a part of it; all others describe how its file is made. */
constexpr std::array kKeptOfPicture = {
    "Exif.Image.DocumentName", "Exif.Image.ImageDescription", "Exif.Image.Make",      "Exif.Image.Model",
    "Exif.Image.Software",     "Exif.Image.DateTime",         "Exif.Image.Artist",    "Exif.Image.HostComputer",
    "Exif.Image.Copyright",    "Exif.Image.Rating",           "Exif.Image.XPTitle",   "Exif.Image.XPComment",
    "Exif.Image.XPAuthor",     "Exif.Image.XPKeywords",       "Exif.Image.XPSubject", "Exif.Image.PageName"};

/** The library's data of XMP, and its messages, are the whole process's. */
std::mutex exiv2_mutex;

/** What is worked out of so many bytes takes in all, at most: a few values may name the same bytes, not thousands. */
std::int64_t bytes_to_ask(std::size_t bytes) {
  constexpr std::int64_t kAside = std::int64_t{48} << 20;
  constexpr std::int64_t kTimes = 8;
  return kAside + kTimes * static_cast<std::int64_t>(bytes);
}

/**
 * Runs what asks Exiv2 about so many bytes. It throws for damaged data, and those that become far more than they are
 * count as damaged; missing memory stays what it is.
 */
template <class Result, class Ask>
Result asked(std::size_t bytes, Result otherwise, Ask ask) {
  const ForeignCode foreign(Large::kCrashes);
  const std::lock_guard lock(exiv2_mutex);
  Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
  const Allowance allowance(bytes_to_ask(bytes));
  try {
    Result result = ask();
    if (!allowance.spent()) return result;
    return otherwise;
  } catch (const std::bad_alloc&) {
    if (allowance.spent()) return otherwise;
    throw;
  } catch (const std::exception&) {
    return otherwise;
  }
}

/** Where the first directory says how long the XMP packets in it are, if they are long in all. */
std::vector<std::size_t> lengths_of_packets(const Bytes& exif) {
  constexpr std::size_t kXmp = 700;
  constexpr std::size_t kEntryBytes = 12;
  constexpr std::size_t kLong = std::size_t{64} << 10;
  const bool big = !exif.empty() && exif[0] == 'M';
  const auto number = [&](std::size_t at, std::size_t bytes) {
    std::size_t value = 0;
    for (std::size_t i = 0; at + bytes <= exif.size() && i < bytes; ++i) {
      value = value << 8 | exif[at + (big ? i : bytes - 1 - i)];
    }
    return value;
  };
  const std::size_t directory = number(4, 4);
  std::vector<std::size_t> places;
  std::size_t bytes = 0;
  for (std::size_t i = 0; i < number(directory, 2); ++i) {
    const std::size_t entry = directory + 2 + kEntryBytes * i;
    if (number(entry, 2) != kXmp || entry + kEntryBytes > exif.size()) continue;
    places.push_back(entry + 4);
    bytes += number(entry + 4, 4);
  }
  if (bytes <= kLong) places.clear();
  return places;
}

Exiv2::ExifData decoded(const Bytes& exif, Exiv2::ByteOrder* order = nullptr) {
  // Packets are decoded too, and slowly; nobody asks for them here.
  if (const auto lengths = lengths_of_packets(exif); !lengths.empty()) {
    Bytes others = exif;
    for (const std::size_t place : lengths) std::fill_n(others.begin() + static_cast<std::ptrdiff_t>(place), 4, 0);
    return decoded(others, order);
  }
  Exiv2::ExifData data;
  const auto found = Exiv2::ExifParser::decode(data, exif.data(), static_cast<std::uint32_t>(exif.size()));
  if (order != nullptr) *order = found == Exiv2::invalidByteOrder ? Exiv2::littleEndian : found;
  return data;
}

/** A number of a tag, or another where it is not given. */
double number_of(const Exiv2::ExifData& data, const char* key, double otherwise) {
  const auto tag = data.findKey(Exiv2::ExifKey(key));
  if (tag == data.end() || tag->count() == 0) return otherwise;
  const double value = static_cast<double>(tag->toFloat());
  return value >= 0 && value < 1e6 ? value : otherwise;
}

bool is_kept(const Exiv2::Exifdatum& tag) {
  const std::string group = tag.groupName();
  if (group != "Image") return group.rfind("SubImage", 0) != 0 && group != "Thumbnail";
  return std::find(kKeptOfPicture.begin(), kKeptOfPicture.end(), tag.key()) != kKeptOfPicture.end();
}

Exiv2::ExifData kept_of(const Exiv2::ExifData& data) {
  Exiv2::ExifData kept;
  for (const Exiv2::Exifdatum& tag : data) {
    if (is_kept(tag)) kept.add(tag);
  }
  return kept;
}

Bytes encoded(const Exiv2::ExifData& data, Exiv2::ByteOrder order) {
  Exiv2::Blob blob;
  if (!data.empty()) Exiv2::ExifParser::encode(blob, order, data);
  return {blob.begin(), blob.end()};
}

/** What is kept of the data; nothing at all when no tag is. */
Exiv2::ExifData for_output(const Exiv2::ExifData& data, const Bitmap& output) {
  Exiv2::ExifData kept = kept_of(data);
  if (kept.empty()) return kept;
  const auto size = [&](const char* key, int value) {
    if (kept.findKey(Exiv2::ExifKey(key)) != kept.end()) kept[key] = static_cast<std::uint32_t>(value);
  };
  size("Exif.Photo.PixelXDimension", output.width());
  size("Exif.Photo.PixelYDimension", output.height());
  constexpr std::uint16_t kUpright = 1;
  constexpr std::uint16_t kInch = 2;
  kept["Exif.Image.Orientation"] = kUpright;
  if (const auto [x, y] = output.resolution(); x > 0 && y > 0) {
    kept["Exif.Image.XResolution"] = Exiv2::Rational(x, 1);
    kept["Exif.Image.YResolution"] = Exiv2::Rational(y, 1);
    kept["Exif.Image.ResolutionUnit"] = kInch;
  }
  return kept;
}

}  // namespace

ExifFacts facts_of(const Bytes& exif) {
  if (exif.empty()) return {};
  return asked(exif.size(), ExifFacts{}, [&] {
    const Exiv2::ExifData data = decoded(exif);
    constexpr double kNotKnown = 72;
    constexpr double kCentimetre = 3;
    const double unit = number_of(data, "Exif.Image.ResolutionUnit", 2) == kCentimetre ? 2.54 : 1.0;
    const auto resolution = [&](const char* key) {
      const double value = number_of(data, key, kNotKnown) * unit;
      return value == kNotKnown ? 0 : static_cast<int>(value + 0.5);
    };
    ExifFacts facts{static_cast<int>(number_of(data, "Exif.Image.Orientation", 1)),
                    {resolution("Exif.Image.XResolution"), resolution("Exif.Image.YResolution")}};
    if (facts.resolution.x == 0 || facts.resolution.y == 0) facts.resolution = {};
    return facts;
  });
}

Bytes exif_of_tiff(const Bytes& file) {
  return asked(file.size(), Bytes{}, [&] { return encoded(kept_of(decoded(file)), Exiv2::littleEndian); });
}

Bytes exif_for(const Bytes& exif, const Bitmap& output) {
  if (exif.empty()) return {};
  return asked(exif.size(), Bytes{}, [&] {
    auto order = Exiv2::littleEndian;
    const Exiv2::ExifData data = for_output(decoded(exif, &order), output);
    return encoded(data, order);
  });
}

Bytes xmp_for(Bytes xmp) {
  // In place, so that the packet stays as long as it says.
  constexpr std::size_t kNear = 24;
  const std::string text(xmp.begin(), xmp.end());
  std::size_t at = text.find("tiff:Orientation");
  for (; at != std::string::npos; at = text.find("tiff:Orientation", at + 1)) {
    const std::size_t digit = std::string_view(text).substr(at, kNear).find_first_of("0123456789");
    if (digit != std::string::npos) xmp[at + digit] = '1';
  }
  return xmp;
}

Bytes with_metadata(Bytes tiff, const Bytes& exif, const Bytes& xmp) {
  if (exif.empty() && xmp.empty()) return tiff;
  Bytes result = asked(tiff.size() + exif.size() + xmp.size(), Bytes{}, [&] {
    const auto image = Exiv2::ImageFactory::open(tiff.data(), static_cast<long>(tiff.size()));
    image->readMetadata();
    Exiv2::ExifData all = image->exifData();
    std::set<std::string> keys;
    for (const Exiv2::Exifdatum& tag : all) keys.insert(tag.key());
    for (const Exiv2::Exifdatum& tag : decoded(exif)) {
      if (keys.insert(tag.key()).second) all.add(tag);
    }
    image->setExifData(all);
    if (!xmp.empty()) {
      // As it stands: to decode it and put it together again takes long where there are very many properties.
      Exiv2::XmpData data;
      data.setPacket(std::string(xmp.begin(), xmp.end()));
      image->setXmpData(data);
      image->writeXmpFromPacket(true);
    }
    image->writeMetadata();
    Exiv2::BasicIo& file = image->io();
    const Exiv2::byte* const bytes = file.mmap();
    return Bytes(bytes, bytes + file.size());
  });
  return result.empty() ? std::move(tiff) : std::move(result);
}

}  // namespace tool
