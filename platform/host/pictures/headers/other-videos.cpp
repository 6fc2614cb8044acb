#include <algorithm>
#include <bit>
#include <optional>

#include "pictures/headers/private.hpp"

namespace phone::pictures {

void read_avi(Source &source, Header &header) {
  // RIFF, its kind, then the list of headers, which begins with the main one.
  const Bytes list = source.at(12, 20);
  if (list.empty() || !has_text(list, 0, "LIST") || !has_text(list, 8, "hdrlavih")) return;
  const Bytes main = source.at(32, 40);
  if (main.empty()) return;
  const std::uint64_t frame_us = little32(main, 0);
  const std::uint64_t frames = little32(main, 16);
  header.duration_ms = static_cast<gint64>(frame_us * frames / 1000);
  set_size(header, little32(main, 32), little32(main, 36));
}

namespace {

constexpr int kMostElements = 512;

/// An element of a Matroska or WebM file.
struct Element {
  std::uint32_t id = 0;
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
};

/// A number whose first byte tells its length in leading zeros.
struct Vint {
  std::uint64_t raw = 0;    ///< with the mark of its length, as ids are written
  std::uint64_t value = 0;  ///< without
  unsigned length = 0;
};

std::optional<Vint> read_vint(Source &source, std::uint64_t at) {
  const Bytes first = source.at(at, 1);
  if (first.empty() || byte_at(first, 0) == 0) return std::nullopt;
  const auto length = static_cast<unsigned>(std::countl_zero(byte_at(first, 0))) + 1;
  const Bytes bytes = source.at(at, length);
  if (bytes.empty()) return std::nullopt;
  Vint vint;
  for (unsigned i = 0; i < length; ++i) vint.raw = vint.raw << 8 | byte_at(bytes, i);
  vint.value = vint.raw & ((1ull << (7 * length)) - 1);
  vint.length = length;
  return vint;
}

class ElementWalk {
 public:
  ElementWalk(Source &source, std::uint64_t begin, std::uint64_t end, int &budget)
      : source_(source), at_(begin), end_(end), budget_(budget) {}

  std::optional<Element> next() {
    if (at_ >= end_ || budget_-- <= 0) return std::nullopt;
    const auto id = read_vint(source_, at_);
    if (!id || id->length > 4) return std::nullopt;
    const auto size = read_vint(source_, at_ + id->length);
    if (!size) return std::nullopt;
    const std::uint64_t begin = at_ + id->length + size->length;
    // All ones: the length is not known yet, the element goes on to the end.
    const bool open = size->value == (1ull << (7 * size->length)) - 1;
    if (begin > end_) return std::nullopt;
    const std::uint64_t end = open || size->value > end_ - begin ? end_ : begin + size->value;
    at_ = end;
    return Element{static_cast<std::uint32_t>(id->raw), begin, end};
  }

 private:
  Source &source_;
  std::uint64_t at_;
  std::uint64_t end_;
  int &budget_;
};

std::uint64_t number_in(Source &source, const Element &element) {
  const std::uint64_t length = element.end - element.begin;
  if (length == 0 || length > 8) return 0;
  const Bytes bytes = source.at(element.begin, static_cast<std::size_t>(length));
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) value = value << 8 | byte_at(bytes, i);
  return value;
}

double fraction_in(Source &source, const Element &element) {
  const std::uint64_t bits = number_in(source, element);
  if (element.end - element.begin == 8) return std::bit_cast<double>(bits);
  return std::bit_cast<float>(static_cast<std::uint32_t>(bits));
}

void read_info(Source &source, const Element &info, int &budget, Header &header) {
  constexpr std::uint32_t kTimeScale = 0x2ad7b1, kLength = 0x4489, kDate = 0x4461;
  constexpr gint64 kEpoch2001 = 978'307'200;
  std::uint64_t scale = 1'000'000;
  double length = 0;
  ElementWalk walk(source, info.begin, info.end, budget);
  while (const auto element = walk.next()) {
    if (element->id == kTimeScale) scale = number_in(source, *element);
    if (element->id == kLength) length = fraction_in(source, *element);
    if (element->id == kDate && element->end - element->begin == 8) {
      const auto since = static_cast<std::int64_t>(number_in(source, *element));
      header.date_taken = kEpoch2001 + since / 1'000'000'000;
      header.utc_offset_known = 1;
    }
  }
  const double milliseconds = length * static_cast<double>(scale) / 1e6;
  if (milliseconds > 0 && milliseconds < 1e12)
    header.duration_ms = static_cast<gint64>(milliseconds);
}

void read_tracks(Source &source, const Element &tracks, int &budget, Header &header) {
  constexpr std::uint32_t kTrack = 0xae, kPictures = 0xe0, kWidth = 0xb0, kHeight = 0xba;
  ElementWalk walk(source, tracks.begin, tracks.end, budget);
  while (const auto track = walk.next()) {
    if (track->id != kTrack) continue;
    ElementWalk parts(source, track->begin, track->end, budget);
    while (const auto part = parts.next()) {
      if (part->id != kPictures) continue;
      std::uint64_t width = 0, height = 0;
      ElementWalk sizes(source, part->begin, part->end, budget);
      while (const auto size = sizes.next()) {
        if (size->id == kWidth) width = number_in(source, *size);
        if (size->id == kHeight) height = number_in(source, *size);
      }
      constexpr std::uint64_t kMost = 1u << 30;
      return set_size(header, static_cast<std::int64_t>(std::min(width, kMost)),
                      static_cast<std::int64_t>(std::min(height, kMost)));
    }
  }
}

}  // namespace

void read_matroska(Source &source, Header &header) {
  constexpr std::uint32_t kSegment = 0x18538067, kInfo = 0x1549a966, kTracks = 0x1654ae6b;
  constexpr std::uint64_t kEnd = UINT64_MAX;
  int budget = kMostElements;
  ElementWalk top(source, 0, kEnd, budget);
  while (const auto segment = top.next()) {
    if (segment->id != kSegment) continue;
    ElementWalk walk(source, segment->begin, segment->end, budget);
    while (const auto part = walk.next()) {
      if (part->id == kInfo) read_info(source, *part, budget, header);
      if (part->id == kTracks) return read_tracks(source, *part, budget, header);
    }
    return;
  }
}

}  // namespace phone::pictures
