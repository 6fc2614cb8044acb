#include "check.hpp"
#include "main-window.h"

G_DEFINE_TYPE(GtkForm, gtk_form, GTK_TYPE_BIN)

namespace {

/// The effects of a form that are switched off, as a word of bits.
GQuark stilled_effects() { return g_quark_from_static_string("phone-stilled-effects"); }

}  // namespace

static void gtk_form_size_request(GtkWidget *widget, GtkRequisition *requisition) {
  const auto border = static_cast<gint>(gtk_container_get_border_width(GTK_CONTAINER(widget)));
  *requisition = {2 * border, 2 * border};
  GtkWidget *child = gtk_bin_get_child(GTK_BIN(widget));
  if (child == nullptr || !gtk_widget_get_visible(child)) return;
  GtkRequisition wanted;
  gtk_widget_size_request(child, &wanted);
  requisition->width += wanted.width;
  requisition->height += wanted.height;
}

static void gtk_form_size_allocate(GtkWidget *widget, GtkAllocation *allocation) {
  gtk_widget_set_allocation(widget, allocation);
  GtkWidget *child = gtk_bin_get_child(GTK_BIN(widget));
  if (child == nullptr || !gtk_widget_get_visible(child)) return;
  const auto border = static_cast<gint>(gtk_container_get_border_width(GTK_CONTAINER(widget)));
  GtkAllocation inner{allocation->x + border, allocation->y + border,
                      MAX(allocation->width - 2 * border, 1),
                      MAX(allocation->height - 2 * border, 1)};
  gtk_widget_size_allocate(child, &inner);
}

static void gtk_form_class_init(GtkFormClass *klass) {
  GTK_WIDGET_CLASS(klass)->size_request = gtk_form_size_request;
  GTK_WIDGET_CLASS(klass)->size_allocate = gtk_form_size_allocate;
}

static void gtk_form_init(GtkForm *form) { gtk_widget_set_has_window(GTK_WIDGET(form), FALSE); }

GtkWidget *gtk_form_new() { return GTK_WIDGET(g_object_new(GTK_TYPE_FORM, nullptr)); }

// This host has no motion: a form appears at once either way. The wish stays with the form, so
// that a main window that moves its forms finds it there.
void gtk_effect_set_motion(GtkWidget *form, guint effect, gboolean on) {
  PB_CHECK(GTK_IS_WIDGET(form));
  auto *object = G_OBJECT(form);
  const guint stilled = GPOINTER_TO_UINT(g_object_get_qdata(object, stilled_effects()));
  const guint now = on ? stilled & ~effect : stilled | effect;
  g_object_set_qdata(object, stilled_effects(), GUINT_TO_POINTER(now));
}
