/// What the tests of item lists share: a browsing state, files with thumbnails, and looks into a
/// list.
#pragma once

#include <gmock/gmock.h>
#include <pb-app-common.h>
#include <pb-item-list.h>
#include <pb-util.h>

#include <string>
#include <vector>

#include "common/pb-item-list/private.hpp"
#include "support/fake-platform.hpp"
#include "support/pixbufs.hpp"

namespace item_list_test {

using ListPtr = pb::Ref<PbItemList>;
using ItemPtr = pb::Ref<PbItem>;

/// A log line with a text, whatever its level.
MATCHER_P(Says, text, "is a line with the text " + testing::PrintToString(text)) {
  return arg.text == std::string(text);
}

/// Every test begins signed in, with empty journals, and with a thumbnail for every path.
class ItemListTest : public support::GlibTest {
 protected:
  void SetUp() override;
  void TearDown() override;
};

/// The columns of a row. Reading makes the list ask for the row.
struct Row {
  ItemPtr item;
  bool has_title = false;
  std::string title;
  gint index = 0;
  pb::Ref<GdkPixbuf> pixbuf;
};
Row read_row(const ListPtr &list, gint row);

ListPtr new_list();
PbItemListPrivate &private_of(const ListPtr &list);
/// Rows of the store, which need not be the list's length.
gint store_rows(const ListPtr &list);
bool is_connected(const ListPtr &list, const char *signal, GCallback handler);
/// Whether any of the three store signals has a handler.
bool has_handlers(const ListPtr &list);
guint references(gpointer object);

/// A file "/pictures/<id>.jpg" with a thumbnail "/thumbnails/<id>.jpg".
MbItem file(gint id);
/// Files with the ids first to first + count - 1.
std::vector<MbItem> files(gint count, gint first = 1);
/// Lets the service have files with ids 1 to count in the rows 0 to count - 1, made as they are
/// asked for.
void serve(gint count);
/// Lets the media record of every id have a web id.
void serve_web_id(gint64 nfid);
/// Lets every album have these files.
void serve_album(const std::vector<gint64> &ids, const std::vector<gint32> &types = {});

/// The path that a thumbnail was made of; "" for any other pixbuf.
std::string source_of(const pb::Ref<GdkPixbuf> &pixbuf);
bool is_placeholder(const pb::Ref<GdkPixbuf> &pixbuf);

/// Calls a handler of "fill-cache" for a row.
using FillHandler = void (*)(GtkVirtualListStore *, gint, gint, gint);
void fill(const ListPtr &list, FillHandler handler, gint first, gint last, gint row);

/// The low word of an address, as log lines have it.
std::string address_of(gpointer object);
/// The texts of the log that begin with "[name]", without it.
std::vector<std::string> log_of(const std::string &name);

/// The pending idles of refreshes, and not those of the store.
std::vector<fake::PendingSource> pending_refreshes();

/// An icon view of 120-pixel icons with spacing 6, and its adjustment. They need no display.
struct View {
  View();
  ~View();
  View(const View &) = delete;
  View &operator=(const View &) = delete;
  void attach(const ListPtr &list, gboolean no_thumbnails = FALSE) const;
  void scroll(gdouble value) const { gtk_adjustment_set_value(adjustment.get(), value); }

  pb::Ref<GtkWidget> widget;
  pb::Ref<GtkAdjustment> adjustment;
};

}  // namespace item_list_test
