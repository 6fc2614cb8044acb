#include <memory>

#include "check.hpp"
#include "phone-gtk/icon-view-private.hpp"

using phone::gtk::private_of;

G_DEFINE_TYPE_WITH_PRIVATE(PhoneIconView, phone_icon_view, GTK_TYPE_ICON_VIEW)

PhoneIconViewPrivate &phone::gtk::private_of(PhoneIconView *view) {
  return *static_cast<PhoneIconViewPrivate *>(phone_icon_view_get_instance_private(view));
}

GdkWindow *phone::gtk::content_window(PhoneIconView *view) {
  // The parent paints its icons on its window's only child and takes its events from there.
  GList *children = gdk_window_peek_children(gtk_widget_get_window(GTK_WIDGET(view)));
  return static_cast<GdkWindow *>(children->data);
}

static void phone_icon_view_dispose(GObject *object) {
  auto *view = PHONE_ICON_VIEW(object);
  auto &priv = private_of(view);
  phone::gtk::stop_glide(view);
  priv.layout.remove();
  priv.selected.clear();
  phone::gtk::set_model(view, nullptr);
  phone::gtk::drop_adjustments(view);
  priv.renderer.reset();
  G_OBJECT_CLASS(phone_icon_view_parent_class)->dispose(object);
}

static void phone_icon_view_finalize(GObject *object) {
  auto &priv = private_of(PHONE_ICON_VIEW(object));
  if (priv.names.destroy != nullptr) priv.names.destroy(priv.names.data);
  std::destroy_at(&priv);
  G_OBJECT_CLASS(phone_icon_view_parent_class)->finalize(object);
}

static void phone_icon_view_notify(GObject *object, GParamSpec *pspec) {
  auto *view = PHONE_ICON_VIEW(object);
  const std::string_view name = pspec->name;
  if (name == "selection-mode") phone::gtk::conform_to_mode(view);
  if (name == "margin" || name == "row-spacing" || name == "column-spacing") {
    phone::gtk::queue_layout(view);
  }
  const auto chain = G_OBJECT_CLASS(phone_icon_view_parent_class)->notify;
  if (chain != nullptr) chain(object, pspec);
}

static void phone_icon_view_unrealize(GtkWidget *widget) {
  auto *view = PHONE_ICON_VIEW(widget);
  phone::gtk::cancel_gesture(view);
  private_of(view).cells.clear();
  GTK_WIDGET_CLASS(phone_icon_view_parent_class)->unrealize(widget);
}

static void phone_icon_view_unmap(GtkWidget *widget) {
  auto *view = PHONE_ICON_VIEW(widget);
  phone::gtk::cancel_gesture(view);
  phone::gtk::stop_glide(view);
  GTK_WIDGET_CLASS(phone_icon_view_parent_class)->unmap(widget);
}

static void phone_icon_view_size_request(GtkWidget *widget, GtkRequisition *requisition) {
  const auto &grid = private_of(PHONE_ICON_VIEW(widget)).grid;
  *requisition = {grid.cell_width, grid.cell_height + 2 * grid.margin};
}

static void phone_icon_view_size_allocate(GtkWidget *widget, GtkAllocation *allocation) {
  GTK_WIDGET_CLASS(phone_icon_view_parent_class)->size_allocate(widget, allocation);
  phone::gtk::resize_viewport(PHONE_ICON_VIEW(widget), allocation->width, allocation->height);
}

static void redraw_all_cells(GtkWidget *widget) {
  private_of(PHONE_ICON_VIEW(widget)).cells.mark_all_stale();
  gtk_widget_queue_draw(widget);
}

static void phone_icon_view_style_set(GtkWidget *widget, GtkStyle *previous) {
  GTK_WIDGET_CLASS(phone_icon_view_parent_class)->style_set(widget, previous);
  redraw_all_cells(widget);
}

static void phone_icon_view_direction_changed(GtkWidget *widget, GtkTextDirection previous) {
  GTK_WIDGET_CLASS(phone_icon_view_parent_class)->direction_changed(widget, previous);
  phone::gtk::queue_layout(PHONE_ICON_VIEW(widget));
  redraw_all_cells(widget);
}

static gboolean phone_icon_view_focus_in(GtkWidget *widget, GdkEventFocus *event) {
  auto *view = PHONE_ICON_VIEW(widget);
  auto &priv = private_of(view);
  // The arrow keys start where the user looks.
  const auto visible = phone::gtk::visible_rows(view);
  if (priv.cursor < 0 && !visible.empty()) priv.cursor = visible.first;
  phone::gtk::queue_cell(view, priv.cursor);
  phone::gtk::announce_cursor(view);
  const auto chain = GTK_WIDGET_CLASS(phone_icon_view_parent_class)->focus_in_event;
  return chain != nullptr ? chain(widget, event) : FALSE;
}

static gboolean phone_icon_view_focus_out(GtkWidget *widget, GdkEventFocus *event) {
  auto *view = PHONE_ICON_VIEW(widget);
  phone::gtk::queue_cell(view, private_of(view).cursor);
  const auto chain = GTK_WIDGET_CLASS(phone_icon_view_parent_class)->focus_out_event;
  return chain != nullptr ? chain(widget, event) : FALSE;
}

