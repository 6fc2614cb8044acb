/// A PhoneIconView in a window of the phone's size over a store of numbered rows, with synthesized
/// events.
#pragma once

#include <icon-view.h>
#include <virtual-list-store.h>

#include <set>
#include <string>
#include <vector>

#include "counting-renderer.hpp"
#include "glib-ptr.hpp"
#include "support/glib-test.hpp"

namespace test {

class ViewFixture : public support::DisplayTest {
 protected:
  static constexpr int kWidth = 480;
  static constexpr int kHeight = 800;
  static constexpr int kCell = 148;
  static constexpr int kPitch = 154;  // cell and the spacing below it
  static constexpr int kMargin = 6;
  static constexpr int kVisible = 18;  // rows of 6 lines, the last one seen in part

  void SetUp() override;
  void TearDown() override;

  /// Fills the view with n rows and shows it.
  void show(int rows);
  void show_without_model();
  void give_rows(int rows);
  /// Handles what is due, drawing included.
  static void settle();

  GtkWidget *widget() { return GTK_WIDGET(view_.get()); }
  PhoneIconView *view() { return view_.get(); }
  GtkVirtualListStore *store() { return store_.get(); }
  GtkAdjustment *adjustment();
  double offset() { return gtk_adjustment_get_value(adjustment()); }
  void scroll_to(double offset);
  void resize(int width, int height);
  GdkWindow *content();

  void focus();
  void press_key(guint keyval, guint state = 0);
  void press(double x, double y, guint button = 1);
  void turn_wheel(GdkScrollDirection direction);
  void move(double x, double y);
  void release(double x, double y, guint state = 0);
  void click(double x, double y, guint state = 0);
  /// Clicks into the middle of a cell of the first screen, at offset 0.
  void click_row(int row, guint state = 0);
  /// Middle of a cell at offset 0.
  static double middle_x(int row) { return row % 3 * 160 + 80; }
  static double middle_y(int row) { return kMargin + row / 3 * kPitch + kCell / 2; }

  /// The colour on screen, as 0xrrggbb.
  unsigned colour_at(int x, int y);
  /// Rows that were asked for since the last call.
  std::vector<int> take_fills();
  std::vector<int> take_drawn();

  std::vector<std::string> signals_;  // of the store's cache
  std::vector<int> activated_;
  int selection_changes_ = 0;
  guint32 time_ms_ = 1000;

  pb::Ref<GtkWidget> window_;
  pb::Ref<PhoneIconView> view_;
  pb::Ref<GtkVirtualListStore> store_;
  std::vector<int> fills_;

 private:
  static void on_initialize(GtkVirtualListStore *store, gint row, ViewFixture *self);
  static void on_fill(GtkVirtualListStore *store, gint first, gint last, gint row,
                      ViewFixture *self);
  static void on_finalize(GtkVirtualListStore *store, gint row, ViewFixture *self);
  static void on_activated(GtkIconView *view, GtkTreePath *path, ViewFixture *self);
  static void on_selection_changed(GtkIconView *view, ViewFixture *self);
  void send_button(GdkEventType type, double x, double y, guint button, guint state);
};

}  // namespace test
