#include "phone-gtk/icon-view-accessible.hpp"

#include "phone-gtk/icon-view-private.hpp"

using phone::gtk::private_of;

/// A grid of pictures. Children are rows of the list, made when somebody asks for them.
struct PhoneGridAccessible {
  GtkAccessible parent;
};
struct PhoneGridAccessibleClass {
  GtkAccessibleClass parent_class;
};

namespace {

void component_init(AtkComponentIface *iface);
void selection_init(AtkSelectionIface *iface);

GQuark accessible_quark() { return g_quark_from_static_string("phone-accessible"); }

}  // namespace

G_DEFINE_TYPE_WITH_CODE(PhoneGridAccessible, phone_grid_accessible, GTK_TYPE_ACCESSIBLE,
                        G_IMPLEMENT_INTERFACE(ATK_TYPE_COMPONENT, component_init)
                            G_IMPLEMENT_INTERFACE(ATK_TYPE_SELECTION, selection_init))

namespace {

/// nullptr when the view is gone.
PhoneIconView *view_of(gpointer accessible) {
  GtkWidget *widget = gtk_accessible_get_widget(GTK_ACCESSIBLE(accessible));
  return widget == nullptr ? nullptr : PHONE_ICON_VIEW(widget);
}

gint get_n_children(AtkObject *accessible) {
  auto *view = view_of(accessible);
  return view == nullptr ? 0 : private_of(view).grid.rows;
}

AtkObject *ref_child(AtkObject *accessible, gint row) {
  auto *view = view_of(accessible);
  if (view == nullptr || row < 0 || row >= private_of(view).grid.rows) return nullptr;
  return phone::gtk::new_cell_accessible(view, row);
}

AtkObject *get_parent(AtkObject *accessible) {
  auto *view = view_of(accessible);
  GtkWidget *parent = view == nullptr ? nullptr : gtk_widget_get_parent(GTK_WIDGET(view));
  return parent == nullptr ? nullptr : gtk_widget_get_accessible(parent);
}

AtkStateSet *ref_state_set(AtkObject *accessible) {
  AtkStateSet *states =
      ATK_OBJECT_CLASS(phone_grid_accessible_parent_class)->ref_state_set(accessible);
  auto *view = view_of(accessible);
  if (view == nullptr) {
    atk_state_set_add_state(states, ATK_STATE_DEFUNCT);
    return states;
  }
  auto *widget = GTK_WIDGET(view);
  atk_state_set_add_state(states, ATK_STATE_MANAGES_DESCENDANTS);
  atk_state_set_add_state(states, ATK_STATE_FOCUSABLE);
  if (gtk_widget_has_focus(widget)) atk_state_set_add_state(states, ATK_STATE_FOCUSED);
  if (gtk_widget_is_sensitive(widget)) {
    atk_state_set_add_state(states, ATK_STATE_ENABLED);
    atk_state_set_add_state(states, ATK_STATE_SENSITIVE);
  }
  if (gtk_widget_get_visible(widget)) atk_state_set_add_state(states, ATK_STATE_VISIBLE);
  if (gtk_widget_get_mapped(widget)) atk_state_set_add_state(states, ATK_STATE_SHOWING);
  if (phone_icon_view_get_selection_mode(view) == GTK_SELECTION_MULTIPLE) {
    atk_state_set_add_state(states, ATK_STATE_MULTISELECTABLE);
  }
  return states;
}

void get_extents(AtkComponent *component, gint *x, gint *y, gint *width, gint *height,
                 AtkCoordType relative_to) {
  *x = *y = *width = *height = 0;
  auto *view = view_of(component);
  if (view == nullptr) return;
  const auto &grid = private_of(view).grid;
  phone::gtk::place_on_screen(GTK_WIDGET(view), {0, 0, grid.width, grid.height}, relative_to, x, y,
                              width, height);
}

AtkObject *ref_at_point(AtkComponent *component, gint x, gint y, AtkCoordType relative_to) {
  auto *view = view_of(component);
  if (view == nullptr) return nullptr;
  gint left = 0;
  gint top = 0;
  gint width = 0;
  gint height = 0;
  get_extents(component, &left, &top, &width, &height, relative_to);
  return ref_child(ATK_OBJECT(component), phone_icon_view_get_row_at(view, x - left, y - top));
}

gboolean grab_focus(AtkComponent *component) {
  auto *view = view_of(component);
  if (view == nullptr) return FALSE;
  gtk_widget_grab_focus(GTK_WIDGET(view));
  return TRUE;
}

void component_init(AtkComponentIface *iface) {
  iface->get_extents = get_extents;
  iface->ref_accessible_at_point = ref_at_point;
  iface->grab_focus = grab_focus;
}

/// Row of the n-th selected one; -1 when fewer are selected.
int nth_selected(PhoneIconView *view, gint n) {
  int row = -1;
  gint seen = 0;
  private_of(view).selected.for_each([&](int selected) {
    if (seen++ == n) row = selected;
  });
  return row;
}

gboolean add_selection(AtkSelection *selection, gint row) {
  auto *view = view_of(selection);
  if (view == nullptr) return FALSE;
  phone_icon_view_select_row(view, row);
  return phone_icon_view_row_is_selected(view, row);
}

gboolean clear_selection(AtkSelection *selection) {
  auto *view = view_of(selection);
  if (view == nullptr) return FALSE;
  phone_icon_view_unselect_all(view);
  return TRUE;
}

AtkObject *ref_selection(AtkSelection *selection, gint n) {
  auto *view = view_of(selection);
  return view == nullptr ? nullptr : ref_child(ATK_OBJECT(selection), nth_selected(view, n));
}

gint get_selection_count(AtkSelection *selection) {
  auto *view = view_of(selection);
  return view == nullptr ? 0 : phone_icon_view_count_selected(view);
}

gboolean is_child_selected(AtkSelection *selection, gint row) {
  auto *view = view_of(selection);
  return view != nullptr && phone_icon_view_row_is_selected(view, row);
}

gboolean remove_selection(AtkSelection *selection, gint n) {
  auto *view = view_of(selection);
  const int row = view == nullptr ? -1 : nth_selected(view, n);
  if (row < 0) return FALSE;
  phone_icon_view_unselect_row(view, row);
  return TRUE;
}

gboolean select_all_rows(AtkSelection *selection) {
  auto *view = view_of(selection);
  if (view == nullptr) return FALSE;
  phone_icon_view_select_all(view);
  return phone_icon_view_get_selection_mode(view) == GTK_SELECTION_MULTIPLE;
}

void selection_init(AtkSelectionIface *iface) {
  iface->add_selection = add_selection;
  iface->clear_selection = clear_selection;
  iface->ref_selection = ref_selection;
  iface->get_selection_count = get_selection_count;
  iface->is_child_selected = is_child_selected;
  iface->remove_selection = remove_selection;
  iface->select_all_selection = select_all_rows;
}

/// nullptr as long as no screen reader has asked.
AtkObject *existing_accessible(PhoneIconView *view) {
  return static_cast<AtkObject *>(g_object_get_qdata(G_OBJECT(view), accessible_quark()));
}

}  // namespace

