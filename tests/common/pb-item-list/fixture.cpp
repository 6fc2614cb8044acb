#include "fixture.hpp"

#include <algorithm>

namespace item_list_test {

namespace {

constexpr const char *kSource = "source-of-thumbnail";

GdkPixbuf *thumbnail_of(const gchar *path) {
  GdkPixbuf *pixbuf = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, 4, 4);
  g_object_set_data_full(G_OBJECT(pixbuf), kSource, g_strdup(path), g_free);
  return pixbuf;
}

/// The file of an id among count files; a cleared record for any other id.
MbItem served_file(gint id, gint count) { return id >= 1 && id <= count ? file(id) : MbItem{}; }

}  // namespace

void ItemListTest::SetUp() {
  pb_app_common_initialize();
  pb_app_common_set_filter_sort_type(4, 3);
  mb_util_set_vesk_login_present(1);
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [](const gchar *path, gint, gint) {
    return thumbnail_of(path);
  };
  fake::platform().fm_svc_thumb_mgr_get_thumbnail = [](gint, gint, const gchar *path, gboolean,
                                                       gint, GdkPixbuf **pixbuf) {
    *pixbuf = thumbnail_of(path);
    return 1;
  };
  fake::take_calls();
  fake::take_log();
}

void ItemListTest::TearDown() { pb_app_common_finalize(); }

Row read_row(const ListPtr &list, gint row) {
  GtkTreeIter iter;
  Row columns;
  EXPECT_TRUE(gtk_tree_model_iter_nth_child(GTK_TREE_MODEL(list.get()), &iter, nullptr, row));
  if (testing::Test::HasFailure()) return columns;
  PbItem *item = nullptr;
  gchar *title = nullptr;
  GdkPixbuf *pixbuf = nullptr;
  gtk_tree_model_get(GTK_TREE_MODEL(list.get()), &iter, 0, &item, 1, &title, 2, &columns.index, 3,
                     &pixbuf, -1);
  columns.item = ItemPtr::adopt(item);
  columns.has_title = title != nullptr;
  const pb::StringPtr owned_title(title);
  if (title != nullptr) columns.title = title;
  columns.pixbuf = pb::Ref<GdkPixbuf>::adopt(pixbuf);
  return columns;
}

ListPtr new_list() { return ListPtr::adopt(pb_item_list_new()); }

PbItemListPrivate &private_of(const ListPtr &list) { return pb::item_list::private_of(list.get()); }

gint store_rows(const ListPtr &list) {
  return gtk_tree_model_iter_n_children(GTK_TREE_MODEL(list.get()), nullptr);
}

bool is_connected(const ListPtr &list, const char *signal, GCallback handler) {
  const guint id = g_signal_lookup(signal, PB_TYPE_ITEM_LIST);
  return g_signal_handler_find(
             list.get(), static_cast<GSignalMatchType>(G_SIGNAL_MATCH_ID | G_SIGNAL_MATCH_FUNC), id,
             0, nullptr, reinterpret_cast<gpointer>(handler), nullptr) != 0;
}

bool has_handlers(const ListPtr &list) {
  return std::ranges::any_of(
      std::vector{"fill-cache", "initialize-cache", "finalize-cache"}, [&](const char *signal) {
        const guint id = g_signal_lookup(signal, PB_TYPE_ITEM_LIST);
        return g_signal_has_handler_pending(list.get(), id, 0, TRUE) != FALSE;
      });
}

guint references(gpointer object) { return G_OBJECT(object)->ref_count; }

MbItem file(gint id) {
  MbItem record = fake::make_item(id, "/pictures/" + std::to_string(id) + ".jpg");
  fake::set_text(record.thumbnail_path, "/thumbnails/" + std::to_string(id) + ".jpg");
  fake::set_text(record.extension, "jpg");
  return record;
}

std::vector<MbItem> files(gint count, gint first) {
  std::vector<MbItem> records;
  for (gint id = first; id < first + count; ++id) records.push_back(file(id));
  return records;
}

