#include "glib-ptr.hpp"
#include "pb-util-settings.h"
#include "support/fake-platform.hpp"

namespace {

using testing::ElementsAre;

class LabelFontSize : public support::DisplayTest {};

TEST_F(LabelFontSize, IsSetInPangoUnits) {
  const auto label = pb::Ref<GtkWidget>::sink(gtk_label_new("x"));

  mb_set_label_font_size(label.get(), 18);

  const PangoFontDescription *font = gtk_widget_get_modifier_style(label.get())->font_desc;
  EXPECT_EQ(pango_font_description_get_size(font), 18 * 1024);
  EXPECT_FALSE(pango_font_description_get_size_is_absolute(font));
}

TEST_F(LabelFontSize, LeavesTheRestOfTheFont) {
  const auto label = pb::Ref<GtkWidget>::sink(gtk_label_new("x"));

  mb_set_label_font_size(label.get(), 18);

  const GtkRcStyle *changes = gtk_widget_get_modifier_style(label.get());
  EXPECT_EQ(pango_font_description_get_set_fields(changes->font_desc), PANGO_FONT_MASK_SIZE);
}

TEST_F(LabelFontSize, WarnsWithoutAWidget) {
  mb_set_label_font_size(nullptr, 18);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("mb_set_label_font_size: assertion 'GTK_IS_WIDGET(widget)' failed"));
}

}  // namespace
