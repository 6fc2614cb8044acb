#include "fixture.hpp"

#include <algorithm>

namespace split_list_test {

SplitPtr new_list() { return SplitPtr::adopt(pb_split_list_new()); }

PbSplitListPrivate &private_of(const SplitPtr &list) {
  return pb::split_list::private_of(list.get());
}

gint rows_of(const SplitPtr &list) {
  return gtk_tree_model_iter_n_children(GTK_TREE_MODEL(list.get()), nullptr);
}

Row read_row(const SplitPtr &list, gint row) {
  GtkTreeIter iter;
  Row columns;
  EXPECT_TRUE(gtk_tree_model_iter_nth_child(GTK_TREE_MODEL(list.get()), &iter, nullptr, row));
  if (testing::Test::HasFailure()) return columns;
  PbItem *item = nullptr;
  gchar *title = nullptr;
  GdkPixbuf *icon = nullptr;
  gtk_tree_model_get(GTK_TREE_MODEL(list.get()), &iter, 0, &item, 1, &title, 2, &columns.index, 3,
                     &icon, -1);
  columns.item = ItemPtr::adopt(item);
  columns.has_title = pb::StringPtr(title) != nullptr;
  columns.icon = pb::Ref<GdkPixbuf>::adopt(icon);
  return columns;
}

std::vector<gint> ids_of(const SplitPtr &list) {
  std::vector<gint> ids;
  for (gint row = 0; row < rows_of(list); ++row) {
    const Row columns = read_row(list, row);
    ids.push_back(columns.item ? columns.item->id : -1);
  }
  return ids;
}

std::vector<gint> numbers_of(const SplitPtr &list) {
  std::vector<gint> numbers;
  for (gint row = 0; row < rows_of(list); ++row) numbers.push_back(read_row(list, row).index);
  return numbers;
}

bool is_default_icon(const SplitPtr &list, gint row) {
  return read_row(list, row).icon.get() == private_of(list).default_icon.get();
}

std::vector<gint> rows_with_thumbnails(const SplitPtr &list) {
  std::vector<gint> rows;
  for (gint row = 0; row < rows_of(list); ++row) {
    if (!is_default_icon(list, row)) rows.push_back(row);
  }
  return rows;
}

MbItem record(gint id, gint db_idx, gint nfid, gint media_type) {
  MbItem made = item_list_test::file(id);
  made.db_idx = db_idx;
  made.nfid = nfid;
  made.media_type = media_type;
  return made;
}

void Records::free() {
  g_list_free_full(head, std::free);
  head = nullptr;
}

std::vector<gint> Records::ids() const { return ids_of(head); }

std::vector<gint> ids_of(GList *records) {
  std::vector<gint> ids;
  for (GList *link = records; link != nullptr; link = link->next) {
    ids.push_back(link->data == nullptr ? -1 : static_cast<const MbItem *>(link->data)->id);
  }
  return ids;
}

void serve(gint count) {
  item_list_test::serve(count);
  fake::platform().fm_svc_mb_get_list = [count](const gchar *, gint, gint, gint64, gint,
                                                GList **list, gint first, gint last, gint *) {
    std::vector<MbItem> records;
    for (gint row = first; row <= std::min(last, count - 1); ++row) {
      records.push_back(record(row + 1, row));
    }
    *list = fake::record_list(records);
    return TRUE;
  };
}

void serve_albums(const std::vector<FmAlbumRecord> &albums) {
  fake::platform().fm_svc_mb_get_all_albums_ex = [albums](gint, guint32, GList **list, gint *) {
    *list = fake::record_list(albums);
    return TRUE;
  };
}

View::View()
    : widget(pb::Ref<GtkWidget>::sink(gtk_icon_view_new())),
      adjustment(pb::Ref<GtkAdjustment>::sink(
          GTK_ADJUSTMENT(gtk_adjustment_new(0, -1000, 1e9, 1, 10, 10)))),
      paned(pb::Ref<GtkWidget>::sink(gtk_hpaned_new())) {
  gtk_icon_view_set_row_spacing(GTK_ICON_VIEW(widget.get()), 6);
  fake::platform().gtk_icon_view_get_icon_height = [](GtkIconView *) { return 64; };
  pb_split_list_set_adjustment_widget(widget.get(), adjustment.get(), paned.get());
}

View::~View() {
  gtk_widget_destroy(widget.get());
  gtk_widget_destroy(paned.get());
}

gint pending_of(gint priority) {
  return static_cast<gint>(std::ranges::count_if(
      fake::pending_idles(),
      [priority](const fake::PendingSource &source) { return source.priority == priority; }));
}

}  // namespace split_list_test