void serve(gint count) {
  fake::Platform &phone = fake::platform();
  phone.fm_svc_mb_get_all_sub_file_count = [count](const gchar *, gint, gint64, gint *answer,
                                                   gint *) {
    *answer = count;
    return TRUE;
  };
  phone.fm_svc_mb_get_list = [count](const gchar *, gint, gint, gint64, gint, GList **list,
                                     gint first, gint last, gint *) {
    const gint end = std::min(last, count - 1);
    *list = end < first ? nullptr : fake::record_list(files(end - first + 1, first + 1));
    return TRUE;
  };
  phone.fm_svc_mb_get_record_by_index = [](gint, FmMediaRecord *record, gint *) {
    *record = {};
    return TRUE;
  };
  phone.fm_svc_mb_get_item_by_database_index = [count](gint id, FmFileRecord *record, gint *) {
    *record = {};
    record->item = served_file(id, count);
    return TRUE;
  };
}

void serve_web_id(gint64 nfid) {
  fake::platform().fm_svc_mb_get_record_by_index = [nfid](gint id, FmMediaRecord *record, gint *) {
    *record = {};
    record->id = id;
    record->nfid = nfid;
    return TRUE;
  };
}

void serve_album(const std::vector<gint64> &ids, const std::vector<gint32> &types) {
  fake::platform().fm_svc_mb_album_get_all_files_ex = [ids, types](gint, gint, gint,
                                                                   FmFileList *list, gint *) {
    fake::fill_file_list(list, ids, types);
    return TRUE;
  };
}

std::string source_of(const pb::Ref<GdkPixbuf> &pixbuf) {
  if (!pixbuf) return "";
  const auto *source =
      static_cast<const char *>(g_object_get_data(G_OBJECT(pixbuf.get()), kSource));
  return source == nullptr ? "" : source;
}

bool is_placeholder(const pb::Ref<GdkPixbuf> &pixbuf) {
  return pixbuf && fake::image_id(pixbuf.get()) == 67;
}

void fill(const ListPtr &list, FillHandler handler, gint first, gint last, gint row) {
  handler(GTK_VIRTUAL_LIST_STORE(list.get()), first, last, row);
}

std::vector<std::string> log_of(const std::string &name) {
  const std::string beginning = "[" + name + "]";
  std::vector<std::string> texts;
  for (const fake::LogLine &line : fake::platform().log) {
    if (line.text.starts_with(beginning)) texts.push_back(line.text.substr(beginning.size()));
  }
  return texts;
}

std::string address_of(gpointer object) {
  const pb::StringPtr text(g_strdup_printf("0x%x", GPOINTER_TO_UINT(object)));
  return text.get();
}

std::vector<fake::PendingSource> pending_refreshes() {
  std::vector<fake::PendingSource> refreshes;
  std::ranges::copy_if(fake::pending_idles(), std::back_inserter(refreshes),
                       [](const fake::PendingSource &source) {
                         return source.function == pb_item_list_icon_refresh_at_idle_cb;
                       });
  return refreshes;
}

View::View()
    : widget(pb::Ref<GtkWidget>::sink(gtk_icon_view_new())),
      adjustment(pb::Ref<GtkAdjustment>::sink(
          GTK_ADJUSTMENT(gtk_adjustment_new(0, -1000, 1e9, 1, 10, 10)))) {
  gtk_icon_view_set_row_spacing(GTK_ICON_VIEW(widget.get()), 6);
  fake::platform().gtk_icon_view_get_icon_height = [](GtkIconView *) { return 120; };
}

View::~View() { gtk_widget_destroy(widget.get()); }

void View::attach(const ListPtr &list, gboolean no_thumbnails) const {
  pb_item_list_set_adjustment_cb(list.get(), widget.get(), adjustment.get(), no_thumbnails);
}

}  // namespace item_list_test