static void phone_icon_view_set_scroll_adjustments(GtkIconView *view, GtkAdjustment *horizontal,
                                                   GtkAdjustment *vertical) {
  phone::gtk::set_adjustments(PHONE_ICON_VIEW(view), horizontal, vertical);
}

static void phone_icon_view_class_init(PhoneIconViewClass *klass) {
  auto *object = G_OBJECT_CLASS(klass);
  object->dispose = phone_icon_view_dispose;
  object->finalize = phone_icon_view_finalize;
  object->notify = phone_icon_view_notify;
  auto *widget = GTK_WIDGET_CLASS(klass);
  widget->unrealize = phone_icon_view_unrealize;
  widget->unmap = phone_icon_view_unmap;
  widget->size_request = phone_icon_view_size_request;
  widget->size_allocate = phone_icon_view_size_allocate;
  widget->style_set = phone_icon_view_style_set;
  widget->direction_changed = phone_icon_view_direction_changed;
  widget->focus_in_event = phone_icon_view_focus_in;
  widget->focus_out_event = phone_icon_view_focus_out;
  widget->expose_event = phone::gtk::on_expose;
  widget->button_press_event = phone::gtk::on_button_press;
  widget->button_release_event = phone::gtk::on_button_release;
  widget->motion_notify_event = phone::gtk::on_motion;
  widget->scroll_event = phone::gtk::on_scroll;
  widget->get_accessible = phone::gtk::get_accessible;
  auto *icons = GTK_ICON_VIEW_CLASS(klass);
  icons->set_scroll_adjustments = phone_icon_view_set_scroll_adjustments;
  phone::gtk::bind_keys(icons);
}

static void phone_icon_view_init(PhoneIconView *view) {
  new (phone_icon_view_get_instance_private(view)) PhoneIconViewPrivate{};
  // Three columns of 148 to 160 pixels fill the width of the phone's screen.
  g_object_set(view, "column-spacing", 0, "selection-mode", GTK_SELECTION_NONE, nullptr);
  phone::gtk::refresh_geometry(view);
  phone::gtk::set_adjustments(view, nullptr, nullptr);
}

GtkWidget *phone_icon_view_new() { return GTK_WIDGET(g_object_new(PHONE_TYPE_ICON_VIEW, nullptr)); }

void phone_icon_view_set_model(PhoneIconView *view, GtkTreeModel *model) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view));
  PB_CHECK(model == nullptr || GTK_IS_TREE_MODEL(model));
  if (private_of(view).model.get() == model) return;
  phone::gtk::set_model(view, model);
}

GtkTreeModel *phone_icon_view_get_model(PhoneIconView *view) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view), nullptr);
  return private_of(view).model.get();
}

void phone_icon_view_set_cell(PhoneIconView *view, GtkCellRenderer *renderer, const gchar *property,
                              gint column) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view));
  PB_CHECK(GTK_IS_CELL_RENDERER(renderer));
  PB_CHECK(property != nullptr);
  PB_CHECK(column >= 0);
  auto &priv = private_of(view);
  priv.renderer = pb::Ref<GtkCellRenderer>::sink(renderer);
  priv.property = property;
  priv.column = column;
  redraw_all_cells(GTK_WIDGET(view));
}

void phone_icon_view_set_cell_size(PhoneIconView *view, gint width, gint height) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view));
  PB_CHECK(width > 0 && height > 0);
  auto &priv = private_of(view);
  priv.grid.cell_width = width;
  priv.grid.cell_height = height;
  priv.cells.clear();
  gtk_widget_queue_resize(GTK_WIDGET(view));
  phone::gtk::queue_layout(view);
}

void phone_icon_view_scroll_to_row(PhoneIconView *view, gint row, gfloat align) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view));
  if (row < 0 || row >= private_of(view).grid.rows) return;
  phone::gtk::stop_glide(view);
  phone::gtk::scroll_to_row(view, row, CLAMP(align, 0, 1));
}

gboolean phone_icon_view_get_visible_rows(PhoneIconView *view, gint *first, gint *last) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view), FALSE);
  const auto visible = phone::gtk::visible_rows(view);
  if (visible.empty()) return FALSE;
  if (first != nullptr) *first = visible.first;
  if (last != nullptr) *last = visible.last;
  return TRUE;
}

gint phone_icon_view_get_row_at(PhoneIconView *view, gint x, gint y) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view), -1);
  phone::gtk::settle_layout(view);
  const auto &grid = private_of(view).grid;
  if (x < 0 || y < 0 || x >= grid.width || y >= grid.height) return -1;
  return grid.row_at({x, y + phone::gtk::scroll_offset(view)});
}

void phone_icon_view_invalidate_cells(PhoneIconView *view) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view));
  redraw_all_cells(GTK_WIDGET(view));
}

void phone_icon_view_set_name_func(PhoneIconView *view, phone_icon_view_name_func name,
                                   gpointer user_data, GDestroyNotify destroy) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view));
  auto &names = private_of(view).names;
  if (names.destroy != nullptr) names.destroy(names.data);
  names = {name, user_data, destroy};
}
