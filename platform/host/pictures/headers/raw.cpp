#include "pictures/headers/boxes.hpp"
#include "pictures/headers/private.hpp"

namespace phone::pictures {
namespace {

constexpr std::string_view kFujifilm = "FUJIFILMCCD-RAW ";
constexpr std::string_view kCanonBox =
    "\x85\xc0\xb6\x87\x82\x0f\x11\xe0\x81\x11\xf4\xce\x46\x2b\x6a\x48";

/// The second version of Canon's files says so behind the start of a plain TIFF file.
bool is_canon_tiff(Bytes head) {
  return has_text(head, 0, std::string_view("II*\0", 4)) && has_text(head, 8, "CR\x02");
}

/// A list of numbers, the size of the sensor's picture among them, and a whole JPEG with the
/// EXIF data.
void read_fujifilm(Source &source, Header &header) {
  const Bytes places = source.at(84, 12);
  if (places.empty()) return;
  const std::uint32_t jpeg = big32(places, 0);
  std::uint64_t at = big32(places, 8);

  constexpr std::uint32_t kMostEntries = 256;
  constexpr std::uint32_t kFullSize = 0x0100;
  const Bytes count_field = source.at(at, 4);
  const std::uint32_t count = count_field.empty() ? 0 : big32(count_field, 0);
  at += 4;
  for (std::uint32_t i = 0; i < count && i < kMostEntries; ++i) {
    const Bytes entry = source.at(at, 8);
    if (entry.empty()) break;
    if (big16(entry, 0) == kFullSize) {
      set_size(header, big16(entry, 6), big16(entry, 4));
      break;
    }
    at += 4ull + big16(entry, 2);
  }

  Source picture = source.from(jpeg);
  Header inner;
  read_jpeg(picture, inner);
  header.orientation = inner.orientation;
  header.has_orientation = inner.has_orientation;
  header.has_exif = inner.has_exif;
  header.has_gps = inner.has_gps;
  header.date_taken = inner.date_taken;
  header.utc_offset_known = inner.utc_offset_known;
}

/// The contents of the first box of a type between two positions.
std::optional<Box> find_box(Source &source, std::uint64_t begin, std::uint64_t end,
                            std::uint32_t type, int &budget) {
  BoxWalk walk(source, begin, end, budget);
  while (const auto box = walk.next()) {
    if (box->type == type) return box;
  }
  return std::nullopt;
}

/// Canon's third version: TIFF structures in a box of their own among those of a film.
void read_canon_boxes(Source &source, Header &header) {
  int budget = kMostBoxes;
  const auto film = find_box(source, 0, kEndOfFile, box_type("moov"), budget);
  if (!film) return;
  const auto own = find_box(source, film->begin, film->end, box_type("uuid"), budget);
  if (!own || !has_text(source.at(own->begin, kCanonBox.size()), 0, kCanonBox)) return;
  const auto structure =
      find_box(source, own->begin + kCanonBox.size(), own->end, box_type("CMT1"), budget);
  if (structure) read_tiff_at(source, structure->begin, structure->end - structure->begin, header);
}

}  // namespace

bool is_raw_by_start(Bytes head) {
  return is_canon_tiff(head) || has_text(head, 0, kFujifilm) || has_text(head, 0, "IIRO") ||
         has_text(head, 0, "IIRS") || has_text(head, 0, "MMOR") ||
         has_text(head, 0, std::string_view("IIU\0", 4));
}

void read_raw(Source &source, Header &header) {
  const Bytes start = source.at(0, kFujifilm.size());
  if (has_text(start, 0, kFujifilm)) {
    read_fujifilm(source, header);
  } else if (has_text(start, 4, "ftyp")) {
    read_canon_boxes(source, header);
  } else {
    read_tiff(source, header);
  }
  header.format = Format::kRaw;
}

}  // namespace phone::pictures
