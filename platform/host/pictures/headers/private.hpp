/// The parsers behind read_header(). Each fills what its format tells and leaves the rest; a
/// parser that finds no size leaves it 0, and the entry function refuses that.
#pragma once

#include <cstdint>

#include "pictures/header-reader.hpp"
#include "pictures/headers/source.hpp"

namespace phone::pictures {

void read_jpeg(Source &source, Header &header);
void read_png(Source &source, Header &header);
void read_gif(Source &source, Header &header);
void read_bmp(Source &source, Header &header);
void read_webp(Source &source, Header &header);
/// Many raw formats are TIFF files: these become Format::kRaw.
void read_tiff(Source &source, Header &header);
/// The size that a TIFF structure tells, `length` bytes at `base` of the file, and its EXIF data.
void read_tiff_at(Source &source, std::uint64_t base, std::uint64_t length, Header &header);
/// HEIF and AVIF still pictures.
void read_heif(Source &source, Header &header);
/// Whether a file begins like one of the raw formats that are not plain TIFF files.
bool is_raw_by_start(Bytes head);
void read_raw(Source &source, Header &header);
/// Whether a text begins like an SVG drawing.
bool is_drawing(Bytes head);
/// Reads the natural size of a drawing in pixels.
void read_drawing(Bytes head, Header &header);
/// MP4 and QuickTime. @return false when the file holds tracks but no pictures
bool read_mp4(Source &source, Header &header);

void read_avi(Source &source, Header &header);
/// Matroska and WebM.
void read_matroska(Source &source, Header &header);

/// Reads the TIFF structure that carries EXIF data, `length` bytes at `base` of the file.
/// Previews are taken over only where `with_preview` says so.
void read_exif(Source &source, std::uint64_t base, std::uint64_t length, bool with_preview,
               Header &header);

/// A size as the file tells it, which may be any number.
void set_size(Header &header, std::int64_t width, std::int64_t height);

}  // namespace phone::pictures
