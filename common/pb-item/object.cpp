#include <pb-item.h>

#include <pb-debug.h>
#include <check.hpp>

namespace {

constexpr guint32 kPalmLoaded = 1U << 0;
constexpr guint32 kDeleted = 1U << 2;
/// The marks that belong to the file an item shows, and go when it shows another one.
constexpr guint32 kFileMarks = 0xF;

enum { kPropPalmLoaded = 1 };

struct PbItemPrivate {
  guint32 flags;
};

}  // namespace

G_DEFINE_TYPE_WITH_PRIVATE(PbItem, pb_item, G_TYPE_OBJECT)

static guint32 &flags_of(PbItem *item) {
  return static_cast<PbItemPrivate *>(pb_item_get_instance_private(item))->flags;
}

static void set_flag(PbItem *item, guint32 flag, bool on) {
  guint32 &flags = flags_of(item);
  flags = on ? flags | flag : flags & ~flag;
}

static void pb_item_set_property(GObject *object, guint id, const GValue *value,
                                 GParamSpec *pspec) {
  PbItem *item = PB_ITEM(object);
  switch (id) {
    case kPropPalmLoaded:
      set_flag(item, kPalmLoaded, g_value_get_boolean(value) != FALSE);
      PB_LOG(PB_LOG_INFO, "palm-loaded[%d]:%d\n", item->id, g_value_get_boolean(value));
      break;
    default:
      G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, pspec);
  }
}

static void pb_item_get_property(GObject *object, guint id, GValue *value, GParamSpec *pspec) {
  switch (id) {
    case kPropPalmLoaded:
      g_value_set_boolean(value, pb_item_is_palm_pixbuf_ready(PB_ITEM(object)));
      break;
    default:
      G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, pspec);
  }
}

static void pb_item_finalize(GObject *object) {
  PbItem *item = PB_ITEM(object);
  g_clear_pointer(&item->filename, g_free);
  g_clear_pointer(&item->thumb_path, g_free);
  g_clear_pointer(&item->extension, g_free);
  g_clear_pointer(&item->aux_text, g_free);
  g_clear_pointer(&item->name, g_free);
  G_OBJECT_CLASS(pb_item_parent_class)->finalize(object);
}

static void pb_item_class_init(PbItemClass *klass) {
  GObjectClass *object_class = G_OBJECT_CLASS(klass);
  object_class->set_property = pb_item_set_property;
  object_class->get_property = pb_item_get_property;
  object_class->finalize = pb_item_finalize;
  g_object_class_install_property(
      object_class, kPropPalmLoaded,
      g_param_spec_boolean("palm-loaded", "Palm Loaded",
                           "Whether the animated preview of the item is loaded", FALSE,
                           static_cast<GParamFlags>(G_PARAM_READWRITE)));
}

// GObject hands out zeroed memory, which is what every field starts with.
static void pb_item_init(PbItem *) {}

PbItem *pb_item_new(void) { return PB_ITEM(g_object_new(PB_TYPE_ITEM, nullptr)); }

void pb_item_set_info(PbItem *item, gint id, const gchar *thumb_path, const gchar *filename,
                      const gchar *extension, gint attr) {
  PB_CHECK(PB_IS_ITEM(item));

  item->id = id;
  item->thumb_path = g_strdup(thumb_path);
  item->filename = g_strdup(filename);
  item->extension = g_strdup(extension);
  item->attr = attr;
  set_flag(item, kFileMarks, false);
}

void pb_item_set_deleted(PbItem *item, gboolean deleted) {
  PB_CHECK(PB_IS_ITEM(item));
  set_flag(item, kDeleted, (deleted & 1) != 0);
}

gboolean pb_item_get_deleted(PbItem *item) {
  PB_CHECK(PB_IS_ITEM(item), FALSE);
  return (flags_of(item) & kDeleted) != 0;
}

gboolean pb_item_is_palm_pixbuf_ready(PbItem *item) {
  return PB_IS_ITEM(item) && (flags_of(item) & kPalmLoaded) != 0;
}
