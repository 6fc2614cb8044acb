#include <glib-unix.h>
#include <gtk/gtk.h>
#include <pb-util-resource.h>
#include <phone-threads.h>

#include <clocale>
#include <csignal>

#include "log-writer.hpp"
#include "options.hpp"
#include "session.hpp"
#include "stall-watch.hpp"
#include "text.hpp"

namespace {

gboolean quit(gpointer /*data*/) {
  gtk_main_quit();
  return G_SOURCE_CONTINUE;
}

int browse(gallery::Options options) {
  g_unix_signal_add(SIGINT, quit, nullptr);
  g_unix_signal_add(SIGTERM, quit, nullptr);
  gdk_threads_enter();
  {
    const gallery::Session session(std::move(options));
    gallery::watch_for_stalls();
    gtk_main();
    gallery::write_report();
  }
  gdk_threads_leave();
  return 0;
}

}  // namespace

int main(int argc, char **argv) {
  g_log_set_writer_func(gallery::write_log_line, nullptr, nullptr);
  setlocale(LC_ALL, "");
  g_set_prgname("photobrowser");
  pb_res_open();
  const bool has_texts = gallery::load_texts();
  gallery::Start start = gallery::read_arguments(argc, argv);
  if (start.exit_code) return *start.exit_code;
  if (!has_texts) {
    g_printerr("photobrowser: its resource files are missing, so it cannot start.\n");
    return gallery::kExitBroken;
  }
  for (const std::string &problem : start.options.problems) {
    g_printerr("photobrowser: %s\n", problem.c_str());
  }

  phone_threads_init();
  if (!gtk_init_check(nullptr, nullptr)) {
    g_printerr("photobrowser: There is no display here, so the gallery cannot show its window.\n");
    return gallery::kExitNoDisplay;
  }
  const int code = browse(std::move(start.options));
  pb_res_close();
  return code;
}
