#include <media-attributes.h>

#include "fakes/header-objects.hpp"
#include "fakes/journal.hpp"

struct _MMAttrs {
  int width;
  int height;
  std::vector<guchar> pixels;
};

namespace fake {

int header_objects = 0;

void set_header_defaults(Platform &phone) {
  header_objects = 0;
  phone.MMFileGetContentAttr = [](const gchar *, MMAttrs **attrs) {
    answer(attrs, nullptr);
    return -1;
  };
  phone.MMAttrsGetInt = [](MMAttrs *attrs, gint attribute, gint *value) {
    if (attribute == MM_ATTR_THUMBNAIL_WIDTH) answer(value, attrs->width);
    if (attribute == MM_ATTR_THUMBNAIL_HEIGHT) answer(value, attrs->height);
    return 0;
  };
  phone.MMAttrsGetData = [](MMAttrs *attrs, gint, void **data) {
    answer(data, attrs->pixels.empty() ? nullptr : attrs->pixels.data());
    return 0;
  };
  phone.wink_parse_from_file = [](const gchar *path, gint *width, gint *height) -> gboolean {
    return path != nullptr && gdk_pixbuf_get_file_info(path, width, height) != nullptr;
  };
  phone.wink_create_jpeg_exifinfo_from_file = [](const gchar *) -> WinkExifInfo * {
    return nullptr;
  };
}

MMAttrs *make_attributes(int width, int height, const std::vector<guchar> &pixels) {
  ++header_objects;
  return new MMAttrs{width, height, pixels};
}

int live_header_objects() { return header_objects; }

}  // namespace fake

gint MMFileGetContentAttr(const gchar *path, MMAttrs **attrs) {
  fake::record("MMFileGetContentAttr", path);
  return fake::platform().MMFileGetContentAttr(path, attrs);
}

gint MMAttrsGetInt(MMAttrs *attrs, gint attribute, gint *value) {
  fake::record("MMAttrsGetInt", attribute);
  return fake::platform().MMAttrsGetInt(attrs, attribute, value);
}

gint MMAttrsGetData(MMAttrs *attrs, gint attribute, void **data) {
  fake::record("MMAttrsGetData", attribute);
  return fake::platform().MMAttrsGetData(attrs, attribute, data);
}

void MMAttrsFree(MMAttrs *attrs) {
  fake::record("MMAttrsFree");
  if (attrs == nullptr) return;
  --fake::header_objects;
  delete attrs;
}
