#include <event-system.h>

#include <array>
#include <fstream>

#include "pb-debug.h"
#include "pb-util-dialog.h"
#include "pb-util-resource.h"
#include "util/paths.hpp"
#include "util/pb-util/dialogs.hpp"
#include "util/pb-util/private.hpp"

using pb::util::dialogs;

namespace {

constexpr const char *kAnimationFile =
    "/usr/apps/com.velmora.photobrowser/res/bitmap/WVGA_Pb/download_indicator.gif";

/// Sides of an animation that is given to the decoder, which allocates by what the header says.
constexpr int kLargestAnimation = 512;

/// Of what stands in for the animation, pixels.
constexpr gint kSpinnerSize = 44;

constexpr gint kDoneLabel = 1069;
constexpr gint kCancelLabel = 10066;

constexpr gint kOverMainWindow = GTK_DIALOG_MODAL | GTK_DIALOG_DESTROY_WITH_PARENT;

/// Looks at the signature and the size in front of the animation.
bool is_small_gif(const std::string &file) {
  std::array<unsigned char, 10> head{};
  if (!std::ifstream(file, std::ios::binary)
           .read(reinterpret_cast<char *>(head.data()), head.size())) {
    return false;
  }
  const bool gif = head[0] == 'G' && head[1] == 'I' && head[2] == 'F';
  return gif && head[6] + 256 * head[7] <= kLargestAnimation &&
         head[8] + 256 * head[9] <= kLargestAnimation;
}

/// The running animation; null when its file is missing or damaged.
pb::Ref<GdkPixbufAnimation> load_animation(const std::string &file) {
  if (!is_small_gif(file)) return nullptr;
  return pb::Ref<GdkPixbufAnimation>::adopt(
      gdk_pixbuf_animation_new_from_file(file.c_str(), nullptr));
}

void progress_answered(GtkDialog *dialog, gint, gpointer) {
  gtk_widget_destroy(GTK_WIDGET(dialog));
}

/// The dialog's one button: without a handler it closes the dialog, with one it asks to stop.
void add_progress_button(GtkStyleDialog *dialog, bool has_handler) {
  const pb::util::ResourceScope scope;
  GtkWidget *button =
      has_handler
          ? gtk_style_dialog_add_button(dialog, pb_get_res_string(kCancelLabel),
                                        GTK_RESPONSE_CANCEL)
          : gtk_style_dialog_add_button(dialog, pb_get_res_string(kDoneLabel), GTK_RESPONSE_OK);
  dialogs().progress_button.set(button);
}

}  // namespace

namespace pb::util {

void add_animation(GtkStyleDialog *dialog) {
  const std::string file = phone_path(kAnimationFile);
  const Ref<GdkPixbufAnimation> animation = load_animation(file);
  GtkWidget *moving = nullptr;
  if (animation) {
    moving = gtk_image_new_from_animation(animation.get());
  } else {
    PB_LOG(PB_LOG_ERROR, "no animation in %s\n", file.c_str());
    moving = gtk_spinner_new();
    gtk_widget_set_size_request(moving, kSpinnerSize, kSpinnerSize);
    gtk_spinner_start(GTK_SPINNER(moving));
  }
  gtk_container_add(GTK_CONTAINER(gtk_style_dialog_get_content_area(dialog)), moving);
  gtk_widget_show(moving);
}

void show_centred(GtkStyleDialog *dialog) {
  gint width = 0;
  gint height = 0;
  gtk_window_get_size(GTK_WINDOW(dialog), &width, &height);
  GdkScreen *screen = gdk_screen_get_default();
  gtk_window_move(GTK_WINDOW(dialog), (gdk_screen_get_width(screen) - width) >> 1,
                  (gdk_screen_get_height(screen) - height) >> 1);
  gtk_widget_show_all(GTK_WIDGET(dialog));
}

}  // namespace pb::util

void pb_util_start_progress_bar(const gchar *title, const gchar *text, GCallback response_handler) {
  if (dialogs().current) {
    PB_LOG(PB_LOG_WARNING, "message_dialog dialog is not NULL !!!\n\n");
    return;
  }
  GtkStyleDialog *dialog = pb::util::make_current_dialog(
      pb::util::kProgressStyle, pb::util::dialog_parent(), kOverMainWindow);
  if (dialog == nullptr) {
    PB_LOG(PB_LOG_WARNING, "dialog creation failed\n\n");
    return;
  }
  const bool has_handler = response_handler != nullptr;
  g_signal_connect(dialog, "response",
                   has_handler ? response_handler : G_CALLBACK(progress_answered), nullptr);
  pb::util::set_texts(dialog, title, text);
  gtk_label_set_ellipsize(GTK_LABEL(gtk_style_dialog_get_text_label(dialog)), PANGO_ELLIPSIZE_END);
  pb::util::add_animation(dialog);
  add_progress_button(dialog, has_handler);
  pb::util::show_centred(dialog);
  PB_LOG(PB_LOG_INFO, "Dialog Creation exit\n\n");
}

void pb_util_update_progress_bar(const gchar *text) {
  GtkWidget *dialog = dialogs().current.get();
  if (GTK_IS_STYLE_DIALOG(dialog)) pb::util::set_texts(GTK_STYLE_DIALOG(dialog), nullptr, text);
  GtkWidget *button = dialogs().progress_button.get();
  if (!GTK_IS_BUTTON(button)) return;
  gtk_button_set_label(GTK_BUTTON(button), pb::util::copy_res_string(kDoneLabel).get());
}

gboolean pb_util_noti_publish(gint event_id, gpointer data) {
  const gint error = EvtSysEventPublish(0, event_id, data);
  if (error == 0) return TRUE;
  PB_LOG(PB_LOG_ERROR, "EvtSysEventPublish failed : event = %d, error = %d\n", event_id, error);
  return FALSE;
}
