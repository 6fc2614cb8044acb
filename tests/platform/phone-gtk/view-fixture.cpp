#include "view-fixture.hpp"

#include "phone-gtk/icon-view-private.hpp"

#include <utility>

namespace test {

void ViewFixture::SetUp() {
  DisplayTest::SetUp();
  // Not on screen, where the windows of tests that run at the same time would cover each other.
  window_ = pb::Ref<GtkWidget>::sink(gtk_offscreen_window_new());
  gtk_widget_set_size_request(window_.get(), kWidth, kHeight);
  view_ = pb::Ref<PhoneIconView>::sink(PHONE_ICON_VIEW(phone_icon_view_new()));
  // A slow machine must not spread a repaint over several.
  phone::gtk::private_of(view()).paint_budget_us = G_MAXINT;
  phone_icon_view_set_cell_size(view(), kCell, kCell);
  phone_icon_view_set_cell(view(), new_counting_renderer(), "value", 0);
  g_signal_connect(view(), "item-activated", G_CALLBACK(on_activated), this);
  g_signal_connect(view(), "selection-changed", G_CALLBACK(on_selection_changed), this);
  GtkWidget *scrolled = gtk_scrolled_window_new(nullptr, nullptr);
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scrolled), GTK_POLICY_NEVER, GTK_POLICY_NEVER);
  gtk_container_add(GTK_CONTAINER(scrolled), widget());
  gtk_container_add(GTK_CONTAINER(window_.get()), scrolled);
}

void ViewFixture::TearDown() {
  if (window_) gtk_widget_destroy(window_.get());
  if (view_)
    g_signal_handlers_disconnect_matched(view(), G_SIGNAL_MATCH_DATA, 0, 0, nullptr, nullptr, this);
}

void ViewFixture::give_rows(int rows) {
  store_ = pb::Ref<GtkVirtualListStore>::adopt(
      GTK_VIRTUAL_LIST_STORE(g_object_new(GTK_TYPE_VIRTUAL_LIST_STORE, nullptr)));
  GType types[] = {G_TYPE_INT};
  gtk_virtual_list_store_set_column_types(store(), 1, types);
  gtk_virtual_list_store_set_cache_size(store(), 100);
  gtk_virtual_list_store_set_total_size(store(), rows);
  g_signal_connect(store(), "initialize-cache", G_CALLBACK(on_initialize), this);
  g_signal_connect(store(), "fill-cache", G_CALLBACK(on_fill), this);
  g_signal_connect(store(), "finalize-cache", G_CALLBACK(on_finalize), this);
  phone_icon_view_set_model(view(), GTK_TREE_MODEL(store()));
}

void ViewFixture::show_without_model() {
  gtk_widget_show_all(window_.get());
  settle();
}

void ViewFixture::show(int rows) {
  give_rows(rows);
  show_without_model();
}

void ViewFixture::settle() {
  for (int idle_rounds = 0; idle_rounds < 2; ++idle_rounds) {
    while (gtk_events_pending()) gtk_main_iteration();
    gdk_window_process_all_updates();
    gdk_display_sync(gdk_display_get_default());
  }
}

GtkAdjustment *ViewFixture::adjustment() {
  return gtk_scrolled_window_get_vadjustment(
      GTK_SCROLLED_WINDOW(gtk_bin_get_child(GTK_BIN(window_.get()))));
}

void ViewFixture::scroll_to(double offset) {
  gtk_adjustment_set_value(adjustment(), offset);
  settle();
}

GdkWindow *ViewFixture::content() {
  return static_cast<GdkWindow *>(gdk_window_peek_children(gtk_widget_get_window(widget()))->data);
}

void ViewFixture::resize(int width, int height) {
  gtk_widget_set_size_request(window_.get(), width, height);
  settle();
}

void ViewFixture::focus() {
  gtk_widget_grab_focus(widget());
  GdkEvent *event = gdk_event_new(GDK_FOCUS_CHANGE);
  event->focus_change.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(window_.get())));
  event->focus_change.in = TRUE;
  gtk_main_do_event(event);
  gdk_event_free(event);
}

