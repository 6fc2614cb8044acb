#include "info-page.hpp"

#include <gdk/gdkkeysyms.h>
#include <main-window.h>

#include "widgets.hpp"

namespace gallery {
namespace {

constexpr int kMargin = 16;
constexpr int kColumnGap = 16;
constexpr int kRowGap = 12;
constexpr int kNameWidth = 130;
constexpr int kBesideText = kNameWidth + kColumnGap + 2 * kMargin + 16;

GtkWidget *make_cell_label(const std::string &text) {
  GtkWidget *label = gtk_label_new(text.c_str());
  gtk_label_set_line_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
  gtk_misc_set_alignment(GTK_MISC(label), 0, 0);
  return label;
}

GtkWidget *make_table(const InfoPage::Rows &rows, GtkWidget *page) {
  GtkWidget *table = gtk_table_new(static_cast<guint>(rows.size()), 2, FALSE);
  gtk_table_set_col_spacings(GTK_TABLE(table), kColumnGap);
  gtk_table_set_row_spacings(GTK_TABLE(table), kRowGap);
  gtk_container_set_border_width(GTK_CONTAINER(table), kMargin);
  const GdkColor grey{0, 0xa800, 0xac00, 0xb400};
  guint row = 0;
  for (const auto &[name, value] : rows) {
    GtkWidget *name_label = make_cell_label(name);
    gtk_label_set_line_wrap(GTK_LABEL(name_label), TRUE);
    gtk_widget_set_size_request(name_label, kNameWidth, -1);
    gtk_widget_modify_fg(name_label, GTK_STATE_NORMAL, &grey);
    GtkWidget *value_label = make_cell_label(value);
    gtk_label_set_selectable(GTK_LABEL(value_label), FALSE);
    wrap_with_width(value_label, page, kBesideText);
    gtk_table_attach(GTK_TABLE(table), name_label, 0, 1, row, row + 1, GTK_FILL, GTK_FILL, 0, 0);
    gtk_table_attach(GTK_TABLE(table), value_label, 1, 2, row, row + 1,
                     static_cast<GtkAttachOptions>(GTK_EXPAND | GTK_FILL), GTK_FILL, 0, 0);
    ++row;
  }
  return table;
}

}  // namespace

InfoPage::InfoPage(std::string title, const Rows &rows)
    : title_(std::move(title)),
      form_(pb::Ref<GtkWidget>::sink(gtk_form_new())),
      scroller_(gtk_scrolled_window_new(nullptr, nullptr)) {
  gtk_widget_set_name(form_.get(), "info-form");
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller_), GTK_POLICY_NEVER,
                                 GTK_POLICY_AUTOMATIC);
  gtk_scrolled_window_add_with_viewport(GTK_SCROLLED_WINDOW(scroller_),
                                        make_table(rows, form_.get()));
  GtkWidget *viewport = gtk_bin_get_child(GTK_BIN(scroller_));
  gtk_viewport_set_shadow_type(GTK_VIEWPORT(viewport), GTK_SHADOW_NONE);
  gtk_widget_set_can_focus(scroller_, TRUE);
  name_widget(scroller_, "info-scroller", title_);
  gtk_container_add(GTK_CONTAINER(form_.get()), scroller_);
}

InfoPage::~InfoPage() { gtk_widget_destroy(form_.get()); }

bool InfoPage::key(const GdkEventKey &event) {
  constexpr double kStep = 60;
  if (event.keyval != GDK_KEY_Up && event.keyval != GDK_KEY_Down) return false;
  GtkAdjustment *scroll = gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(scroller_));
  const double end = gtk_adjustment_get_upper(scroll) - gtk_adjustment_get_page_size(scroll);
  const double step = event.keyval == GDK_KEY_Up ? -kStep : kStep;
  gtk_adjustment_set_value(scroll, CLAMP(gtk_adjustment_get_value(scroll) + step, 0, MAX(0, end)));
  return true;
}

}  // namespace gallery
