/// What is handed to entry points in place of the object that they want.
#pragma once

#include <gtk/gtk.h>
#include <pb-app-common.h>
#include <pb-item-list.h>
#include <pb-item.h>

#include <ostream>
#include <string>

#include "glib-ptr.hpp"
#include "support/glib-test.hpp"

/// A kind of object, by the name that tests of it carry.
struct Foreign {
  const char *name;
  GObject *(*make)();  ///< (transfer full) (nullable)
};

inline GObject *make_nothing() { return nullptr; }
inline GObject *make_plain_object() {
  return G_OBJECT(g_object_new(G_TYPE_INITIALLY_UNOWNED, nullptr));
}
inline GObject *make_label() { return G_OBJECT(g_object_ref_sink(gtk_label_new("label"))); }
inline GObject *make_item() { return G_OBJECT(pb_item_new()); }
inline GObject *make_list() { return G_OBJECT(pb_item_list_new()); }
inline GObject *make_state() { return G_OBJECT(g_object_new(PB_TYPE_APP_COMMON, nullptr)); }
inline GObject *make_store() {
  return G_OBJECT(g_object_new(GTK_TYPE_VIRTUAL_LIST_STORE, nullptr));
}

/// An entry point, called with an object and plausible further arguments.
struct EntryPoint {
  const char *name;
  bool (*call)(gpointer object);  ///< tells whether the result was that of a failure
  const char *condition;          ///< the precondition that names the object
};

inline void PrintTo(const Foreign &foreign, std::ostream *out) { *out << foreign.name; }
inline void PrintTo(const EntryPoint &entry, std::ostream *out) { *out << entry.name; }

/// GLib's warning when the object is refused.
inline std::string refusal_of(const EntryPoint &entry) {
  return std::string(entry.name) + ": assertion '" + entry.condition + "' failed";
}
