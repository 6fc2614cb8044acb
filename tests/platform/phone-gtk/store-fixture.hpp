/// A store of two columns whose signals are written down.
#pragma once

#include <gmock/gmock.h>
#include <virtual-list-store.h>

#include <functional>
#include <string>
#include <vector>

#include "glib-ptr.hpp"

namespace test {

/// Runs what is due on the main loop, without waiting.
inline void run_main_loop() {
  while (g_main_context_iteration(nullptr, FALSE)) {
  }
}

class StoreFixture : public testing::Test {
 protected:
  enum Column { kObject, kText };

  StoreFixture() {
    store_ = pb::Ref<GtkVirtualListStore>::adopt(
        GTK_VIRTUAL_LIST_STORE(g_object_new(GTK_TYPE_VIRTUAL_LIST_STORE, nullptr)));
    GType types[] = {G_TYPE_OBJECT, G_TYPE_STRING};
    gtk_virtual_list_store_set_column_types(store(), 2, types);
  }

  GtkVirtualListStore *store() { return store_.get(); }
  GtkTreeModel *model() { return GTK_TREE_MODEL(store_.get()); }

  GtkTreeIter iter_of(int row) {
    GtkTreeIter iter;
    EXPECT_TRUE(gtk_virtual_list_store_iter_nth(store(), &iter, row)) << "row " << row;
    return iter;
  }

  std::string read(int row) {
    GtkTreeIter iter = iter_of(row);
    return read(&iter);
  }

  std::string read(GtkTreeIter *iter) {
    pb::StringPtr text;
    gtk_tree_model_get(model(), iter, kText, pb::out(text).operator gchar **(), -1);
    return text == nullptr ? "(null)" : text.get();
  }

  void set(int row, const char *text) {
    GtkTreeIter iter = iter_of(row);
    gtk_virtual_list_store_set(store(), &iter, kText, text, -1);
  }

  bool filled(int row) { return gtk_virtual_list_store_row_is_filled(store(), row) != FALSE; }

  int filled_rows() {
    int count = 0;
    for (int row = 0; row < length(); ++row) count += filled(row) ? 1 : 0;
    return count;
  }

  int length() { return gtk_tree_model_iter_n_children(model(), nullptr); }

  /// Answers "fill-cache" by writing "row N", and writes down the cache signals.
  void connect_source() {
    g_signal_connect(store(), "initialize-cache", G_CALLBACK(on_initialize), this);
    g_signal_connect(store(), "fill-cache", G_CALLBACK(on_fill), this);
    g_signal_connect(store(), "finalize-cache", G_CALLBACK(on_finalize), this);
  }

  void disconnect_fill() {
    g_signal_handlers_disconnect_by_func(store(), reinterpret_cast<gpointer>(on_fill), this);
  }

  /// Writes down the signals of the model.
  void connect_view() {
    g_signal_connect(store(), "row-changed", G_CALLBACK(on_row_changed), this);
    g_signal_connect(store(), "row-inserted", G_CALLBACK(on_row_inserted), this);
    g_signal_connect(store(), "row-deleted", G_CALLBACK(on_row_deleted), this);
  }

  std::vector<std::string> signals_;
  /// What the source does instead of filling the row.
  std::function<void(int row)> answer_ = [this](int row) {
    set(row, ("row " + std::to_string(row)).c_str());
  };
  pb::Ref<GtkVirtualListStore> store_;

 private:
  static std::string text_of(GtkTreePath *path) {
    return std::to_string(gtk_tree_path_get_indices(path)[0]);
  }
  static void on_initialize(GtkVirtualListStore *, gint row, StoreFixture *self) {
    self->signals_.push_back("initialize " + std::to_string(row));
  }
  static void on_fill(GtkVirtualListStore *, gint first, gint last, gint row, StoreFixture *self) {
    self->signals_.push_back("fill " + std::to_string(first) + " " + std::to_string(last) + " " +
                             std::to_string(row));
    self->answer_(row);
  }
  static void on_finalize(GtkVirtualListStore *, gint row, StoreFixture *self) {
    self->signals_.push_back("finalize " + std::to_string(row));
  }
  static void on_row_changed(GtkTreeModel *, GtkTreePath *path, GtkTreeIter *, StoreFixture *self) {
    self->signals_.push_back("changed " + text_of(path));
  }
  static void on_row_inserted(GtkTreeModel *, GtkTreePath *path, GtkTreeIter *,
                              StoreFixture *self) {
    self->signals_.push_back("inserted " + text_of(path) + " of " + std::to_string(self->length()));
  }
  static void on_row_deleted(GtkTreeModel *, GtkTreePath *path, StoreFixture *self) {
    self->signals_.push_back("deleted " + text_of(path) + " of " + std::to_string(self->length()));
  }
};

}  // namespace test
