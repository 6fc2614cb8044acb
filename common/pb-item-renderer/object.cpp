#include <pb-item-renderer.h>

#include <check.hpp>

#include "private.hpp"

namespace {

enum { kPropItem = 1, kPropFollowState = 2 };

struct PbItemRendererPrivate {
  gboolean follow_state;
  gboolean show_check_button;
  gint reserved[2];
};

}  // namespace

G_DEFINE_TYPE_WITH_PRIVATE(PbItemRenderer, pb_item_renderer, GTK_TYPE_CELL_RENDERER)

static PbItemRendererPrivate &private_of(PbItemRenderer *renderer) {
  return *static_cast<PbItemRendererPrivate *>(pb_item_renderer_get_instance_private(renderer));
}

static void pb_item_renderer_set_property(GObject *object, guint id, const GValue *value,
                                          GParamSpec *pspec) {
  PbItemRenderer *renderer = PB_ITEM_RENDERER(object);
  switch (id) {
    case kPropItem: {
      PbItem *previous = renderer->item;
      renderer->item = static_cast<PbItem *>(g_value_dup_object(value));
      g_clear_object(&previous);
      break;
    }
    case kPropFollowState:
      private_of(renderer).follow_state = g_value_get_boolean(value);
      break;
    default:
      G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, pspec);
  }
}

static void pb_item_renderer_get_property(GObject *object, guint id, GValue *value,
                                          GParamSpec *pspec) {
  PbItemRenderer *renderer = PB_ITEM_RENDERER(object);
  switch (id) {
    case kPropItem:
      g_value_set_object(value, renderer->item);
      break;
    case kPropFollowState:
      g_value_set_boolean(value, private_of(renderer).follow_state);
      break;
    default:
      G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, pspec);
  }
}

static void pb_item_renderer_finalize(GObject *object) {
  g_clear_object(&PB_ITEM_RENDERER(object)->item);
  G_OBJECT_CLASS(pb_item_renderer_parent_class)->finalize(object);
}

static void pb_item_renderer_class_init(PbItemRendererClass *klass) {
  GObjectClass *object_class = G_OBJECT_CLASS(klass);
  object_class->set_property = pb_item_renderer_set_property;
  object_class->get_property = pb_item_renderer_get_property;
  object_class->finalize = pb_item_renderer_finalize;

  GtkCellRendererClass *cell_class = GTK_CELL_RENDERER_CLASS(klass);
  cell_class->get_size = pb_item_renderer_get_size;
  cell_class->render = pb_item_renderer_render;

  constexpr auto kReadWrite = static_cast<GParamFlags>(G_PARAM_READWRITE);
  g_object_class_install_property(
      object_class, kPropItem,
      g_param_spec_object("item", "PbItem Object", "The PbItem to render", PB_TYPE_ITEM,
                          kReadWrite));
  g_object_class_install_property(
      object_class, kPropFollowState,
      g_param_spec_boolean("follow-state", "Follow State",
                           "Whether the rendered pixbuf should be colorized according to the state",
                           FALSE, kReadWrite));
}

static void pb_item_renderer_init(PbItemRenderer *) {}

GtkCellRenderer *pb_item_renderer_new(void) {
  return GTK_CELL_RENDERER(g_object_new(PB_TYPE_ITEM_RENDERER, nullptr));
}

void pb_item_renderer_show_check_button(PbItemRenderer *renderer, gboolean show) {
  PB_CHECK(PB_IS_ITEM_RENDERER(renderer));
  private_of(renderer).show_check_button = show;
}
