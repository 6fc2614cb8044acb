#include <string_view>

#include "pictures/decoder/decode.hpp"
#include "pictures/decoder/whole-file.hpp"

namespace phone::pictures {
namespace {

using LoaderRef = pb::Ref<GdkPixbufLoader>;

constexpr size_t kLargestDrawing = 32u << 20;

LoaderRef new_loader() { return LoaderRef::adopt(gdk_pixbuf_loader_new_with_type("svg", nullptr)); }

/// Whatever size the drawing has of its own, it is painted at the one that is set.
PixbufRef paint(std::span<const std::byte> data, Size size) {
  const LoaderRef loader = new_loader();
  if (!loader) return {};
  gdk_pixbuf_loader_set_size(loader.get(), size.width, size.height);
  const bool taken = gdk_pixbuf_loader_write(
      loader.get(), reinterpret_cast<const guchar *>(data.data()), data.size(), nullptr);
  const bool closed = gdk_pixbuf_loader_close(loader.get(), nullptr);
  GdkPixbuf *pixbuf = gdk_pixbuf_loader_get_pixbuf(loader.get());
  return taken && closed && pixbuf != nullptr ? PixbufRef::share(pixbuf) : PixbufRef();
}

}  // namespace

Decoded decode_drawing(int fd, Size wanted) {
  const std::vector<std::byte> data = read_whole_file(fd);
  if (data.empty()) return {wire::Status::kDamaged, {}};
  if (data.size() > kLargestDrawing) return {wire::Status::kTooLarge, {}};
  if (!new_loader()) return {wire::Status::kUnknown, {}};
  PixbufRef pixbuf = paint(data, wanted);
  return {pixbuf ? wire::Status::kOk : wire::Status::kDamaged, pixbuf};
}

void load_drawing_decoder() {
  constexpr std::string_view kText =
      "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>"
      "<text y='9' font-family='sans-serif'>a</text><text y='9' font-family='serif'>a</text>"
      "<text y='9' font-family='monospace'>a</text></svg>";
  paint(std::as_bytes(std::span(kText)), {9, 9});
}

}  // namespace phone::pictures
