#include <gdk/gdk.h>
#include <pango/pango.h>

#include "check.hpp"
#include "glib-ptr.hpp"
#include "pb-util-image.h"
#include "util/pb-util/private.hpp"

namespace {

using LayoutRef = pb::Ref<PangoLayout>;

constexpr const char *kFamily = "Quillon Rg";
constexpr gint kSideMargins = 30;
constexpr gint kPictureWidth = 148;
constexpr gint kCaptionTop = 118;
constexpr double kQuarterTurnLeft = 270;

/// Lends the screen's shared renderer to one drawable and takes it back.
class RendererLoan {
 public:
  RendererLoan(PangoRenderer *renderer, GdkDrawable *drawable)
      : renderer_(GDK_PANGO_RENDERER(renderer)), gc_(pb::Ref<GdkGC>::adopt(gdk_gc_new(drawable))) {
    gdk_pango_renderer_set_drawable(renderer_, drawable);
    gdk_pango_renderer_set_gc(renderer_, gc_.get());
  }
  ~RendererLoan() {
    gdk_pango_renderer_set_override_color(renderer_, PANGO_RENDER_PART_FOREGROUND, nullptr);
    gdk_pango_renderer_set_drawable(renderer_, nullptr);
    gdk_pango_renderer_set_gc(renderer_, nullptr);
  }
  RendererLoan(const RendererLoan &) = delete;
  RendererLoan &operator=(const RendererLoan &) = delete;

  void draw(PangoLayout *layout, const GdkColor *color) {
    gdk_pango_renderer_set_override_color(renderer_, PANGO_RENDER_PART_FOREGROUND, color);
    pango_renderer_draw_layout(PANGO_RENDERER(renderer_), layout, 0, 0);
  }

 private:
  GdkPangoRenderer *renderer_;
  pb::Ref<GdkGC> gc_;
};

LayoutRef make_layout(PangoContext *context, const PbDrawTextInfo &info) {
  auto layout = LayoutRef::adopt(pango_layout_new(context));
  // File names are bytes; what is no text is shown with replacement characters.
  const pb::StringPtr text(g_utf8_make_valid(info.text, -1));
  pango_layout_set_text(layout.get(), text.get(), -1);

  const pb::util::FontPtr font(pango_font_description_new());
  pango_font_description_set_family(font.get(), kFamily);
  pango_font_description_set_size(font.get(), info.font_size * PANGO_SCALE);
  pango_font_description_set_weight(font.get(), static_cast<PangoWeight>(info.weight));
  pango_layout_set_font_description(layout.get(), font.get());
  pango_layout_set_width(layout.get(), info.width * PANGO_SCALE - kSideMargins * PANGO_SCALE);
  pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
  return layout;
}

PangoMatrix place(PangoLayout *layout, const PbDrawTextInfo &info) {
  PangoRectangle ink{};
  PangoRectangle logical{};
  pango_layout_get_pixel_extents(layout, &ink, &logical);

  PangoMatrix matrix = PANGO_MATRIX_INIT;
  if (info.rotate != PB_TEXT_ROTATE_270) {
    pango_matrix_translate(&matrix, info.x + (kPictureWidth - ink.width) / 2, info.y + kCaptionTop);
    return matrix;
  }
  const float x = static_cast<float>(info.x + info.width) -
                  static_cast<float>(info.width) * info.align_x +
                  static_cast<float>(logical.height) * info.align_y;
  // The horizontal factor serves for both directions.
  const float y =
      static_cast<float>(info.y) + static_cast<float>(info.height - ink.width) * info.align_x;
  pango_matrix_translate(&matrix, static_cast<gint>(x), static_cast<gint>(y));
  pango_matrix_rotate(&matrix, kQuarterTurnLeft);
  return matrix;
}

}  // namespace

void pb_draw_text(PbDrawTextInfo *info) {
  PB_CHECK(info);
  if (info->drawable == nullptr || info->text == nullptr) return;
  GdkScreen *screen = gdk_drawable_get_screen(info->drawable);
  RendererLoan loan(gdk_pango_renderer_get_default(screen), info->drawable);
  const auto context = pb::Ref<PangoContext>::adopt(gdk_pango_context_get_for_screen(screen));
  const LayoutRef layout = make_layout(context.get(), *info);
  const PangoMatrix matrix = place(layout.get(), *info);
  pango_context_set_matrix(context.get(), &matrix);
  pango_layout_context_changed(layout.get());
  loan.draw(layout.get(), info->color);
}
