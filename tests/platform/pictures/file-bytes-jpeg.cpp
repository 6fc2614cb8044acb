#include <stdio.h>
// The order matters: jpeglib.h needs FILE.
#include <jpeglib.h>

#include <cstdlib>

#include "file-bytes.hpp"

namespace test {
namespace {

/// One directory of a TIFF structure, whose long values stand behind it.
class Directory {
 public:
  Directory(bool big_endian, std::uint32_t place) : big_endian_(big_endian), place_(place) {}

  void add(unsigned tag, unsigned type, std::uint64_t count, std::uint64_t value) {
    const Bytes field = type == 3 ? number(value, 2) + Bytes(2, '\0') : number(value, 4);
    entries_.push_back(number(tag, 2) + number(type, 2) + number(count, 4) + field);
  }
  void add_text(unsigned tag, const std::string &text) {
    if (text.empty()) return;
    add_long(tag, 2, text.size() + 1, text + '\0');
  }
  void add_long(unsigned tag, unsigned type, std::uint64_t count, const Bytes &value) {
    long_values_.push_back({entries_.size(), value});
    entries_.push_back(number(tag, 2) + number(type, 2) + number(count, 4));
  }

  [[nodiscard]] bool empty() const { return entries_.empty(); }
  [[nodiscard]] std::uint32_t size() const {
    size_t size = 2 + 12 * entries_.size() + 4;
    for (const auto &[entry, value] : long_values_) size += value.size();
    return static_cast<std::uint32_t>(size);
  }
  [[nodiscard]] std::uint32_t end() const { return place_ + size(); }

  [[nodiscard]] Bytes bytes(std::uint32_t next) const {
    std::vector<Bytes> entries = entries_;
    Bytes values;
    for (const auto &[entry, value] : long_values_) {
      entries[entry] += number(place_ + 2 + 12 * entries_.size() + 4 + values.size(), 4);
      values += value;
    }
    Bytes out = number(entries.size(), 2);
    for (const Bytes &entry : entries) out += entry;
    return out + number(next, 4) + values;
  }

 private:
  struct LongValue {
    size_t entry;
    Bytes value;
  };

  [[nodiscard]] Bytes number(std::uint64_t value, int bytes) const {
    return big_endian_ ? big(value, bytes) : little(value, bytes);
  }

