#include <cmath>
#include <utility>

#include "pictures/headers/boxes.hpp"
#include "pictures/headers/private.hpp"

namespace phone::pictures {
namespace {

/// Seconds from the beginning of 1904, where these files count from, to 1970.
constexpr std::int64_t kEpoch1904 = 2'082'844'800;

/// The times of a movie header: two of them, then the time scale and the length.
void read_movie_header(Source &source, const Box &box, Header &header) {
  const Bytes head = source.at(box.begin, 1);
  if (head.empty()) return;
  const bool wide = byte_at(head, 0) == 1;
  const std::size_t size = wide ? 32 : 20;
  const Bytes times = box.end - box.begin < size ? Bytes() : source.at(box.begin, size);
  if (times.empty()) return;
  const std::uint64_t created = wide ? big64(times, 4) : big32(times, 4);
  const std::uint64_t scale = big32(times, wide ? 20 : 12);
  const std::uint64_t length = wide ? big64(times, 24) : big32(times, 16);
  if (created != 0 && created < 1ull << 40) {
    const auto seconds = static_cast<std::int64_t>(created);
    // Some recorders count from 1970 all the same.
    header.date_taken = seconds >= kEpoch1904 ? seconds - kEpoch1904 : seconds;
    header.utc_offset_known = 1;
  }
  const std::uint64_t unknown = wide ? UINT64_MAX : UINT32_MAX;
  if (scale != 0 && length != unknown && length / scale < 1ull << 32) {
    header.duration_ms = static_cast<gint64>(length / scale * 1000 + length % scale * 1000 / scale);
  }
}

struct Track {
  bool pictures = false;
  std::int64_t width = 0;
  std::int64_t height = 0;
};

void read_track_header(Source &source, const Box &box, Track &track) {
  const Bytes head = source.at(box.begin, 1);
  if (head.empty()) return;
  const std::size_t matrix = byte_at(head, 0) == 1 ? 52 : 40;
  const Bytes bytes =
      box.end - box.begin < matrix + 44 ? Bytes() : source.at(box.begin, matrix + 44);
  if (bytes.empty()) return;
  track.width = big32(bytes, matrix + 36) >> 16;
  track.height = big32(bytes, matrix + 40) >> 16;
  // A quarter turn has nothing on the diagonal of its matrix.
  const bool sideways = big32(bytes, matrix) == 0 && big32(bytes, matrix + 16) == 0 &&
                        big32(bytes, matrix + 4) != 0 && big32(bytes, matrix + 12) != 0;
  if (sideways) std::swap(track.width, track.height);
}

bool has_pictures(Source &source, const Box &media, int &budget) {
  BoxWalk walk(source, media.begin, media.end, budget);
  while (const auto box = walk.next()) {
    if (box->type != box_type("hdlr") || box->end - box->begin < 12) continue;
    const Bytes kind = source.at(box->begin + 8, 4);
    return !kind.empty() && big32(kind, 0) == box_type("vide");
  }
  return false;
}

Track read_track(Source &source, const Box &box, int &budget) {
  Track track;
  BoxWalk walk(source, box.begin, box.end, budget);
  while (const auto part = walk.next()) {
    if (part->type == box_type("tkhd")) read_track_header(source, *part, track);
    if (part->type == box_type("mdia")) track.pictures = has_pictures(source, *part, budget);
  }
  return track;
}

bool has_position(Source &source, const Box &user_data, int &budget) {
  BoxWalk walk(source, user_data.begin, user_data.end, budget);
  while (const auto box = walk.next()) {
    if (box->type == box_type("\xa9xyz")) return true;
  }
  return false;
}

bool read_movie(Source &source, const Box &movie, int &budget, Header &header) {
  bool any_track = false;
  Track pictures;
  BoxWalk walk(source, movie.begin, movie.end, budget);
  while (const auto box = walk.next()) {
    if (box->type == box_type("mvhd")) read_movie_header(source, *box, header);
    if (box->type == box_type("udta")) header.has_gps |= has_position(source, *box, budget);
    if (box->type != box_type("trak")) continue;
    any_track = true;
    const Track track = read_track(source, *box, budget);
    if (track.pictures && !pictures.pictures) pictures = track;
  }
  set_size(header, pictures.width, pictures.height);
  return pictures.pictures || !any_track;
}

}  // namespace

bool read_mp4(Source &source, Header &header) {
  int budget = kMostBoxes;
  BoxWalk walk(source, 0, kEndOfFile, budget);
  while (const auto box = walk.next()) {
    if (box->type == box_type("moov")) return read_movie(source, *box, budget, header);
  }
  return true;
}

}  // namespace phone::pictures
