#include <memory>
#include <vector>

#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "pb-view-manager.h"
#include "util/pb-view-manager/private.hpp"

using pb::view_manager::main_window;
using pb::view_manager::usable_window;

namespace {

/// Entries up to this number appear and go without motion.
constexpr std::size_t kStillForms = 2;

/// A form on the stack. Both widgets belong to the window; either may be destroyed by others.
struct ViewEntry {
  pb::WidgetSlot form;
  pb::WidgetSlot focus;
  pb::StringPtr title;
};

/// Bottom first. Never destroyed: forms may outlive the static objects of this library.
std::vector<std::unique_ptr<ViewEntry>> &stack() {
  static auto *entries = new std::vector<std::unique_ptr<ViewEntry>>;
  return *entries;
}

ViewEntry *find_entry(GtkWidget *form) {
  for (const auto &entry : stack()) {
    if (form != nullptr && entry->form.get() == form) return entry.get();
  }
  return nullptr;
}

void stop_motion(GtkWidget *form) { gtk_effect_set_motion(form, GTK_EFFECT_MOTION_FORM, FALSE); }

/// Without a window the platform reports the missing one.
void show_form(GtkWidget *form) {
  if (form == nullptr) return;
  gtk_main_window_set_current_form(GTK_MAIN_WINDOW(main_window().get()), GTK_FORM(form));
  gtk_widget_show_all(form);
}

void give_focus(const ViewEntry &entry) {
  GtkMainWindow *window = usable_window();
  if (window == nullptr || !entry.focus) return;
  gtk_window_set_focus(GTK_WINDOW(window), entry.focus.get());
}

void show_title(const ViewEntry &entry) {
  GtkMainWindow *window = usable_window();
  if (window == nullptr || entry.title == nullptr) return;
  gtk_main_window_set_default_title(window, entry.title.get());
}

void drop_top() {
  const std::unique_ptr<ViewEntry> top = std::move(stack().back());
  stack().pop_back();
  if (!top->form) return;
  gtk_main_window_remove_form(GTK_MAIN_WINDOW(main_window().get()), GTK_FORM(top->form.get()));
}

bool have_same_name(GtkWidget *a, GtkWidget *b) {
  return g_ascii_strcasecmp(gtk_widget_get_name(a), gtk_widget_get_name(b)) == 0;
}

}  // namespace

namespace pb::view_manager {

const gchar *current_title() { return stack().back()->title.get(); }

}  // namespace pb::view_manager

void pb_view_manager_add_widget(GtkWidget *form, GtkWidget *focus_widget, const gchar *title) {
  auto added = std::make_unique<ViewEntry>();
  added->form.set(form);
  added->focus.set(focus_widget);
  added->title.reset(g_strdup(title));
  ViewEntry &entry = *stack().emplace_back(std::move(added));

  gtk_main_window_add_form(GTK_MAIN_WINDOW(main_window().get()), GTK_FORM(form));
  if (stack().size() <= kStillForms) stop_motion(form);
  show_title(entry);
  show_form(form);
  give_focus(entry);
}

void pb_view_manager_remove_widget(GtkWidget *form) {
  if (stack().size() < 2) return;
  GtkWidget *top = stack().back()->form.get();
  if (top == nullptr) {
    // Somebody destroyed the form, so there is no name to compare.
    PB_LOG(PB_LOG_ERROR, "not found widget - (%d)item\n", pb_view_manager_get_count() - 1);
    return;
  }
  if (!GTK_IS_WIDGET(form) || !have_same_name(form, top)) return;

  if (stack().size() == kStillForms + 1) stop_motion(form);
  drop_top();
  const ViewEntry &below = *stack().back();
  show_form(below.form.get());
  give_focus(below);
  show_title(below);
}

void pb_view_manager_remove_widget_to_specify(GtkWidget *form) {
  if (find_entry(form) == nullptr) return;
  std::size_t keep = 1;
  while (stack()[keep - 1]->form.get() != form) ++keep;
  for (std::size_t left = stack().size(); left > keep; --left) {
    pb_view_manager_remove_widget(stack().back()->form.get());
  }
}

void pb_view_manager_destroy_all(void) {
  PB_LOG(PB_LOG_INFO, "destroy all child forms - size(%d)\n", pb_view_manager_get_count());
  while (!stack().empty()) drop_top();
}

gint pb_view_manager_get_count(void) { return static_cast<gint>(stack().size()); }

GtkWidget *pb_view_manager_get_current_widget(void) {
  return stack().empty() ? nullptr : stack().back()->form.get();
}

void pb_view_manager_set_focus_widget(GtkWidget *form, GtkWidget *focus_widget) {
  ViewEntry *entry = find_entry(form);
  if (entry != nullptr) entry->focus.set(focus_widget);
}

GtkWidget *pb_view_manager_get_focus_widget(GtkWidget *form) {
  const ViewEntry *entry = find_entry(form);
  return entry == nullptr ? nullptr : entry->focus.get();
}
