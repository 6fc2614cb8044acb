#include <libraw/libraw.h>

#include <cstring>
#include <memory>

#include "pictures/decoder/decode.hpp"
#include "pictures/decoder/whole-file.hpp"

namespace phone::pictures {
namespace {

using RawPtr = std::unique_ptr<libraw_data_t, pb::FreeWith<libraw_close>>;

wire::Status status_of(int error) {
  switch (error) {
    case LIBRAW_UNSUFFICIENT_MEMORY:
      return wire::Status::kTooLarge;
    case LIBRAW_FILE_UNSUPPORTED:
    case LIBRAW_NO_THUMBNAIL:
    case LIBRAW_UNSUPPORTED_THUMBNAIL:
    case LIBRAW_REQUEST_FOR_NONEXISTENT_IMAGE:
      return wire::Status::kUnknown;
    default:
      return wire::Status::kDamaged;
  }
}

PixbufRef from_pixels(const libraw_thumbnail_t &picture) {
  const size_t line = static_cast<size_t>(picture.twidth) * 3;
  if (line == 0 || picture.tlength < line * picture.theight) return {};
  PixbufRef pixbuf = PixbufRef::adopt(
      gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, picture.twidth, picture.theight));
  if (!pixbuf) return {};
  for (int y = 0; y < picture.theight; ++y) {
    std::memcpy(gdk_pixbuf_get_pixels(pixbuf.get()) +
                    static_cast<ptrdiff_t>(y) * gdk_pixbuf_get_rowstride(pixbuf.get()),
                picture.thumb + static_cast<size_t>(y) * line, line);
  }
  return pixbuf;
}

/// The picture may be a little smaller than the sensor and of other proportions, so the size
/// that is wanted of it is only nearly right; nothing is lost by that, since it is scaled again.
Decoded from_jpeg(const libraw_thumbnail_t &picture, bool orientation_known, Size wanted) {
  const std::span data(reinterpret_cast<const std::byte *>(picture.thumb), picture.tlength);
  const auto inner = read_header(data);
  if (!inner || inner->format != Format::kJpeg || inner->refused) {
    return {wire::Status::kDamaged, {}};
  }
  Decoded result{wire::Status::kDamaged, decode_jpeg(data, wanted)};
  if (result.pixbuf) result.status = wire::Status::kOk;
  if (!orientation_known && inner->has_orientation) result.orientation = inner->orientation;
  return result;
}

}  // namespace

Decoded decode_raw(int fd, const Header &header, Size wanted) {
  std::vector<std::byte> data = read_whole_file(fd);
  const RawPtr raw(libraw_init(0));
  if (!raw) return {wire::Status::kTooLarge, {}};
  int error = libraw_open_buffer(raw.get(), data.data(), data.size());
  if (error == LIBRAW_SUCCESS) error = libraw_unpack_thumb(raw.get());
  if (error != LIBRAW_SUCCESS) return {status_of(error), {}};
  const libraw_thumbnail_t &picture = raw->thumbnail;
  if (picture.tformat == LIBRAW_THUMBNAIL_JPEG) {
    return from_jpeg(picture, header.has_orientation, wanted);
  }
  if (picture.tformat != LIBRAW_THUMBNAIL_BITMAP) return {wire::Status::kUnknown, {}};
  PixbufRef pixbuf = from_pixels(picture);
  return {pixbuf ? wire::Status::kOk : wire::Status::kDamaged, pixbuf};
}

}  // namespace phone::pictures
