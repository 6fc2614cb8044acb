#include "counting-renderer.hpp"

namespace {

struct CountingRenderer {
  GtkCellRenderer parent;
  int value;
};
struct CountingRendererClass {
  GtkCellRendererClass parent_class;
};

G_DEFINE_TYPE(CountingRenderer, counting_renderer, GTK_TYPE_CELL_RENDERER)

CountingRenderer *self_of(gpointer object) { return static_cast<CountingRenderer *>(object); }

void set_property(GObject *object, guint, const GValue *value, GParamSpec *) {
  self_of(object)->value = g_value_get_int(value);
}

void get_property(GObject *object, guint, GValue *value, GParamSpec *) {
  g_value_set_int(value, self_of(object)->value);
}

void get_size(GtkCellRenderer *, GtkWidget *, GdkRectangle *, gint *x, gint *y, gint *width,
              gint *height) {
  if (x != nullptr) *x = 0;
  if (y != nullptr) *y = 0;
  if (width != nullptr) *width = 100;
  if (height != nullptr) *height = 100;
}

void render(GtkCellRenderer *cell, GdkDrawable *window, GtkWidget *, GdkRectangle *,
            GdkRectangle *area, GdkRectangle *, GtkCellRendererState) {
  const int value = self_of(cell)->value;
  test::drawn_values().push_back(value);
  const unsigned colour = test::colour_of(value);
  cairo_t *cairo = gdk_cairo_create(window);
  cairo_set_source_rgb(cairo, ((colour >> 16) & 255) / 255.0, ((colour >> 8) & 255) / 255.0,
                       (colour & 255) / 255.0);
  gdk_cairo_rectangle(cairo, area);
  cairo_fill(cairo);
  cairo_destroy(cairo);
}

void counting_renderer_class_init(CountingRendererClass *klass) {
  G_OBJECT_CLASS(klass)->set_property = set_property;
  G_OBJECT_CLASS(klass)->get_property = get_property;
  GTK_CELL_RENDERER_CLASS(klass)->get_size = get_size;
  GTK_CELL_RENDERER_CLASS(klass)->render = render;
  g_object_class_install_property(
      G_OBJECT_CLASS(klass), 1,
      g_param_spec_int("value", "", "", G_MININT, G_MAXINT, 0, G_PARAM_READWRITE));
}

void counting_renderer_init(CountingRenderer *) {}

}  // namespace

namespace test {

std::vector<int> &drawn_values() {
  static std::vector<int> values;
  return values;
}

GtkCellRenderer *new_counting_renderer() {
  return GTK_CELL_RENDERER(g_object_new(counting_renderer_get_type(), nullptr));
}

unsigned colour_of(int value) {
  return (static_cast<unsigned>(value) * 0x9e3779b1U >> 8 & 0xffffff) | 0x010101;
}

}  // namespace test
