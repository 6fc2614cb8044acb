/// A renderer over an item, with the browsing state that it asks for its size.
#pragma once

#include <gtk/gtk.h>
#include <pb-app-common.h>
#include <pb-debug.h>
#include <pb-item-renderer.h>

#include "glib-ptr.hpp"
#include "support/fake-platform.hpp"
#include "support/pixbufs.hpp"

/// Sizes and drawing need no widget, so only the drawing tests ask for a display.
class RendererFixture : public support::DisplayTest {
 protected:
  void SetUp() override {
    DisplayTest::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    pb_app_common_initialize();
    cell_ = pb::Ref<GtkCellRenderer>::sink(pb_item_renderer_new());
    item_ = pb::Ref<PbItem>::adopt(pb_item_new());
  }
  void TearDown() override {
    if (cell_) pb_app_common_finalize();
  }

  void show_item() { g_object_set(cell_.get(), "item", item_.get(), nullptr); }
  void show_file() {
    pb_item_set_info(item_.get(), 5, nullptr, "/picture.jpg", "jpg", 0);
    show_item();
  }
  void show_album(const char *name = "Holiday", gint64 naid = 0) {
    pb_item_set_album_info_ex(item_.get(), 30, name, "/cover.jpg", naid, 12, 0);
    show_item();
  }

  pb::Ref<GtkCellRenderer> cell_;
  pb::Ref<PbItem> item_;
};
