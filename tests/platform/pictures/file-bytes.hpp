/// Bytes of picture and video files for tests: whole small ones, and hostile beginnings.
#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "support/pixbufs.hpp"

namespace test {

/// Text is the handiest container for bytes: TempDir::write() takes it.
using Bytes = std::string;

Bytes big(std::uint64_t value, int bytes);
Bytes little(std::uint64_t value, int bytes);
inline std::span<const std::byte> span_of(const Bytes &bytes) {
  return std::as_bytes(std::span(bytes));
}

/// What an EXIF block is to say; what is empty or 0 is left out.
struct Exif {
  bool big_endian = true;
  int orientation = 0;
  std::string changed;       ///< "2024:05:17 18:30:01"
  std::string taken;         ///< the same
  std::string digitized;     ///< the same
  std::string taken_offset;  ///< "+02:00"
  std::string digitized_offset;
  bool position = false;
  bool empty_gps_directory = false;
  Bytes preview;  ///< a JPEG
};

/// The TIFF structure of an EXIF block.
Bytes exif_block(const Exif &exif);

/// How a JPEG is to be made.
struct JpegKind {
  bool progressive = false;  ///< tells a coarse picture first
  bool grey = false;
  bool inks = false;       ///< four colours
  bool plain_rgb = false;  ///< colours without the usual transformation
  int across = 2;          ///< pixels that share a colour
  int down = 2;
  int restart_interval = 0;
};

/// A JPEG of a picture.
Bytes jpeg_of(const GdkPixbuf *pixbuf, const JpegKind &kind);
inline Bytes jpeg_of(const GdkPixbuf *pixbuf, bool progressive = false) {
  return jpeg_of(pixbuf, JpegKind{.progressive = progressive});
}
/// The same with one more segment behind the beginning: 0xe1 and so on, without its length.
Bytes with_segment(const Bytes &jpeg, int marker, const Bytes &contents);
Bytes with_exif(const Bytes &jpeg, const Exif &exif);
/// The beginning of a JPEG up to a frame of a size, which may be a lie.
Bytes jpeg_start(int frame_marker, int width, int height);

/// Anything gdk-pixbuf writes: "png", "bmp".
Bytes saved_as(const GdkPixbuf *pixbuf, const char *type);
/// A chunk with its length and checksum.
Bytes png_chunk(const char *type, const Bytes &contents);
/// The same PNG with a chunk behind its header.
Bytes with_png_chunk(const Bytes &png, const char *type, const Bytes &contents);
/// A PNG whose header tells a size and whose data ends after some nothing.
Bytes png_start(std::uint32_t width, std::uint32_t height);

Bytes gif_of(GdkPixbuf *pixbuf);
/// A GIF of 43 bytes or so whose screen has a size.
Bytes gif_start(int width, int height);

Bytes webp_of(GdkPixbuf *pixbuf, bool lossless = false);
/// An extended WebP around a simple one, with EXIF data.
Bytes webp_with_exif(GdkPixbuf *pixbuf, const Bytes &block);

/// An uncompressed TIFF.
Bytes tiff_of(const GdkPixbuf *pixbuf, int orientation, bool big_endian = false);

/// A digital negative of a size: a preview in its first directory, the sensor's numbers below.
Bytes dng_of(const Bytes &preview, int preview_width, int preview_height, int width, int height,
             int orientation = 1);

/// "heif" or "avif"; empty when this machine has no encoder for it. The turn that an orientation
/// stands for is noted in the file, for its reader to make.
Bytes heif_of(const GdkPixbuf *pixbuf, const char *kind, int orientation = 1,
              const Bytes &exif = {});

/// A box of an ISO base media file.
Bytes box(const char *type, const Bytes &contents);
/// What a short film is to say of itself.
struct Film {
  std::string brand = "isom";
  std::uint64_t created_1904 = 0;
  std::uint32_t scale = 1000;
  std::uint64_t length = 0;
  bool wide = false;  ///< 64-bit times
  int width = 0;
  int height = 0;
  int turn = 0;  ///< 0, 90, 180 or 270
  bool only_sound = false;
  bool position = false;
  bool index_last = false;  ///< the index stands behind the data
};
/// An MP4 file without any frames in it.
Bytes mp4_of(const Film &film);
/// A film of JPEG frames that video programs can read.
Bytes film_of(GdkPixbuf *frame, int frames);

}  // namespace test
