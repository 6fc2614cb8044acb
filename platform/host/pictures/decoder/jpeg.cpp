#include <stdio.h>
// The order matters: jpeglib.h needs FILE.
#include <jerror.h>
#include <jpeglib.h>
#include <setjmp.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "pictures/decoder/decode.hpp"

namespace phone::pictures {
namespace {

struct ErrorManager {
  jpeg_error_mgr base;
  jmp_buf leave;
};

[[noreturn]] void leave_decoder(j_common_ptr info) {
  longjmp(reinterpret_cast<ErrorManager *>(info->err)->leave, 1);
}

void keep_silent(j_common_ptr) {}

/// Feeds the decoder from a descriptor, by position.
struct FileSource {
  jpeg_source_mgr base;
  int fd;
  off_t offset;
  std::array<JOCTET, 1 << 16> buffer;
};

boolean fill_from_file(j_decompress_ptr info) {
  auto *source = reinterpret_cast<FileSource *>(info->src);
  ssize_t got;
  do {
    got = pread(source->fd, source->buffer.data(), source->buffer.size(), source->offset);
  } while (got < 0 && errno == EINTR);
  if (got <= 0) {
    // A truncated picture shows what there is of it.
    if (source->offset == 0) ERREXIT(info, JERR_INPUT_EMPTY);
    WARNMS(info, JWRN_JPEG_EOF);
    source->buffer[0] = 0xff;
    source->buffer[1] = JPEG_EOI;
    got = 2;
  } else {
    source->offset += got;
  }
  source->base.next_input_byte = source->buffer.data();
  source->base.bytes_in_buffer = static_cast<size_t>(got);
  return TRUE;
}

void skip_in_file(j_decompress_ptr info, long count) {
  auto *source = reinterpret_cast<FileSource *>(info->src);
  if (count <= 0) return;
  const auto skip = static_cast<size_t>(count);
  if (skip <= source->base.bytes_in_buffer) {
    source->base.next_input_byte += skip;
    source->base.bytes_in_buffer -= skip;
    return;
  }
  source->offset += static_cast<off_t>(skip - source->base.bytes_in_buffer);
  source->base.bytes_in_buffer = 0;
}

void nothing_to_do(j_decompress_ptr) {}

/// Everything of one decode that has to survive the jump out of the decoder.
struct Decoder {
  jpeg_decompress_struct info;
  ErrorManager errors;
  FileSource file;
  GdkPixbuf *pixbuf;
  JSAMPLE *row;
};

void start(Decoder &decoder) {
  decoder.info.err = jpeg_std_error(&decoder.errors.base);
  decoder.errors.base.error_exit = leave_decoder;
  decoder.errors.base.output_message = keep_silent;
}

void read_from_file(Decoder &decoder, int fd) {
  jpeg_source_mgr &source = decoder.file.base;
  source.init_source = nothing_to_do;
  source.fill_input_buffer = fill_from_file;
  source.skip_input_data = skip_in_file;
  source.resync_to_restart = jpeg_resync_to_restart;
  source.term_source = nothing_to_do;
  source.bytes_in_buffer = 0;
  decoder.file.fd = fd;
  decoder.file.offset = 0;
  decoder.info.src = &source;
}

/// Chooses among the scales that the decoder has fast code for.
void choose_scale(jpeg_decompress_struct &info, Size wanted) {
  info.scale_denom = 8;
  for (unsigned scale : {1u, 2u, 4u, 8u}) {
    info.scale_num = scale;
    jpeg_calc_output_dimensions(&info);
    if (static_cast<int>(info.output_width) >= wanted.width &&
        static_cast<int>(info.output_height) >= wanted.height) {
      return;
    }
  }
}

/// Four inks to RGB. Files by one vendor's programs, which is nearly all of them, hold the inks
/// inverted.
void inks_to_rgb(const JSAMPLE *from, guchar *to, unsigned width, bool inverted) {
  for (unsigned x = 0; x < width; ++x, from += 4, to += 3) {
    const int black = inverted ? from[3] : 255 - from[3];
    for (int channel = 0; channel < 3; ++channel) {
      const int light = inverted ? from[channel] : 255 - from[channel];
      to[channel] = static_cast<guchar>(light * black / 255);
    }
  }
}

void read_rows(Decoder &decoder) {
  jpeg_decompress_struct &info = decoder.info;
  const bool inks = info.out_color_space == JCS_CMYK;
  while (info.output_scanline < info.output_height) {
    guchar *to = gdk_pixbuf_get_pixels(decoder.pixbuf) +
                 static_cast<size_t>(info.output_scanline) *
                     static_cast<size_t>(gdk_pixbuf_get_rowstride(decoder.pixbuf));
    JSAMPROW row = inks ? decoder.row : to;
    if (jpeg_read_scanlines(&info, &row, 1) != 1) return;
    if (inks) inks_to_rgb(decoder.row, to, info.output_width, info.saw_Adobe_marker != 0);
  }
}

/// A progressive file tells its coarse picture first; where one pixel a block is enough, the
/// rest need not be read. The last bit of the coarse values comes late and does not show.
void read_coarse_scans(jpeg_decompress_struct &info) {
  constexpr int kBitsThatDoNotShow = 1;
  const auto coarse_known = [&info] {
    for (int i = 0; i < info.num_components; ++i) {
      const int missing = info.coef_bits[i][0];
      if (missing < 0 || missing > kBitsThatDoNotShow) return false;
    }
    return true;
  };
  for (;;) {
    const int state = jpeg_consume_input(&info);
    if (state == JPEG_SUSPENDED || state == JPEG_REACHED_EOI) return;
    if (state == JPEG_SCAN_COMPLETED && coarse_known()) return;
  }
}

bool decode_into(Decoder &decoder, Size wanted) {
  jpeg_decompress_struct &info = decoder.info;
  if (jpeg_read_header(&info, TRUE) != JPEG_HEADER_OK) return false;
  choose_scale(info, wanted);
  const bool inks = info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
  info.out_color_space = inks ? JCS_CMYK : JCS_RGB;
  const bool coarse = info.scale_num == 1;
  if (coarse) {
    info.do_fancy_upsampling = FALSE;
    info.dct_method = JDCT_IFAST;
  }
  const bool by_scans = coarse && info.progressive_mode != 0;
  info.buffered_image = by_scans ? TRUE : FALSE;
  if (jpeg_start_decompress(&info) == 0) return false;
  if (by_scans) {
    info.do_block_smoothing = FALSE;
    read_coarse_scans(info);
    if (jpeg_start_output(&info, info.input_scan_number) == 0) return false;
  }
  decoder.pixbuf = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, static_cast<int>(info.output_width),
                                  static_cast<int>(info.output_height));
  if (decoder.pixbuf == nullptr) return false;
  if (inks) {
    decoder.row = static_cast<JSAMPLE *>(std::malloc(4ul * info.output_width));
    if (decoder.row == nullptr) return false;
  }
  read_rows(decoder);
  return true;
}

/// Covers the rows that were never decoded.
void grey_out(GdkPixbuf *pixbuf, unsigned first_row) {
  const auto stride = static_cast<size_t>(gdk_pixbuf_get_rowstride(pixbuf));
  const auto height = static_cast<unsigned>(gdk_pixbuf_get_height(pixbuf));
  const auto line = static_cast<size_t>(gdk_pixbuf_get_width(pixbuf)) * 3;
  for (unsigned row = first_row; row < height; ++row) {
    std::memset(gdk_pixbuf_get_pixels(pixbuf) + row * stride, 0x80, line);
  }
}

/// The only frame that the decoder's errors jump to: nothing in it has a destructor.
bool run(Decoder &decoder, Size wanted, int fd, const std::byte *data, size_t length) {
  start(decoder);
  if (setjmp(decoder.errors.leave) != 0) {
    // What was decoded before a damaged place is still worth showing.
    if (decoder.pixbuf == nullptr || decoder.info.output_scanline == 0) return false;
    grey_out(decoder.pixbuf, decoder.info.output_scanline);
    return true;
  }
  jpeg_create_decompress(&decoder.info);
  if (data != nullptr) {
    jpeg_mem_src(&decoder.info, reinterpret_cast<const unsigned char *>(data), length);
  } else {
    read_from_file(decoder, fd);
  }
  return decode_into(decoder, wanted);
}

PixbufRef decode_from(int fd, const std::byte *data, size_t length, Size wanted) {
  const auto decoder = std::make_unique<Decoder>();
  const bool good = run(*decoder, wanted, fd, data, length);
  jpeg_destroy_decompress(&decoder->info);
  std::free(decoder->row);
  PixbufRef pixbuf = PixbufRef::adopt(decoder->pixbuf);
  return good ? pixbuf : PixbufRef();
}

}  // namespace

PixbufRef decode_jpeg(int fd, Size wanted) { return decode_from(fd, nullptr, 0, wanted); }

PixbufRef decode_jpeg(std::span<const std::byte> data, Size wanted) {
  return decode_from(-1, data.data(), data.size(), wanted);
}

}  // namespace phone::pictures
