#include "formats/hevc.h"

#include <algorithm>
#include <cstddef>

#include "big_endian.h"
#include "formats/codecs.h"

// The units and sets of parameters of Rec. ITU-T H.265, 7.3.1 and 7.3.2.2, as far as they tell a size.
namespace tool {
namespace {

constexpr std::size_t kUnitHead = 2;

/** Of sequences of pictures: it holds their size. */
constexpr int kKindOfParameters = 33;

bool holds_parameters(const Bytes& data, std::size_t unit) { return (data[unit] >> 1 & 63) == kKindOfParameters; }

/** Pictures of further layers are not decoded. */
bool is_of_first_layer(const Bytes& data, std::size_t unit) {
  return (data[unit] & 1) == 0 && data[unit + 1] >> 3 == 0;
}

/** The bits of a unit behind its head. */
class Bits {
 public:
  Bits(const Bytes& data, std::size_t unit, std::size_t end) : data_(data), at_(unit + kUnitHead), end_(end) {}

  void skip(int count) {
    while (count-- > 0) bit();
  }

  std::uint32_t number(int bits) {
    std::uint32_t value = 0;
    while (bits-- > 0) value = value << 1 | bit();
    return value;
  }

  /** As many bits follow the first 1 as stand before it (9.2). */
  std::uint32_t coded_number() {
    constexpr int kMostBits = 31;
    int bits = 0;
    while (bit() == 0) {
      if (++bits > kMostBits) refuse_damaged(Format::kHeif);
    }
    return (1U << bits) - 1 + number(bits);
  }

 private:
  std::uint32_t bit() {
    if (left_ == 0) next_byte();
    return byte_ >> --left_ & 1U;
  }

  /** After two zeros a three stands for nothing: it keeps the data from looking like the begin of a unit. */
  void next_byte() {
    if (at_ < end_ && zeros_ >= 2 && data_[at_] == 3) {
      zeros_ = 0;
      ++at_;
    }
    if (at_ >= end_) refuse_damaged(Format::kHeif);
    byte_ = data_[at_++];
    zeros_ = byte_ == 0 ? zeros_ + 1 : 0;
    left_ = 8;
  }

  const Bytes& data_;
  std::size_t at_;
  std::size_t end_;
  int zeros_ = 0;
  std::uint32_t byte_ = 0;
  int left_ = 0;
};

void skip_profile(Bits& bits, std::uint32_t layers) {
  constexpr int kProfile = 88;
  constexpr int kLevel = 8;
  constexpr std::uint32_t kMostLayers = 8;
  bits.skip(kProfile + kLevel);
  if (layers == 0) return;
  std::uint32_t told[kMostLayers] = {};
  for (std::uint32_t i = 0; i < kMostLayers; ++i) told[i] = bits.number(2);
  for (std::uint32_t i = 0; i < layers; ++i) {
    if ((told[i] & 2) != 0) bits.skip(kProfile);
    if ((told[i] & 1) != 0) bits.skip(kLevel);
  }
}

double pixels_of_parameters(Bits bits) {
  bits.skip(4);  // the number of the sequence's own parameters
  const std::uint32_t layers = bits.number(3);
  bits.skip(1);
  skip_profile(bits, layers);
  bits.coded_number();  // the number of these parameters
  constexpr std::uint32_t kNotReduced = 3;
  if (bits.coded_number() == kNotReduced) bits.skip(1);
  const double width = bits.coded_number();
  return width * bits.coded_number();
}

std::size_t number_at(const Bytes& data, std::size_t at, std::size_t bytes) {
  if (at > data.size() || bytes > data.size() - at) refuse_damaged(Format::kHeif);
  return big_endian(data.data() + at, bytes);
}

}  // namespace

double pixels_of_configuration(const Bytes& configuration) {
  constexpr std::size_t kHead = 22;
  double most = 0;
  std::size_t at = kHead + 1;
  for (std::size_t lists = number_at(configuration, kHead, 1); lists > 0; --lists) {
    ++at;  // the kind of units that the list should have
    std::size_t units = number_at(configuration, at, 2);
    for (at += 2; units > 0; --units) {
      const std::size_t length = number_at(configuration, at, 2);
      at += 2;
      if (length > configuration.size() - at) refuse_damaged(Format::kHeif);
      if (length >= kUnitHead && holds_parameters(configuration, at) && is_of_first_layer(configuration, at)) {
        most = std::max(most, pixels_of_parameters(Bits(configuration, at, at + length)));
      }
      at += length;
    }
  }
  return most;
}

bool has_parameters(const Bytes& data) {
  constexpr std::size_t kLength = 4;
  for (std::size_t at = 0; data.size() - at > kLength;) {
    const std::size_t length = number_at(data, at, kLength);
    at += kLength;
    if (length > data.size() - at) return false;  // damaged: it is not decoded from there on
    if (length > 0 && holds_parameters(data, at)) return true;
    at += length;
  }
  return false;
}

}  // namespace tool
