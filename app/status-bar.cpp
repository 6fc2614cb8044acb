#include "status-bar.hpp"

#include "text.hpp"
#include "widgets.hpp"

namespace gallery {
namespace {

constexpr int kPadding = 8;
constexpr int kBesideSentence = 72;

/// A path of many hundred letters must not push the pictures out of the window.
std::string shortened(const std::string &sentence) {
  constexpr glong kMost = 150;
  constexpr glong kEnds = kMost / 2;
  const glong length = g_utf8_strlen(sentence.c_str(), -1);
  if (length <= kMost) return sentence;
  const pb::StringPtr head(g_utf8_substring(sentence.c_str(), 0, kEnds));
  const pb::StringPtr tail(g_utf8_substring(sentence.c_str(), length - kEnds, length));
  return std::string(head.get()) + "\xe2\x80\xa6" + tail.get();
}

}  // namespace

StatusBar::StatusBar()
    : sentence_(pb::Ref<GtkWidget>::sink(gtk_label_new(nullptr))),
      dismiss_(pb::Ref<GtkWidget>::sink(gtk_button_new())) {
  gtk_label_set_line_wrap(GTK_LABEL(sentence_.get()), TRUE);
  gtk_label_set_line_wrap_mode(GTK_LABEL(sentence_.get()), PANGO_WRAP_WORD_CHAR);
  gtk_misc_set_alignment(GTK_MISC(sentence_.get()), 0, 0.5);
  gtk_widget_set_name(sentence_.get(), "status-bar-sentence");
  gtk_button_set_label(GTK_BUTTON(dismiss_.get()), "\xc3\x97");
  gtk_button_set_relief(GTK_BUTTON(dismiss_.get()), GTK_RELIEF_NONE);
  name_widget(dismiss_.get(), "status-bar-dismiss", text(Text::kDismiss));
  g_signal_connect(dismiss_.get(), "clicked", G_CALLBACK(on_dismissed), this);

  GtkWidget *row = gtk_hbox_new(FALSE, kPadding);
  gtk_box_pack_start(GTK_BOX(row), sentence_.get(), TRUE, TRUE, kPadding);
  gtk_box_pack_start(GTK_BOX(row), dismiss_.get(), FALSE, FALSE, 0);
  bar_ = pb::Ref<GtkWidget>::sink(gtk_event_box_new());
  gtk_widget_set_name(bar_.get(), "status-bar");
  gtk_container_add(GTK_CONTAINER(bar_.get()), row);
  wrap_with_width(sentence_.get(), bar_.get(), kBesideSentence);
  set_shown(bar_.get(), false);
}

StatusBar::~StatusBar() { g_signal_handlers_disconnect_by_data(dismiss_.get(), this); }

void StatusBar::update(const MediaIndexProgress &progress, const std::string &places) {
  problem_ = shortened(one_line(progress.problem));
  if (progress.running != FALSE) {
    say(fill(Text::kLookingThrough, {{"folder", places}, {"count", grouped(progress.media_files)}}),
        false);
  } else if (progress.problems > 0 && problem_ != dismissed_) {
    say(problem_, true);
  } else {
    set_shown(bar_.get(), false);
  }
}

void StatusBar::say(const std::string &sentence, bool can_dismiss) {
  gtk_label_set_text(GTK_LABEL(sentence_.get()), sentence.c_str());
  if (!gtk_widget_get_visible(bar_.get())) set_shown(bar_.get(), true);
  gtk_widget_set_visible(dismiss_.get(), can_dismiss);
}

void StatusBar::on_dismissed(GtkButton * /*button*/, gpointer self) {
  auto *bar = static_cast<StatusBar *>(self);
  bar->dismissed_ = bar->problem_;
  set_shown(bar->bar_.get(), false);
}

}  // namespace gallery
