/// How much a grid of pictures costs by the number of its rows: first paint, jumps, frames of
/// smooth scrolling, memory. See README.md.
#include <icon-view.h>
#include <phone-theme.h>
#include <sys/wait.h>
#include <unistd.h>
#include <virtual-list-store.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "glib-ptr.hpp"

namespace {

constexpr int kCell = 148;
constexpr int kRuns = 7;
constexpr int kJumps = 50;
constexpr int kFrames = 400;
constexpr int kFrameStep = 23;  // pixels: a line comes in every seventh frame
constexpr int kPictures = 16;

double now_ms() { return static_cast<double>(g_get_monotonic_time()) / 1e3; }

double quantile(std::vector<double> values, double share) {
  std::sort(values.begin(), values.end());
  const auto last = static_cast<double>(values.size() - 1);
  return values[static_cast<std::size_t>(last * share)];
}

double median(std::vector<double> values) { return quantile(std::move(values), 0.5); }

double resident_mb() {
  std::ifstream status("/proc/self/statm");
  long pages = 0;
  status >> pages >> pages;
  return static_cast<double>(pages) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

struct Figures {
  double first_paint;
  double jump;
  double frame;
  double slow_frame;
  double worst_frame;
  double memory;
  double fills;
};

struct Source {
  std::array<pb::Ref<GdkPixbuf>, kPictures> pictures;
  int fills = 0;

  Source() {
    for (int i = 0; i < kPictures; ++i) {
      auto &picture = pictures[static_cast<std::size_t>(i)];
      picture =
          pb::Ref<GdkPixbuf>::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, kCell, kCell));
      guchar *pixels = gdk_pixbuf_get_pixels(picture.get());
      const int stride = gdk_pixbuf_get_rowstride(picture.get());
      for (int y = 0; y < kCell; ++y) {
        for (int x = 0; x < 3 * kCell; ++x) {
          pixels[y * stride + x] = static_cast<guchar>(x * (i + 3) + y * (i + 7));
        }
      }
    }
  }

  static void fill(GtkVirtualListStore *store, gint, gint, gint row, Source *self) {
    ++self->fills;
    GtkTreeIter iter;
    if (!gtk_virtual_list_store_iter_nth(store, &iter, row)) return;
    gtk_virtual_list_store_set(store, &iter, 0,
                               self->pictures[static_cast<std::size_t>(row % kPictures)].get(), -1);
  }
};

/// Brings everything that is due to the screen, what one repaint left to the next included, and
/// waits for the server.
void paint() {
  gdk_window_process_all_updates();
  while (gtk_events_pending()) gtk_main_iteration();
  gdk_display_sync(gdk_display_get_default());
}

gboolean note_expose(GtkWidget *, GdkEventExpose *, gboolean *exposed) {
  *exposed = TRUE;
  return FALSE;
}

struct Grid {
  GtkWidget *window = gtk_window_new(GTK_WINDOW_POPUP);
  GtkWidget *view = phone_icon_view_new();
  GtkAdjustment *adjustment = nullptr;
  pb::Ref<GtkVirtualListStore> store = pb::Ref<GtkVirtualListStore>::adopt(
      GTK_VIRTUAL_LIST_STORE(g_object_new(GTK_TYPE_VIRTUAL_LIST_STORE, nullptr)));

  Grid(int rows, Source &source) {
    GType types[] = {GDK_TYPE_PIXBUF};
    gtk_virtual_list_store_set_column_types(store.get(), 1, types);
    gtk_virtual_list_store_set_cache_size(store.get(), 100);
    gtk_virtual_list_store_set_total_size(store.get(), rows);
    g_signal_connect(store.get(), "fill-cache", G_CALLBACK(Source::fill), &source);
    phone_icon_view_set_cell_size(PHONE_ICON_VIEW(view), kCell, kCell);
    phone_icon_view_set_cell(PHONE_ICON_VIEW(view), gtk_cell_renderer_pixbuf_new(), "pixbuf", 0);
    phone_icon_view_set_model(PHONE_ICON_VIEW(view), GTK_TREE_MODEL(store.get()));
    GtkWidget *scrolled = gtk_scrolled_window_new(nullptr, nullptr);
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scrolled), GTK_POLICY_NEVER,
                                   GTK_POLICY_AUTOMATIC);
    gtk_container_add(GTK_CONTAINER(scrolled), view);
    gtk_container_add(GTK_CONTAINER(window), scrolled);
    gtk_window_set_default_size(GTK_WINDOW(window), 480, 800);
    adjustment = gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(scrolled));
  }

  void show() {
    gboolean exposed = FALSE;
    const gulong handler =
        g_signal_connect(view, "expose-event", G_CALLBACK(note_expose), &exposed);
    gtk_widget_show_all(window);
    while (!exposed) gtk_main_iteration();
    paint();
    g_signal_handler_disconnect(view, handler);
  }
};