static void phone_grid_accessible_class_init(PhoneGridAccessibleClass *klass) {
  auto *object = ATK_OBJECT_CLASS(klass);
  object->get_n_children = get_n_children;
  object->ref_child = ref_child;
  object->get_parent = get_parent;
  object->ref_state_set = ref_state_set;
}

static void phone_grid_accessible_init(PhoneGridAccessible *accessible) {
  atk_object_set_role(ATK_OBJECT(accessible), ATK_ROLE_LAYERED_PANE);
}

namespace phone::gtk {

void place_on_screen(GtkWidget *widget, GdkRectangle area, AtkCoordType relative_to, gint *x,
                     gint *y, gint *width, gint *height) {
  GdkWindow *window = gtk_widget_get_window(widget);
  if (window == nullptr) return;
  gdk_window_get_origin(window, x, y);
  if (relative_to == ATK_XY_WINDOW) {
    gint left = 0;
    gint top = 0;
    gdk_window_get_origin(gdk_window_get_toplevel(window), &left, &top);
    *x -= left;
    *y -= top;
  }
  *x += area.x;
  *y += area.y;
  *width = area.width;
  *height = area.height;
}

AtkObject *get_accessible(GtkWidget *widget) {
  auto *view = PHONE_ICON_VIEW(widget);
  if (AtkObject *known = existing_accessible(view)) return known;
  auto *accessible = GTK_ACCESSIBLE(g_object_new(phone_grid_accessible_get_type(), nullptr));
  gtk_accessible_set_widget(accessible, widget);
  gtk_accessible_connect_widget_destroyed(accessible);
  g_object_set_qdata_full(G_OBJECT(view), accessible_quark(), accessible, g_object_unref);
  return ATK_OBJECT(accessible);
}

std::string name_of_row(PhoneIconView *view, int row) {
  const auto &priv = private_of(view);
  if (priv.names.name != nullptr && visible_rows(view).contains(row)) {
    const pb::StringPtr name(priv.names.name(view, row, priv.names.data));
    if (name != nullptr) return name.get();
  }
  return std::to_string(row + 1) + " / " + std::to_string(priv.grid.rows);
}

void announce_cursor(PhoneIconView *view) {
  AtkObject *accessible = existing_accessible(view);
  const int cursor = private_of(view).cursor;
  if (accessible == nullptr || cursor < 0) return;
  const auto cell = pb::Ref<AtkObject>::adopt(new_cell_accessible(view, cursor));
  g_signal_emit_by_name(accessible, "active-descendant-changed", cell.get());
}

void announce_rows(PhoneIconView *view) {
  AtkObject *accessible = existing_accessible(view);
  if (accessible != nullptr) g_signal_emit_by_name(accessible, "visible-data-changed");
}

}  // namespace phone::gtk
