#include "empty-page.hpp"

#include <pb-util-resource.h>

#include "widgets.hpp"

namespace gallery {
namespace {

constexpr int kPicture = 904;
constexpr int kSpacing = 12;
constexpr int kMargins = 64;

}  // namespace

EmptyPage::EmptyPage()
    : sentence_(make_wrapped_label("empty-page-sentence")),
      hint_(make_wrapped_label("empty-page-hint")) {
  GtkWidget *column = gtk_vbox_new(FALSE, kSpacing);
  const auto picture = pb::Ref<GdkPixbuf>::adopt(pb_get_pixbuf(kPicture));
  gtk_box_pack_start(GTK_BOX(column), gtk_image_new_from_pixbuf(picture.get()), FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(column), sentence_, FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(column), hint_, FALSE, FALSE, 0);
  const GdkColor grey{0, 0xa800, 0xac00, 0xb400};
  gtk_widget_modify_fg(hint_, GTK_STATE_NORMAL, &grey);
  page_ = pb::Ref<GtkWidget>::sink(gtk_alignment_new(0.5, 0.4F, 0, 0));
  gtk_widget_set_name(page_.get(), "empty-page");
  gtk_container_add(GTK_CONTAINER(page_.get()), column);
  wrap_with_width(sentence_, page_.get(), kMargins);
  wrap_with_width(hint_, page_.get(), kMargins);
}

void EmptyPage::say(const std::string &sentence, const std::string &hint) {
  gtk_label_set_text(GTK_LABEL(sentence_), sentence.c_str());
  gtk_label_set_text(GTK_LABEL(hint_), hint.c_str());
}

}  // namespace gallery