void ViewFixture::press_key(guint keyval, guint state) {
  GdkKeymapKey *keys = nullptr;
  gint count = 0;
  ASSERT_TRUE(gdk_keymap_get_entries_for_keyval(gdk_keymap_get_default(), keyval, &keys, &count));
  GdkEvent *event = gdk_event_new(GDK_KEY_PRESS);
  event->key.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(window_.get())));
  event->key.keyval = keyval;
  event->key.state = state;
  event->key.hardware_keycode = static_cast<guint16>(keys[0].keycode);
  event->key.group = static_cast<guint8>(keys[0].group);
  g_free(keys);
  gtk_main_do_event(event);
  gdk_event_free(event);
}

void ViewFixture::send_button(GdkEventType type, double x, double y, guint button, guint state) {
  GdkEvent *event = gdk_event_new(type);
  event->button.window = GDK_WINDOW(g_object_ref(content()));
  event->button.x = x;
  event->button.y = y;
  event->button.button = button;
  event->button.state = state;
  event->button.time = time_ms_;
  event->button.device = gdk_device_get_core_pointer();
  gtk_main_do_event(event);
  gdk_event_free(event);
}

void ViewFixture::turn_wheel(GdkScrollDirection direction) {
  GdkEvent *event = gdk_event_new(GDK_SCROLL);
  event->scroll.window = GDK_WINDOW(g_object_ref(content()));
  event->scroll.direction = direction;
  gtk_main_do_event(event);
  gdk_event_free(event);
}

void ViewFixture::press(double x, double y, guint button) {
  send_button(GDK_BUTTON_PRESS, x, y, button, 0);
}

void ViewFixture::release(double x, double y, guint state) {
  send_button(GDK_BUTTON_RELEASE, x, y, 1, state | GDK_BUTTON1_MASK);
}

void ViewFixture::move(double x, double y) {
  time_ms_ += 10;
  GdkEvent *event = gdk_event_new(GDK_MOTION_NOTIFY);
  event->motion.window = GDK_WINDOW(g_object_ref(content()));
  event->motion.x = x;
  event->motion.y = y;
  event->motion.state = GDK_BUTTON1_MASK;
  event->motion.time = time_ms_;
  event->motion.device = gdk_device_get_core_pointer();
  gtk_main_do_event(event);
  gdk_event_free(event);
}

void ViewFixture::click(double x, double y, guint state) {
  press(x, y);
  release(x, y, state);
}

void ViewFixture::click_row(int row, guint state) { click(middle_x(row), middle_y(row), state); }

unsigned ViewFixture::colour_at(int x, int y) {
  const auto picture = pb::Ref<GdkPixbuf>::adopt(
      gtk_offscreen_window_get_pixbuf(GTK_OFFSCREEN_WINDOW(window_.get())));
  const guchar *pixel = gdk_pixbuf_get_pixels(picture.get()) +
                        y * gdk_pixbuf_get_rowstride(picture.get()) +
                        x * gdk_pixbuf_get_n_channels(picture.get());
  return static_cast<unsigned>(pixel[0] << 16 | pixel[1] << 8 | pixel[2]);
}

std::vector<int> ViewFixture::take_fills() { return std::exchange(fills_, {}); }

std::vector<int> ViewFixture::take_drawn() { return std::exchange(drawn_values(), {}); }

void ViewFixture::on_initialize(GtkVirtualListStore *, gint row, ViewFixture *self) {
  self->signals_.push_back("initialize " + std::to_string(row));
}

void ViewFixture::on_fill(GtkVirtualListStore *store, gint first, gint last, gint row,
                          ViewFixture *self) {
  self->signals_.push_back("fill " + std::to_string(first) + " " + std::to_string(last) + " " +
                           std::to_string(row));
  self->fills_.push_back(row);
  GtkTreeIter iter;
  if (gtk_virtual_list_store_iter_nth(store, &iter, row)) {
    gtk_virtual_list_store_set(store, &iter, 0, row, -1);
  }
}

void ViewFixture::on_finalize(GtkVirtualListStore *, gint row, ViewFixture *self) {
  self->signals_.push_back("finalize " + std::to_string(row));
}

void ViewFixture::on_activated(GtkIconView *, GtkTreePath *path, ViewFixture *self) {
  self->activated_.push_back(gtk_tree_path_get_indices(path)[0]);
}

void ViewFixture::on_selection_changed(GtkIconView *, ViewFixture *self) {
  ++self->selection_changes_;
}

}  // namespace test
