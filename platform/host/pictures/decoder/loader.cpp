#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <string>

#include "pictures/decoder/decode.hpp"

namespace phone::pictures {
namespace {

using LoaderRef = pb::Ref<GdkPixbufLoader>;

/// gdk-pixbuf's name of a format.
const char *loader_name(Format format) {
  switch (format) {
    case Format::kPng:
      return "png";
    case Format::kGif:
      return "gif";
    case Format::kBmp:
      return "bmp";
    case Format::kWebp:
      return "webp";
    case Format::kTiff:
      return "tiff";
    default:
      return nullptr;
  }
}

wire::Status status_of(const GError *error) {
  if (error == nullptr || error->domain != GDK_PIXBUF_ERROR) return wire::Status::kDamaged;
  switch (error->code) {
    case GDK_PIXBUF_ERROR_INSUFFICIENT_MEMORY:
      return wire::Status::kTooLarge;
    case GDK_PIXBUF_ERROR_UNKNOWN_TYPE:
    case GDK_PIXBUF_ERROR_UNSUPPORTED_OPERATION:
      return wire::Status::kUnknown;
    default:
      return wire::Status::kDamaged;
  }
}

/// @return false on a read error, as opposed to a bad picture
bool feed(GdkPixbufLoader *loader, int fd, pb::ErrorPtr &error) {
  static std::array<guchar, 1 << 16> buffer;
  for (off_t offset = 0;;) {
    const ssize_t got = pread(fd, buffer.data(), buffer.size(), offset);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    if (got == 0) return true;
    offset += got;
    if (!gdk_pixbuf_loader_write(loader, buffer.data(), static_cast<gsize>(got), pb::out(error))) {
      return true;
    }
  }
}

gint64 thumbnail_mtime(GdkPixbuf *pixbuf) {
  const gchar *text = gdk_pixbuf_get_option(pixbuf, "tEXt::Thumb::MTime");
  return text == nullptr ? -1 : g_ascii_strtoll(text, nullptr, 10);
}

}  // namespace

Decoded decode_with_loader(int fd, const Header &header) {
  const char *name = loader_name(header.format);
  if (name == nullptr) return {wire::Status::kUnknown, {}};
  pb::ErrorPtr error;
  const auto loader = LoaderRef::adopt(gdk_pixbuf_loader_new_with_type(name, pb::out(error)));
  if (!loader) return {wire::Status::kUnknown, {}};
  const bool read = feed(loader.get(), fd, error);
  pb::ErrorPtr ignored;
  // After an error the loader is closed already, and closing is not an error of its own.
  gdk_pixbuf_loader_close(loader.get(), pb::out(error ? ignored : error));
  if (!read) return {wire::Status::kTransient, {}};

  GdkPixbuf *raw = gdk_pixbuf_loader_get_pixbuf(loader.get());
  if (raw == nullptr) return {status_of(error.get()), {}};
  PixbufRef pixbuf = PixbufRef::share(raw);
  const gint64 mtime = thumbnail_mtime(raw);
  if (header.format == Format::kTiff) {
    // This loader has already turned the picture by part of its orientation.
    pixbuf = PixbufRef::adopt(gdk_pixbuf_apply_embedded_orientation(raw));
    if (pixbuf) pixbuf = turned(pixbuf, opposite(header.orientation));
  }
  if (!pixbuf) return {wire::Status::kTooLarge, {}};
  return {wire::Status::kOk, pixbuf, mtime};
}

void load_decoders() {
  for (const char *name : {"png", "gif", "bmp", "webp", "tiff"}) {
    const auto loader = LoaderRef::adopt(gdk_pixbuf_loader_new_with_type(name, nullptr));
    if (loader) gdk_pixbuf_loader_close(loader.get(), nullptr);
  }
}

}  // namespace phone::pictures
