#include "undo-bar.hpp"

#include <utility>

#include "text.hpp"
#include "widgets.hpp"

namespace gallery {
namespace {

constexpr guint kSeconds = 10;
constexpr int kPadding = 8;
constexpr int kBesideSentence = 130;

}  // namespace

UndoBar::UndoBar()
    : bar_(pb::Ref<GtkWidget>::sink(gtk_event_box_new())),
      sentence_(pb::Ref<GtkWidget>::sink(gtk_label_new(nullptr))),
      button_(pb::Ref<GtkWidget>::sink(gtk_button_new_with_label(text(Text::kUndo).c_str()))) {
  gtk_widget_set_name(bar_.get(), "undo-bar");
  gtk_widget_set_name(sentence_.get(), "undo-bar-sentence");
  gtk_label_set_line_wrap_mode(GTK_LABEL(sentence_.get()), PANGO_WRAP_WORD_CHAR);
  gtk_misc_set_alignment(GTK_MISC(sentence_.get()), 0, 0.5);
  name_widget(button_.get(), "undo-bar-button", text(Text::kUndo));
  g_signal_connect(button_.get(), "clicked", G_CALLBACK(on_undo), this);

  GtkWidget *row = gtk_hbox_new(FALSE, kPadding);
  gtk_container_set_border_width(GTK_CONTAINER(row), kPadding);
  gtk_box_pack_start(GTK_BOX(row), sentence_.get(), TRUE, TRUE, 0);
  gtk_box_pack_start(GTK_BOX(row), button_.get(), FALSE, FALSE, 0);
  gtk_container_add(GTK_CONTAINER(bar_.get()), row);
  wrap_with_width(sentence_.get(), bar_.get(), kBesideSentence);
  set_shown(bar_.get(), false);
}

UndoBar::~UndoBar() { g_signal_handlers_disconnect_by_data(button_.get(), this); }

void UndoBar::say(const std::string &sentence, std::function<void()> undo) {
  undo_ = std::move(undo);
  gtk_label_set_text(GTK_LABEL(sentence_.get()), sentence.c_str());
  set_shown(bar_.get(), true);
  gtk_widget_set_visible(button_.get(), bool(undo_));
  time_ = pb::SourceId(gdk_threads_add_timeout_seconds(kSeconds, on_time_over, this));
}

bool UndoBar::undo() {
  if (!undo_) return false;
  // What takes back may say something itself.
  const std::function<void()> undo = std::exchange(undo_, nullptr);
  hide();
  undo();
  return true;
}

void UndoBar::on_undo(GtkButton * /*button*/, gpointer self) {
  static_cast<UndoBar *>(self)->undo();
}

gboolean UndoBar::on_time_over(gpointer self) {
  auto *bar = static_cast<UndoBar *>(self);
  bar->time_.forget();
  bar->hide();
  return G_SOURCE_REMOVE;
}

void UndoBar::hide() {
  time_.remove();
  undo_ = nullptr;
  set_shown(bar_.get(), false);
}

}  // namespace gallery
