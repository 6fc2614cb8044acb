#include "pictures/header-reader.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>

#include "pictures/headers/boxes.hpp"
#include "pictures/headers/private.hpp"

namespace phone::pictures {
namespace {

constexpr std::size_t kFirstRead = 4096;

/// Kinds of ISO base media files by the brands in their first box. A file with a brand of still
/// pictures among the compatible ones is one, whatever its main brand says.
Format format_by_brands(Bytes head) {
  const std::uint64_t size = std::min<std::uint64_t>(big32(head, 0), head.size());
  bool heif = false;
  bool avif = false;
  for (std::size_t at = 8; at + 4 <= size; at += 4) {
    if (at == 12) continue;  // the version of the main brand
    switch (big32(head, at)) {
      case box_type("avif"):
      case box_type("avis"):
        avif = true;
        break;
      case box_type("heic"):
      case box_type("heix"):
      case box_type("heim"):
      case box_type("heis"):
      case box_type("hevc"):
      case box_type("hevx"):
      case box_type("mif1"):
      case box_type("msf1"):
        heif = true;
        break;
      default:
        break;
    }
  }
  if (avif) return Format::kAvif;
  if (heif) return Format::kHeif;
  if (head.size() < 12) return Format::kUnknown;
  switch (big32(head, 8)) {
    case box_type("M4A "):
    case box_type("M4B "):
      return Format::kUnknown;
    case box_type("crx "):
      return Format::kRaw;
    default:
      return Format::kVideo;
  }
}

bool is_old_quicktime(Bytes head) {
  if (head.size() < 8) return false;
  switch (big32(head, 4)) {
    case box_type("moov"):
    case box_type("mdat"):
    case box_type("wide"):
    case box_type("pnot"):
      return true;
    default:
      return false;
  }
}

/// Two letters alone would be too many text files: the length of the second header must be one
/// of those in use.
bool is_bmp(Bytes head) {
  if (!has_text(head, 0, "BM") || head.size() < 18) return false;
  const std::uint32_t length = little32(head, 14);
  return length == 12 || (length >= 16 && length <= 124 && length % 4 == 0);
}

bool is_avi(Bytes head) { return has_text(head, 0, "RIFF") && has_text(head, 8, "AVI "); }
bool is_matroska(Bytes head) { return has_text(head, 0, "\x1a\x45\xdf\xa3"); }

Format format_of(Bytes head) {
  if (has_text(head, 0, "\xff\xd8\xff")) return Format::kJpeg;
  if (has_text(head, 0, "\x89PNG\r\n\x1a\n")) return Format::kPng;
  if (has_text(head, 0, "GIF87a") || has_text(head, 0, "GIF89a")) return Format::kGif;
  if (has_text(head, 0, "RIFF") && has_text(head, 8, "WEBP")) return Format::kWebp;
  if (is_raw_by_start(head)) return Format::kRaw;
  if (has_text(head, 0, std::string_view("II*\0", 4)) ||
      has_text(head, 0, std::string_view("MM\0*", 4))) {
    return Format::kTiff;
  }
  if (is_bmp(head)) return Format::kBmp;
  if (is_drawing(head)) return Format::kDrawing;
  if (has_text(head, 4, "ftyp")) return format_by_brands(head);
  const bool video = is_avi(head) || is_matroska(head) || is_old_quicktime(head);
  return video ? Format::kVideo : Format::kUnknown;
}

/// @return false when what looked like a video holds no pictures
bool read_video(Source &source, Header &header) {
  const Bytes head = source.at(0, 12);
  if (is_avi(head)) {
    read_avi(source, header);
  } else if (is_matroska(head)) {
    read_matroska(source, header);
  } else {
    return read_mp4(source, header);
  }
  return true;
}

/// @return false when what looked like a video holds no pictures
bool read_format(Source &source, Header &header) {
  switch (header.format) {
    case Format::kJpeg:
      read_jpeg(source, header);
      return true;
    case Format::kPng:
      read_png(source, header);
      return true;
    case Format::kGif:
      read_gif(source, header);
      return true;
    case Format::kBmp:
      read_bmp(source, header);
      return true;
    case Format::kWebp:
      read_webp(source, header);
      return true;
    case Format::kTiff:
      read_tiff(source, header);
      return true;
    case Format::kHeif:
    case Format::kAvif:
      read_heif(source, header);
      return true;
    case Format::kRaw:
      read_raw(source, header);
      return true;
    case Format::kDrawing:
      read_drawing(source.head(), header);
      return true;
    case Format::kVideo:
      return read_video(source, header);
    case Format::kUnknown:
      break;
  }
  return false;
}

std::optional<Header> read_from(Bytes head, int fd) {
  Header header;
  header.format = format_of(head);
  if (header.format == Format::kUnknown) return std::nullopt;
  Source source(head, fd);
  if (!read_format(source, header)) return std::nullopt;
  const bool sized = header.width != 0 && header.height != 0;
  if (!sized && header.format != Format::kVideo) header.refused = true;
  return header;
}

}  // namespace

void set_size(Header &header, std::int64_t width, std::int64_t height) {
  constexpr std::int64_t kMost = std::numeric_limits<int>::max();
  header.width = static_cast<int>(std::clamp<std::int64_t>(width, 0, kMost));
  header.height = static_cast<int>(std::clamp<std::int64_t>(height, 0, kMost));
  if (header.width > kMaxSide || header.height > kMaxSide ||
      static_cast<std::int64_t>(header.width) * header.height > kMaxPixels) {
    header.refused = true;
  }
}

std::optional<Header> read_header(std::span<const std::byte> head) { return read_from(head, -1); }

std::optional<Header> read_header_of_file(int fd) {
  std::array<std::byte, kFirstRead> first;
  ssize_t got;
  do {
    got = pread(fd, first.data(), first.size(), 0);
  } while (got < 0 && errno == EINTR);
  if (got <= 0) return std::nullopt;
  return read_from(Bytes(first).first(static_cast<std::size_t>(got)), fd);
}

int open_regular_file(const char *path) {
  struct stat info;
  // Merely opening a device may do something.
  if (lstat(path, &info) != 0) return -1;
  if (S_ISLNK(info.st_mode)) {
    errno = ELOOP;
    return -1;
  }
  if (!S_ISREG(info.st_mode)) {
    errno = EINVAL;
    return -1;
  }
  const int fd = open(path, O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) return -1;
  // It may have been replaced in between.
  if (fstat(fd, &info) == 0 && S_ISREG(info.st_mode)) return fd;
  close(fd);
  errno = EINVAL;
  return -1;
}

}  // namespace phone::pictures
