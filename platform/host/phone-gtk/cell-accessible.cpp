#include "phone-gtk/icon-view-accessible.hpp"
#include "phone-gtk/icon-view-private.hpp"

using phone::gtk::private_of;

/// One row of a grid, for as long as the rows keep their numbers.
struct PhoneCellAccessible {
  AtkObject parent;
  GWeakRef view;
  gint row;
  guint numbering;
  gchar *name;
};
struct PhoneCellAccessibleClass {
  AtkObjectClass parent_class;
};

namespace {

void component_init(AtkComponentIface *iface);
void action_init(AtkActionIface *iface);

}  // namespace

G_DEFINE_TYPE_WITH_CODE(PhoneCellAccessible, phone_cell_accessible, ATK_TYPE_OBJECT,
                        G_IMPLEMENT_INTERFACE(ATK_TYPE_COMPONENT, component_init)
                            G_IMPLEMENT_INTERFACE(ATK_TYPE_ACTION, action_init))

namespace {

PhoneCellAccessible *cell_of(gpointer object) {
  return reinterpret_cast<PhoneCellAccessible *>(object);
}

/// Empty when the view is gone or the row has another number by now.
pb::Ref<PhoneIconView> view_of(PhoneCellAccessible *cell) {
  auto view =
      pb::Ref<PhoneIconView>::adopt(static_cast<PhoneIconView *>(g_weak_ref_get(&cell->view)));
  if (!view || private_of(view.get()).numbering != cell->numbering) return nullptr;
  return view;
}

const gchar *get_name(AtkObject *object) {
  auto *cell = cell_of(object);
  const auto view = view_of(cell);
  if (view) {
    const std::string name = phone::gtk::name_of_row(view.get(), cell->row);
    const pb::StringPtr previous(std::exchange(cell->name, g_strdup(name.c_str())));
  }
  return cell->name;
}

AtkObject *get_parent(AtkObject *object) {
  const auto view = view_of(cell_of(object));
  return view ? gtk_widget_get_accessible(GTK_WIDGET(view.get())) : nullptr;
}

gint get_index_in_parent(AtkObject *object) {
  auto *cell = cell_of(object);
  return view_of(cell) ? cell->row : -1;
}

AtkStateSet *ref_state_set(AtkObject *object) {
  AtkStateSet *states = ATK_OBJECT_CLASS(phone_cell_accessible_parent_class)->ref_state_set(object);
  auto *cell = cell_of(object);
  const auto view = view_of(cell);
  if (!view) {
    atk_state_set_add_state(states, ATK_STATE_DEFUNCT);
    return states;
  }
  const auto &priv = private_of(view.get());
  atk_state_set_add_state(states, ATK_STATE_TRANSIENT);
  atk_state_set_add_state(states, ATK_STATE_FOCUSABLE);
  atk_state_set_add_state(states, ATK_STATE_ENABLED);
  atk_state_set_add_state(states, ATK_STATE_SENSITIVE);
  atk_state_set_add_state(states, ATK_STATE_VISIBLE);
  if (phone::gtk::visible_rows(view.get()).contains(cell->row)) {
    atk_state_set_add_state(states, ATK_STATE_SHOWING);
  }
  if (priv.cursor == cell->row && gtk_widget_has_focus(GTK_WIDGET(view.get()))) {
    atk_state_set_add_state(states, ATK_STATE_FOCUSED);
  }
  if (phone_icon_view_get_selection_mode(view.get()) != GTK_SELECTION_NONE) {
    atk_state_set_add_state(states, ATK_STATE_SELECTABLE);
  }
  if (priv.selected.contains(cell->row)) atk_state_set_add_state(states, ATK_STATE_SELECTED);
  return states;
}

void get_extents(AtkComponent *component, gint *x, gint *y, gint *width, gint *height,
                 AtkCoordType relative_to) {
  *x = *y = *width = *height = 0;
  auto *cell = cell_of(component);
  const auto view = view_of(cell);
  if (!view) return;
  phone::gtk::place_on_screen(GTK_WIDGET(view.get()),
                              phone::gtk::cell_on_screen(view.get(), cell->row), relative_to, x, y,
                              width, height);
}

gboolean grab_focus(AtkComponent *component) {
  auto *cell = cell_of(component);
  const auto view = view_of(cell);
  if (!view) return FALSE;
  gtk_widget_grab_focus(GTK_WIDGET(view.get()));
  phone_icon_view_set_cursor_row(view.get(), cell->row);
  return TRUE;
}

void component_init(AtkComponentIface *iface) {
  iface->get_extents = get_extents;
  iface->grab_focus = grab_focus;
}

gboolean do_action(AtkAction *action, gint index) {
  auto *cell = cell_of(action);
  const auto view = view_of(cell);
  if (!view || index != 0) return FALSE;
  phone::gtk::activate_row(view.get(), cell->row);
  return TRUE;
}

gint get_n_actions(AtkAction *) { return 1; }

const gchar *get_action_name(AtkAction *, gint index) { return index == 0 ? "activate" : nullptr; }

void action_init(AtkActionIface *iface) {
  iface->do_action = do_action;
  iface->get_n_actions = get_n_actions;
  iface->get_name = get_action_name;
}

}  // namespace

static void phone_cell_accessible_finalize(GObject *object) {
  auto *cell = cell_of(object);
  g_weak_ref_clear(&cell->view);
  g_free(cell->name);
  G_OBJECT_CLASS(phone_cell_accessible_parent_class)->finalize(object);
}

static void phone_cell_accessible_class_init(PhoneCellAccessibleClass *klass) {
  G_OBJECT_CLASS(klass)->finalize = phone_cell_accessible_finalize;
  auto *object = ATK_OBJECT_CLASS(klass);
  object->get_name = get_name;
  object->get_parent = get_parent;
  object->get_index_in_parent = get_index_in_parent;
  object->ref_state_set = ref_state_set;
}

static void phone_cell_accessible_init(PhoneCellAccessible *cell) {
  g_weak_ref_init(&cell->view, nullptr);
  atk_object_set_role(ATK_OBJECT(cell), ATK_ROLE_ICON);
}

AtkObject *phone::gtk::new_cell_accessible(PhoneIconView *view, int row) {
  auto *cell = cell_of(g_object_new(phone_cell_accessible_get_type(), nullptr));
  g_weak_ref_set(&cell->view, view);
  cell->row = row;
  cell->numbering = private_of(view).numbering;
  return ATK_OBJECT(cell);
}