Figures measure(int rows) {
  Source source;
  const double memory = resident_mb();
  const double start = now_ms();
  Grid grid(rows, source);
  grid.show();
  Figures figures{};
  figures.first_paint = now_ms() - start;
  figures.fills = source.fills;

  std::vector<double> jumps;
  for (int i = 1; i <= kJumps; ++i) {
    const double begin = now_ms();
    phone_icon_view_scroll_to_row(
        PHONE_ICON_VIEW(grid.view),
        static_cast<int>(static_cast<gint64>(rows) * (i * 37 % 100) / 100), 0);
    paint();
    jumps.push_back(now_ms() - begin);
  }
  figures.jump = median(jumps);

  gtk_adjustment_set_value(grid.adjustment, 0);
  paint();
  std::vector<double> frames;
  for (int i = 1; i <= kFrames; ++i) {
    const double begin = now_ms();
    gtk_adjustment_set_value(grid.adjustment, i * kFrameStep);
    paint();
    frames.push_back(now_ms() - begin);
  }
  figures.frame = median(frames);
  figures.slow_frame = quantile(frames, 0.95);
  figures.worst_frame = *std::max_element(frames.begin(), frames.end());
  figures.memory = resident_mb() - memory;
  return figures;
}

/// Each run in a process of its own: what one left in caches would help the next.
Figures measure_apart(const char *program, int rows) {
  std::array<int, 2> pipe_ends{};
  if (pipe(pipe_ends.data()) != 0) return {};
  const pid_t child = fork();
  if (child == 0) {
    dup2(pipe_ends[1], STDOUT_FILENO);
    const std::string count = std::to_string(rows);
    execl(program, program, "--once", count.c_str(), nullptr);
    _exit(127);
  }
  close(pipe_ends[1]);
  Figures figures{};
  const bool whole = read(pipe_ends[0], &figures, sizeof figures) == sizeof figures;
  close(pipe_ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (!whole || status != 0) {
    fprintf(stderr, "The run with %d rows failed.\n", rows);
    exit(1);
  }
  return figures;
}

Figures median_of_runs(const char *program, int rows) {
  std::vector<Figures> runs;
  for (int i = 0; i < kRuns; ++i) runs.push_back(measure_apart(program, rows));
  const auto pick = [&runs](double Figures::*member) {
    std::vector<double> values;
    for (const Figures &run : runs) values.push_back(run.*member);
    return median(values);
  };
  Figures figures{};
  for (double Figures::*member :
       {&Figures::first_paint, &Figures::jump, &Figures::frame, &Figures::slow_frame,
        &Figures::worst_frame, &Figures::memory, &Figures::fills}) {
    figures.*member = pick(member);
  }
  return figures;
}

}  // namespace

int main(int argc, char **argv) {
  gtk_init(&argc, &argv);
  if (argc == 3 && strcmp(argv[1], "--once") == 0) {
    phone_theme_apply(TRUE, nullptr);
    const Figures figures = measure(atoi(argv[2]));
    return write(STDOUT_FILENO, &figures, sizeof figures) == sizeof figures ? 0 : 1;
  }
  printf("%9s %12s %8s %8s %10s %8s %9s %6s\n", "rows", "first paint", "jump", "frame", "95 of 100",
         "worst", "memory", "fills");
  for (const int rows : {1'000, 1'000'000}) {
    const Figures figures = median_of_runs("/proc/self/exe", rows);
    printf("%9d %9.1f ms %5.2f ms %5.2f ms %7.2f ms %5.2f ms %6.1f MB %6.0f\n", rows,
           figures.first_paint, figures.jump, figures.frame, figures.slow_frame,
           figures.worst_frame, figures.memory, figures.fills);
  }
  return 0;
}
