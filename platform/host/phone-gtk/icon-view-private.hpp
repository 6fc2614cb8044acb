/// What the files of PhoneIconView share. A concern a file: icon-view-model.cpp follows the
/// list, icon-view-drawing.cpp paints cells, icon-view-decoration.cpp what lies on them,
/// icon-view-scrolling.cpp moves, icon-view-pointer.cpp and icon-view-keys.cpp listen to the user,
/// icon-view-selection.cpp keeps cursor and selection, icon-view-accessible.cpp speaks.
#pragma once

#include <gtk/gtk.h>
#include <icon-view.h>

#include <array>
#include <memory>
#include <optional>
#include <string>

#include "glib-ptr.hpp"
#include "phone-gtk/cell-cache.hpp"
#include "phone-gtk/grid-geometry.hpp"
#include "phone-gtk/kinetic.hpp"
#include "phone-gtk/row-set.hpp"

namespace phone::gtk {

/// What the pressed pointer does.
enum class Gesture { kNone, kPress, kDrag, kHandle };

struct PointerState {
  Gesture gesture = Gesture::kNone;
  int pressed_row = -1;
  bool stopped_a_glide = false;  ///< such a press is no click
  double start_x = 0;
  double start_y = 0;
  double start_offset = 0;
  int handle_grip = 0;  ///< from the top of the handle to the pointer
  VelocityTracker tracker;
};

/// Where the view goes as soon as it has a size.
struct PendingScroll {
  int row;
  std::optional<float> align;  ///< none: only as far as needed
};

struct NameSource {
  phone_icon_view_name_func name = nullptr;
  gpointer data = nullptr;
  GDestroyNotify destroy = nullptr;
};

}  // namespace phone::gtk

/// Private part of a PhoneIconView.
struct PhoneIconViewPrivate {
  pb::Ref<GtkTreeModel> model;
  std::array<gulong, 4> model_handlers{};

  pb::Ref<GtkCellRenderer> renderer;
  std::string property;
  int column = 0;

  phone::gtk::GridGeometry grid;
  bool has_size = false;
  phone::gtk::CellCache cells;
  /// How long one repaint may draw cells before it leaves the rest to the next, in microseconds:
  /// a list under the finger moves on while pictures are still coming in.
  gint64 paint_budget_us = 6000;
  int drawing_row = -1;           ///< being drawn: its own changes are part of the picture
  unsigned model_generation = 0;  ///< a handler may change the model while a pass draws it
  guint numbering = 0;            ///< changes when rows get other numbers

  pb::Ref<GtkAdjustment> horizontal;
  pb::Ref<GtkAdjustment> vertical;
  gulong scroll_handler = 0;
  pb::SourceId layout;
  std::optional<phone::gtk::PendingScroll> pending_scroll;
  phone::gtk::Glide glide;
  gint64 glide_start_us = 0;
  pb::SourceId glide_timer;

  int cursor = -1;
  int anchor = -1;  ///< where a range of selected rows began
  phone::gtk::RowSet selected;

  phone::gtk::PointerState pointer;
  phone::gtk::NameSource names;
};

namespace phone::gtk {

PhoneIconViewPrivate &private_of(PhoneIconView *view);
/// The window that the cells are painted on; the view must be realized.
GdkWindow *content_window(PhoneIconView *view);

// icon-view-model.cpp
void set_model(PhoneIconView *view, GtkTreeModel *model);

// icon-view-drawing.cpp
gboolean on_expose(GtkWidget *widget, GdkEventExpose *event);
void queue_cell(PhoneIconView *view, int row);
/// Rows whose drawn cells are kept: scrolling a screen back costs nothing.
RowRange rows_worth_keeping(RowRange visible);
/// The cell as it lies on screen, in widget coordinates.
GdkRectangle cell_on_screen(PhoneIconView *view, int row);

// icon-view-decoration.cpp
/// Marks on the picture of a cell: its frame and its place to tick.
void draw_selection(PhoneIconView *view, GdkPixmap *surface, bool selected);
/// Shows that a touch was felt.
void draw_press(PhoneIconView *view, GdkWindow *window);
void draw_focus(PhoneIconView *view, GdkWindow *window);
void draw_handle(PhoneIconView *view, GdkWindow *window);

// icon-view-scrolling.cpp
std::int64_t scroll_offset(PhoneIconView *view);
void scroll_to(PhoneIconView *view, double offset);
void set_adjustments(PhoneIconView *view, GtkAdjustment *horizontal, GtkAdjustment *vertical);
void drop_adjustments(PhoneIconView *view);
/// Reads the parent's spacings and direction into the geometry.
void refresh_geometry(PhoneIconView *view);
/// The number or the size of the cells changed: adjustments follow from an idle, at the latest
/// when somebody asks for a place.
void queue_layout(PhoneIconView *view);
void settle_layout(PhoneIconView *view);
/// Takes a new size; what was at the top stays there when the columns change.
void resize_viewport(PhoneIconView *view, int width, int height);
void bring_into_view(PhoneIconView *view, int row);
void scroll_to_row(PhoneIconView *view, int row, float align);
RowRange visible_rows(PhoneIconView *view);
void start_glide(PhoneIconView *view, double velocity);
/// True when the list was moving.
bool stop_glide(PhoneIconView *view);
QuickHandle quick_handle(PhoneIconView *view);
/// The handle with the room around it that a finger needs, in widget coordinates.
std::optional<GdkRectangle> handle_area(PhoneIconView *view);

// icon-view-selection.cpp
void set_cursor(PhoneIconView *view, int row);
void select_only(PhoneIconView *view, int row);
void toggle_row(PhoneIconView *view, int row);
/// Selects from the anchor to the row.
void extend_to(PhoneIconView *view, int row);
void change_selection(PhoneIconView *view, const RowSet &selected);
/// Drops what the selection mode does not allow.
void conform_to_mode(PhoneIconView *view);
void activate_row(PhoneIconView *view, int row);

// icon-view-keys.cpp
void bind_keys(GtkIconViewClass *klass);

// icon-view-pointer.cpp
gboolean on_button_press(GtkWidget *widget, GdkEventButton *event);
gboolean on_button_release(GtkWidget *widget, GdkEventButton *event);
gboolean on_motion(GtkWidget *widget, GdkEventMotion *event);
gboolean on_scroll(GtkWidget *widget, GdkEventScroll *event);
void cancel_gesture(PhoneIconView *view);

// icon-view-accessible.cpp
AtkObject *get_accessible(GtkWidget *widget);
/// What a screen reader says of a row.
std::string name_of_row(PhoneIconView *view, int row);
void announce_cursor(PhoneIconView *view);
void announce_rows(PhoneIconView *view);

}  // namespace phone::gtk
