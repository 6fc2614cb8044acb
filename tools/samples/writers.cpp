#include "writers.hpp"

#include <webp/encode.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "glib-ptr.hpp"

namespace samples {
namespace {

void put(Bytes &out, const std::string &text) { out.insert(out.end(), text.begin(), text.end()); }

void put_big(Bytes &out, guint64 value, int bytes) {
  for (int shift = (bytes - 1) * 8; shift >= 0; shift -= 8) {
    out.push_back(static_cast<unsigned char>(shift < 64 ? value >> shift : 0));
  }
}

void put_little(Bytes &out, guint64 value, int bytes) {
  for (int i = 0; i < bytes; ++i) out.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

/// An EXIF block with the orientation and, when given, the time the picture was taken.
Bytes exif(int orientation, const std::string &taken) {
  constexpr unsigned kOrientation = 0x0112;
  constexpr unsigned kExifFolder = 0x8769;
  constexpr unsigned kTaken = 0x9003;
  Bytes block;
  put(block, std::string("Exif\0\0", 6));
  put(block, std::string("MM\0*", 4));
  put_big(block, 8, 4);
  const bool dated = taken.size() == 19;
  put_big(block, dated ? 2 : 1, 2);
  put_big(block, kOrientation, 2);
  put_big(block, 3, 2);
  put_big(block, 1, 4);
  put_big(block, static_cast<guint64>(orientation) << 16, 4);
  if (!dated) {
    put_big(block, 0, 4);
    return block;
  }
  const unsigned folder = 8 + 2 + 2 * 12 + 4;
  put_big(block, kExifFolder, 2);
  put_big(block, 4, 2);
  put_big(block, 1, 4);
  put_big(block, folder, 4);
  put_big(block, 0, 4);
  put_big(block, 1, 2);
  put_big(block, kTaken, 2);
  put_big(block, 2, 2);
  put_big(block, 20, 4);
  put_big(block, folder + 2 + 12 + 4, 4);
  put_big(block, 0, 4);
  put(block, taken);
  block.push_back(0);
  return block;
}

/// GIF's variable-width codes, least significant bit first.
class CodeWriter {
 public:
  explicit CodeWriter(Bytes &out) : out_(out) {}
  void write(unsigned code, int width) {
    pending_ |= code << filled_;
    filled_ += width;
    while (filled_ >= 8) flush_byte();
  }
  void finish() {
    while (filled_ > 0) flush_byte();
    flush_block();
    out_.push_back(0);
  }

 private:
  void flush_byte() {
    block_.push_back(static_cast<unsigned char>(pending_ & 0xff));
    pending_ >>= 8;
    filled_ -= 8;
    if (block_.size() == 255) flush_block();
  }
  void flush_block() {
    if (block_.empty()) return;
    out_.push_back(static_cast<unsigned char>(block_.size()));
    out_.insert(out_.end(), block_.begin(), block_.end());
    block_.clear();
  }

  Bytes &out_;
  Bytes block_;
  unsigned pending_ = 0;
  int filled_ = 0;
};

/// Writes the pixels as literal codes; a clear code before the table would grow keeps them 8 bits
/// wide, so nothing is compressed and nothing can go wrong.
void put_literals(Bytes &out, const Bytes &indices) {
  constexpr unsigned kClear = 128;
  constexpr unsigned kEnd = 129;
  constexpr std::size_t kRun = 100;
  out.push_back(7);
  CodeWriter codes(out);
  for (std::size_t i = 0; i < indices.size(); ++i) {
    if (i % kRun == 0) codes.write(kClear, 8);
    codes.write(indices[i], 8);
  }
  codes.write(kEnd, 8);
  codes.finish();
}

constexpr int kCubeRed = 4;
constexpr int kCubeGreen = 8;
constexpr int kCubeBlue = 4;

Bytes cube_indices(GdkPixbuf *frame) {
  const int width = gdk_pixbuf_get_width(frame);
  const int height = gdk_pixbuf_get_height(frame);
  const int channels = gdk_pixbuf_get_n_channels(frame);
  Bytes indices;
  for (int y = 0; y < height; ++y) {
    const guchar *row = gdk_pixbuf_get_pixels(frame) + y * gdk_pixbuf_get_rowstride(frame);
    for (int x = 0; x < width; ++x, row += channels) {
      const int red = row[0] * kCubeRed / 256;
      const int green = row[1] * kCubeGreen / 256;
      const int blue = row[2] * kCubeBlue / 256;
      indices.push_back(static_cast<unsigned char>((red * kCubeGreen + green) * kCubeBlue + blue));
    }
  }
  return indices;
}

/// One box of a QuickTime file: its size, its four letters, its content.
Bytes box(const char *type, const Bytes &content) {
  Bytes out;
  put_big(out, content.size() + 8, 4);
  put(out, std::string(type, 4));
  out.insert(out.end(), content.begin(), content.end());
  return out;
}

Bytes join(std::initializer_list<Bytes> parts) {
  Bytes out;
  for (const Bytes &part : parts) out.insert(out.end(), part.begin(), part.end());
  return out;
}

void put_matrix(Bytes &out) {
  for (const unsigned value : {0x10000u, 0u, 0u, 0u, 0x10000u, 0u, 0u, 0u, 0x40000000u}) {
    put_big(out, value, 4);
  }
}

constexpr int kTimescale = 5;

Bytes movie_header(std::size_t frames) {
  Bytes out;
  put_big(out, 0, 12);
  put_big(out, kTimescale, 4);
  put_big(out, frames, 4);
  put_big(out, 0x10000, 4);
  put_big(out, 0x100, 2);
  put_big(out, 0, 10);
  put_matrix(out);
  put_big(out, 0, 24);
  put_big(out, 2, 4);
  return box("mvhd", out);
}

Bytes track_header(std::size_t frames, int width, int height) {
  Bytes out;
  put_big(out, 7, 4);
  put_big(out, 0, 8);
  put_big(out, 1, 4);
  put_big(out, 0, 4);
  put_big(out, frames, 4);
  put_big(out, 0, 16);
  put_matrix(out);
  put_big(out, static_cast<guint64>(width) << 16, 4);
  put_big(out, static_cast<guint64>(height) << 16, 4);
  return box("tkhd", out);
}

Bytes sample_table(const std::vector<Bytes> &frames, int width, int height, guint64 data_start) {
  Bytes entry;
  put_big(entry, 0, 6);
  put_big(entry, 1, 2);
  put_big(entry, 0, 16);
  put_big(entry, width, 2);
  put_big(entry, height, 2);
  put_big(entry, 0x480000, 4);
  put_big(entry, 0x480000, 4);
  put_big(entry, 0, 4);
  put_big(entry, 1, 2);
  put_big(entry, 0, 32);
  put_big(entry, 24, 2);
  put_big(entry, 0xffff, 2);

  Bytes description;
  put_big(description, 0, 4);
  put_big(description, 1, 4);
  const Bytes jpeg_entry = box("jpeg", entry);
  description.insert(description.end(), jpeg_entry.begin(), jpeg_entry.end());

  Bytes durations;
  put_big(durations, 0, 4);
  put_big(durations, 1, 4);
  put_big(durations, frames.size(), 4);
  put_big(durations, 1, 4);

  Bytes chunks;
  put_big(chunks, 0, 4);
  put_big(chunks, 1, 4);
  put_big(chunks, 1, 4);
  put_big(chunks, frames.size(), 4);
  put_big(chunks, 1, 4);

  Bytes sizes;
  put_big(sizes, 0, 8);
  put_big(sizes, frames.size(), 4);
  for (const Bytes &frame : frames) put_big(sizes, frame.size(), 4);

  Bytes offsets;
  put_big(offsets, 0, 4);
  put_big(offsets, 1, 4);
  put_big(offsets, data_start, 4);
  return box("stbl", join({box("stsd", description), box("stts", durations), box("stsc", chunks),
                           box("stsz", sizes), box("stco", offsets)}));
}

}  // namespace

Bytes jpeg(GdkPixbuf *picture, int orientation, const std::string &taken) {
  gchar *raw = nullptr;
  gsize size = 0;
  pb::ErrorPtr error;
  if (!gdk_pixbuf_save_to_buffer(picture, &raw, &size, "jpeg", pb::out(error), "quality", "88",
                                 nullptr)) {
    std::fprintf(stderr, "%s\n", error->message);
    std::exit(1);
  }
  const pb::StringPtr owner(raw);
  Bytes out(raw, raw + 2);
  if (orientation >= 1) {
    const Bytes block = exif(orientation, taken);
    put_big(out, 0xffe1, 2);
    put_big(out, block.size() + 2, 2);
    out.insert(out.end(), block.begin(), block.end());
  }
  out.insert(out.end(), raw + 2, raw + size);
  return out;
}

Bytes gif(const std::vector<GdkPixbuf *> &frames) {
  const int width = gdk_pixbuf_get_width(frames.front());
  const int height = gdk_pixbuf_get_height(frames.front());
  Bytes out;
  put(out, "GIF89a");
  put_little(out, width, 2);
  put_little(out, height, 2);
  put_little(out, 0xf6, 1);
  put_little(out, 0, 2);
  for (int i = 0; i < kCubeRed * kCubeGreen * kCubeBlue; ++i) {
    out.push_back(static_cast<unsigned char>(i / (kCubeGreen * kCubeBlue) * 255 / (kCubeRed - 1)));
    out.push_back(static_cast<unsigned char>(i / kCubeBlue % kCubeGreen * 255 / (kCubeGreen - 1)));
    out.push_back(static_cast<unsigned char>(i % kCubeBlue * 255 / (kCubeBlue - 1)));
  }
  put(out, std::string("\x21\xff\x0bNETSCAPE2.0\x03\x01\0\0\0", 19));
  for (GdkPixbuf *frame : frames) {
    put(out, std::string("\x21\xf9\x04\x00\x14\x00\x00\x00", 8));
    put(out, ",");
    put_little(out, 0, 4);
    put_little(out, width, 2);
    put_little(out, height, 2);
    put_little(out, 0, 1);
    put_literals(out, cube_indices(frame));
  }
  put(out, ";");
  return out;
}

Bytes webp(GdkPixbuf *picture) {
  std::uint8_t *data = nullptr;
  const bool alpha = gdk_pixbuf_get_has_alpha(picture) != FALSE;
  const std::size_t size = (alpha ? WebPEncodeRGBA : WebPEncodeRGB)(
      gdk_pixbuf_get_pixels(picture), gdk_pixbuf_get_width(picture), gdk_pixbuf_get_height(picture),
      gdk_pixbuf_get_rowstride(picture), 85, &data);
  Bytes out(data, data + size);
  WebPFree(data);
  return out;
}

Bytes film(const std::vector<Bytes> &frames, int width, int height) {
  Bytes type;
  put(type, "qt  ");
  put_big(type, 0, 4);
  put(type, "qt  ");
  const Bytes head = box("ftyp", type);

  Bytes data;
  for (const Bytes &frame : frames) data.insert(data.end(), frame.begin(), frame.end());

  Bytes media_header;
  put_big(media_header, 0, 12);
  put_big(media_header, kTimescale, 4);
  put_big(media_header, frames.size(), 4);
  put_big(media_header, 0, 4);
  Bytes handler;
  put_big(handler, 0, 4);
  put(handler, "mhlrvide");
  put_big(handler, 0, 13);
  Bytes video_header;
  put_big(video_header, 1, 4);
  put_big(video_header, 0, 8);
  Bytes reference;
  put_big(reference, 0, 4);
  put_big(reference, 1, 4);
  Bytes self;
  put_big(self, 1, 4);
  const Bytes own = box("url ", self);
  reference.insert(reference.end(), own.begin(), own.end());

  const Bytes media_info =
      box("minf", join({box("vmhd", video_header), box("dinf", box("dref", reference)),
                        sample_table(frames, width, height, head.size() + 8)}));
  const Bytes media =
      box("mdia", join({box("mdhd", media_header), box("hdlr", handler), media_info}));
  const Bytes track = box("trak", join({track_header(frames.size(), width, height), media}));
  return join({head, box("mdat", data), box("moov", join({movie_header(frames.size()), track}))});
}

void write_file(const std::string &path, const Bytes &bytes) {
  const std::size_t slash = path.rfind('/');
  const std::string hidden = path.substr(0, slash + 1) + "." + path.substr(slash + 1);
  std::ofstream file(hidden, std::ios::binary);
  file.write(reinterpret_cast<const char *>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file || std::rename(hidden.c_str(), path.c_str()) != 0) {
    std::fprintf(stderr, "%s cannot be written.\n", path.c_str());
    std::exit(1);
  }
}

}  // namespace samples
