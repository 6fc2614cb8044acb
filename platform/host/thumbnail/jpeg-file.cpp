#include "thumbnail/jpeg-file.hpp"

#include <stdio.h>
// The order matters: jpeglib.h needs FILE.
#include <jpeglib.h>
#include <setjmp.h>

#include <cstdlib>

#include "pictures/header-reader.hpp"

namespace phone::thumbnail {
namespace {

constexpr int kQuality = 85;

struct ErrorManager {
  jpeg_error_mgr base;
  jmp_buf leave;
};

[[noreturn]] void leave_library(j_common_ptr info) {
  longjmp(reinterpret_cast<ErrorManager *>(info->err)->leave, 1);
}

/// A thumbnail that is merely odd is not one of ours.
void leave_on_warning(j_common_ptr info, int level) {
  if (level < 0) leave_library(info);
}

void keep_silent(j_common_ptr) {}

jpeg_error_mgr *set_up(ErrorManager &errors) {
  jpeg_std_error(&errors.base);
  errors.base.error_exit = leave_library;
  errors.base.emit_message = leave_on_warning;
  errors.base.output_message = keep_silent;
  return &errors.base;
}

struct Encoder {
  jpeg_compress_struct info;
  ErrorManager errors;
  unsigned char *bytes;
  unsigned long size;
};

bool encode(Encoder &encoder, GdkPixbuf *pixbuf) {
  jpeg_compress_struct &info = encoder.info;
  info.err = set_up(encoder.errors);
  if (setjmp(encoder.errors.leave) != 0) return false;
  jpeg_create_compress(&info);
  jpeg_mem_dest(&info, &encoder.bytes, &encoder.size);
  info.image_width = static_cast<JDIMENSION>(gdk_pixbuf_get_width(pixbuf));
  info.image_height = static_cast<JDIMENSION>(gdk_pixbuf_get_height(pixbuf));
  info.input_components = 3;
  info.in_color_space = JCS_RGB;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, kQuality, TRUE);
  jpeg_start_compress(&info, TRUE);
  const int stride = gdk_pixbuf_get_rowstride(pixbuf);
  while (info.next_scanline < info.image_height) {
    JSAMPROW row = gdk_pixbuf_get_pixels(pixbuf) +
                   static_cast<size_t>(info.next_scanline) * static_cast<size_t>(stride);
    jpeg_write_scanlines(&info, &row, 1);
  }
  jpeg_finish_compress(&info);
  return true;
}

struct Decoder {
  jpeg_decompress_struct info;
  ErrorManager errors;
  GdkPixbuf *pixbuf;
};

bool decode(Decoder &decoder, std::span<const std::byte> bytes) {
  jpeg_decompress_struct &info = decoder.info;
  info.err = set_up(decoder.errors);
  if (setjmp(decoder.errors.leave) != 0) return false;
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, reinterpret_cast<const unsigned char *>(bytes.data()), bytes.size());
  jpeg_read_header(&info, TRUE);
  info.out_color_space = JCS_RGB;
  info.dct_method = JDCT_IFAST;
  info.do_fancy_upsampling = FALSE;
  jpeg_start_decompress(&info);
  decoder.pixbuf = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, static_cast<int>(info.output_width),
                                  static_cast<int>(info.output_height));
  if (decoder.pixbuf == nullptr) return false;
  const int stride = gdk_pixbuf_get_rowstride(decoder.pixbuf);
  while (info.output_scanline < info.output_height) {
    JSAMPROW row = gdk_pixbuf_get_pixels(decoder.pixbuf) +
                   static_cast<size_t>(info.output_scanline) * static_cast<size_t>(stride);
    jpeg_read_scanlines(&info, &row, 1);
  }
  jpeg_finish_decompress(&info);
  return true;
}

}  // namespace

std::vector<std::byte> encode_jpeg(GdkPixbuf *pixbuf) {
  Encoder encoder{};
  const bool good = gdk_pixbuf_get_n_channels(pixbuf) == 3 && encode(encoder, pixbuf);
  jpeg_destroy_compress(&encoder.info);
  std::vector<std::byte> bytes;
  if (good) {
    const auto *first = reinterpret_cast<const std::byte *>(encoder.bytes);
    bytes.assign(first, first + encoder.size);
  }
  std::free(encoder.bytes);
  return bytes;
}

pictures::PixbufRef decode_own_jpeg(std::span<const std::byte> bytes, int most_side) {
  const auto header = pictures::read_header(bytes);
  if (!header || header->format != pictures::Format::kJpeg || header->refused ||
      header->width > most_side || header->height > most_side) {
    return {};
  }
  Decoder decoder{};
  const bool good = decode(decoder, bytes);
  jpeg_destroy_decompress(&decoder.info);
  auto pixbuf = pictures::PixbufRef::adopt(decoder.pixbuf);
  return good ? pixbuf : pictures::PixbufRef();
}

}  // namespace phone::thumbnail