  bool big_endian_;
  std::uint32_t place_;
  std::vector<Bytes> entries_;
  std::vector<LongValue> long_values_;
};

Directory exif_directory(const Exif &exif, std::uint32_t place) {
  Directory directory(exif.big_endian, place);
  directory.add_text(0x9003, exif.taken);
  directory.add_text(0x9004, exif.digitized);
  directory.add_text(0x9011, exif.taken_offset);
  directory.add_text(0x9012, exif.digitized_offset);
  return directory;
}

Directory gps_directory(const Exif &exif, std::uint32_t place) {
  Directory directory(exif.big_endian, place);
  if (exif.position) {
    directory.add_long(2, 5, 3, Bytes(24, '\1'));
    directory.add_long(4, 5, 3, Bytes(24, '\1'));
  } else if (exif.empty_gps_directory) {
    directory.add(0, 1, 4, 0x02020000);
  }
  return directory;
}

Directory main_directory(const Exif &exif, std::uint32_t place, std::uint32_t exif_place,
                         std::uint32_t gps_place) {
  Directory directory(exif.big_endian, place);
  if (exif.orientation != 0) {
    directory.add(0x0112, 3, 1, static_cast<unsigned>(exif.orientation));
  }
  directory.add_text(0x0132, exif.changed);
  directory.add(0x8769, 4, 1, exif_place);
  if (exif.position || exif.empty_gps_directory) directory.add(0x8825, 4, 1, gps_place);
  return directory;
}

}  // namespace

Bytes exif_block(const Exif &exif) {
  constexpr std::uint32_t kFirst = 8;
  const std::uint32_t exif_place = main_directory(exif, kFirst, 0, 0).end();
  const Directory details = exif_directory(exif, exif_place);
  const Directory gps = gps_directory(exif, details.end());
  const Directory main = main_directory(exif, kFirst, exif_place, details.end());
  Directory second(exif.big_endian, gps.empty() ? details.end() : gps.end());
  if (!exif.preview.empty()) {
    second.add(0x0201, 4, 1, 0);
    second.add(0x0202, 4, 1, exif.preview.size());
    const std::uint32_t place = second.end();
    second = Directory(exif.big_endian, gps.empty() ? details.end() : gps.end());
    second.add(0x0201, 4, 1, place);
    second.add(0x0202, 4, 1, exif.preview.size());
  }
  const std::uint32_t next = exif.preview.empty() ? 0 : (gps.empty() ? details.end() : gps.end());
  Bytes out =
      exif.big_endian ? Bytes("MM\0*", 4) + big(kFirst, 4) : Bytes("II*\0", 4) + little(kFirst, 4);
  out += main.bytes(next) + details.bytes(0);
  if (!gps.empty()) out += gps.bytes(0);
  if (!exif.preview.empty()) out += second.bytes(0) + exif.preview;
  return out;
}

namespace {

/// A row as the encoder wants it for inks: what each colour takes away, and no black.
std::vector<JSAMPLE> row_of_inks(const guchar *rgb, int width) {
  std::vector<JSAMPLE> row;
  for (int x = 0; x < width; ++x, rgb += 3) {
    // Inverted, as the files in use are.
    row.insert(row.end(), {rgb[0], rgb[1], rgb[2], 255});
  }
  return row;
}

void set_up(jpeg_compress_struct &info, const JpegKind &kind) {
  info.input_components = kind.inks ? 4 : 3;
  info.in_color_space = kind.inks ? JCS_CMYK : JCS_RGB;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, 95, TRUE);
  if (kind.grey) jpeg_set_colorspace(&info, JCS_GRAYSCALE);
  if (kind.plain_rgb) jpeg_set_colorspace(&info, JCS_RGB);
  if (!kind.inks && !kind.plain_rgb) {
    info.comp_info[0].h_samp_factor = kind.across;
    info.comp_info[0].v_samp_factor = kind.down;
  }
  info.restart_interval = static_cast<unsigned>(kind.restart_interval);
  if (kind.progressive) jpeg_simple_progression(&info);
}

}  // namespace

Bytes jpeg_of(const GdkPixbuf *pixbuf, const JpegKind &kind) {
  jpeg_compress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char *bytes = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&info, &bytes, &size);
  const int width = gdk_pixbuf_get_width(pixbuf);
  info.image_width = static_cast<JDIMENSION>(width);
  info.image_height = static_cast<JDIMENSION>(gdk_pixbuf_get_height(pixbuf));
  set_up(info, kind);
  jpeg_start_compress(&info, TRUE);
  while (info.next_scanline < info.image_height) {
    const guchar *pixels =
        gdk_pixbuf_read_pixels(pixbuf) + static_cast<size_t>(info.next_scanline) *
                                             static_cast<size_t>(gdk_pixbuf_get_rowstride(pixbuf));
    std::vector<JSAMPLE> inks;
    if (kind.inks) inks = row_of_inks(pixels, width);
    JSAMPROW row = kind.inks ? inks.data() : const_cast<guchar *>(pixels);
    jpeg_write_scanlines(&info, &row, 1);
  }
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
  Bytes out(reinterpret_cast<char *>(bytes), size);
  std::free(bytes);
  return out;
}

Bytes with_segment(const Bytes &jpeg, int marker, const Bytes &contents) {
  return jpeg.substr(0, 2) + "\xff" + static_cast<char>(marker) + big(contents.size() + 2, 2) +
         contents + jpeg.substr(2);
}

Bytes with_exif(const Bytes &jpeg, const Exif &exif) {
  return with_segment(jpeg, 0xe1, Bytes("Exif\0\0", 6) + exif_block(exif));
}

Bytes jpeg_start(int frame_marker, int width, int height) {
  const Bytes frame = Bytes("\x08") + big(static_cast<unsigned>(height), 2) +
                      big(static_cast<unsigned>(width), 2) + Bytes("\x01\x01\x11\0", 4);
  return Bytes("\xff\xd8\xff") + static_cast<char>(frame_marker) + big(frame.size() + 2, 2) + frame;
}

}  // namespace test
