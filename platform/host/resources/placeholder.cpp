#include "resources/placeholder.hpp"

#include <algorithm>
#include <array>

namespace phone::resources {
namespace {

constexpr std::array kCellBitmaps{53, 67, 83, 86};
constexpr int kCellSide = 148;
constexpr int kMarkSide = 32;

constexpr int kBits = 8;
constexpr guint32 kGround = 0xe8e8ecff;
constexpr guint32 kLine = 0xb00020ff;
constexpr int kLineWidth = 2;

/// Fills a rectangle, which has to lie inside.
void fill(GdkPixbuf *box, int x, int y, int width, int height) {
  const auto part = pb::Ref<GdkPixbuf>::adopt(gdk_pixbuf_new_subpixbuf(box, x, y, width, height));
  if (part) gdk_pixbuf_fill(part.get(), kLine);
}

}  // namespace

int placeholder_side(int id) {
  const bool cell = std::find(kCellBitmaps.begin(), kCellBitmaps.end(), id) != kCellBitmaps.end();
  return cell ? kCellSide : kMarkSide;
}

pb::Ref<GdkPixbuf> make_placeholder(int side) {
  auto box = pb::Ref<GdkPixbuf>::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, TRUE, kBits, side, side));
  if (!box) return box;
  gdk_pixbuf_fill(box.get(), kGround);
  const int last = side - kLineWidth;
  fill(box.get(), 0, 0, side, kLineWidth);
  fill(box.get(), 0, last, side, kLineWidth);
  for (int y = 0; y <= last; ++y) {
    for (const int x : {0, last, y, last - y}) fill(box.get(), x, y, kLineWidth, kLineWidth);
  }
  return box;
}

}  // namespace phone::resources
