/// Walks through the gallery's screens as a person would and photographs them:
/// photobrowser-tour START BUILD PICTURES OUT
/// START starts the gallery of BUILD over the folder PICTURES; OUT receives the pictures, an
/// index.html and results.json.
#include <fcntl.h>
#include <glib/gstdio.h>
#include <gtk/gtk.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "screen.hpp"

namespace {

enum class Wait { kForRest, kNot };

struct Step {
  const char *name;
  const char *sentence;
  /// Text that the window's title must contain afterwards; "" for any.
  const char *title;
  std::function<void(const tour::Screen &)> act;
  Wait wait = Wait::kForRest;
};

/// A start of the gallery and what is looked at until it ends.
struct Chapter {
  std::string place;
  std::vector<Step> steps;
};

struct Result {
  std::string file;
  std::string name;
  std::string sentence;
  std::string title;
  int settled_ms = -1;
  std::string problem;
};

constexpr int kQuietMs = 700;
constexpr int kTimeoutMs = 20000;

void keys(const tour::Screen &screen, std::initializer_list<const char *> names) {
  for (const char *name : names) {
    screen.press(name);
    tour::pause(60);
  }
}

void nothing(const tour::Screen & /*screen*/) {}

std::vector<Step> walk() {
  return {
      {"looking", "The grid can be used while the pictures are looked for.", "All pictures",
       [](const tour::Screen &) { tour::pause(150); }, Wait::kNot},
      {"all-pictures", "All pictures, the newest first, three in a row.", "All pictures",
       [](const tour::Screen &) {}},
      {"scrolled", "A drag scrolls; the rows that come into view get their pictures.",
       "All pictures", [](const tour::Screen &screen) { screen.drag(240, 650, 240, 250); }},
      {"far-down", "End goes to the last of more than ten thousand pictures at once.",
       "All pictures", [](const tour::Screen &screen) { keys(screen, {"End"}); }},
      {"viewer", "Return opens a picture.", "",
       [](const tour::Screen &screen) {
         keys(screen, {"Home", "Return"});
       }},
      {"viewer-next", "The right arrow shows the next one.", "",
       [](const tour::Screen &screen) {
         keys(screen, {"Right", "Right"});
       }},
      {"viewer-full-screen", "F11 gives the picture the whole screen.", "",
       [](const tour::Screen &screen) { keys(screen, {"F11"}); }},
      {"viewer-swipe", "A swipe does the same.", "",
       [](const tour::Screen &screen) {
         keys(screen, {"F11"});
         tour::pause(600);
         screen.drag(380, 400, 100, 400);
       }},
      {"viewer-closer", "Plus and the wheel look closer, with all that the picture has.", "",
       [](const tour::Screen &screen) {
         keys(screen, {"Right", "Right"});
         screen.settle(kQuietMs, kTimeoutMs);
         keys(screen, {"plus", "plus"});
       }},
      {"details", "What is known of the picture.", "Details",
       [](const tour::Screen &screen) { keys(screen, {"alt+Return"}); }},
      {"back", "Escape goes back to where the viewer left the list.", "All pictures",
       [](const tour::Screen &screen) {
         keys(screen, {"Escape"});
         tour::pause(500);
         keys(screen, {"Escape", "Escape"});
       }},
      {"deleted", "A picture goes to the trash, and the bar takes that back.", "All pictures",
       [](const tour::Screen &screen) { keys(screen, {"Delete"}); }},
      {"small", "Ctrl and minus show six pictures in a row.", "All pictures",
       [](const tour::Screen &screen) {
         keys(screen, {"ctrl+z", "ctrl+minus"});
       }},
      {"help", "F1 tells the keys.", "Help",
       [](const tour::Screen &screen) { keys(screen, {"F1"}); }},
      {"albums", "Albums with cover, name and number of files.", "Albums",
       [](const tour::Screen &screen) {
         keys(screen, {"Escape"});
         tour::pause(500);
         keys(screen, {"ctrl+plus", "ctrl+2"});
       }},
      {"album", "The contents of an album.", "",
       [](const tour::Screen &screen) {
         keys(screen, {"Home", "Return"});
       }},
      {"album-viewer", "The viewer over an album stays inside it.", "",
       [](const tour::Screen &screen) { keys(screen, {"Return"}); }},
      {"albums-again", "Back twice.", "Albums",
       [](const tour::Screen &screen) {
         keys(screen, {"Escape"});
         tour::pause(500);
         keys(screen, {"Escape"});
       }},
  };
}

std::vector<Chapter> chapters(const std::string &pictures, const std::string &folder) {
  return {
      {pictures, walk()},
      {folder,
       {{"empty", "A folder without pictures says so, and what to do.", "All pictures", nothing},
        {"empty-albums", "There are no albums either.", "Albums",
         [](const tour::Screen &screen) { keys(screen, {"ctrl+2"}); }}}},
      {"/pictures/that are not there",
       {{"no-folder", "A folder that cannot be read is named with the reason.", "All pictures",
         nothing}}}};
}

std::string escaped(const std::string &text) {
  const pb::StringPtr valid(g_utf8_make_valid(text.c_str(), -1));
  const pb::StringPtr safe(g_markup_escape_text(valid.get(), -1));
  return safe.get();
}

std::string json_text(const std::string &text) {
  const pb::StringPtr valid(g_utf8_make_valid(text.c_str(), -1));
  std::string out = "\"";
  for (const char *p = valid.get(); *p != '\0'; ++p) {
    if (*p == '"' || *p == '\\') out += '\\';
    if (static_cast<unsigned char>(*p) >= 0x20) out += *p;
  }
  return out + "\"";
}

Result take(const tour::Screen &screen, const Step &step, int number, const std::string &folder) {
  step.act(screen);
  Result result;
  result.name = step.name;
  result.sentence = step.sentence;
  result.settled_ms = step.wait == Wait::kNot ? 0 : screen.settle(kQuietMs, kTimeoutMs);
  if (result.settled_ms < 0) result.problem = "The screen did not come to rest.";
  result.title = screen.title();
  if (result.title.find(step.title) == std::string::npos) {
    result.problem = "The title is not \"" + std::string(step.title) + "\".";
  }
  std::array<char, 8> prefix{};
  g_snprintf(prefix.data(), prefix.size(), "%02d-", number);
  result.file = prefix.data() + result.name + ".png";
  pb::ErrorPtr error;
  if (!gdk_pixbuf_save(screen.photograph().get(), (folder + "/" + result.file).c_str(), "png",
                       pb::out(error), nullptr)) {
    result.problem = error->message;
  }
  return result;
}

void write_report(const std::string &folder, const std::vector<Result> &results,
                  int first_window_ms) {
  std::ofstream page(folder + "/index.html");
  page << "<!DOCTYPE html>\n<html lang=\"en\"><meta charset=\"utf-8\"><title>The gallery's "
          "screens</title>\n<style>body{font-family:sans-serif;display:flex;flex-wrap:wrap;"
          "gap:16px}figure{width:240px;margin:0}img{width:240px}</style>\n";
  std::ofstream json(folder + "/results.json");
  json << "{\n  \"first_window_ms\": " << first_window_ms << ",\n  \"screens\": [\n";
  for (std::size_t i = 0; i < results.size(); ++i) {
    const Result &result = results[i];
    page << "<figure><img src=\"" << result.file << "\" alt=\"" << escaped(result.sentence)
         << "\"><figcaption>" << escaped(result.sentence) << "</figcaption></figure>\n";
    json << "    {\"file\": " << json_text(result.file)
         << ", \"title\": " << json_text(result.title) << ", \"settled_ms\": " << result.settled_ms
         << ", \"problem\": " << json_text(result.problem) << "}"
         << (i + 1 < results.size() ? ",\n" : "\n");
  }
  json << "  ]\n}\n";
  page << "</html>\n";
}

GPid start_gallery(const char *start, const char *build, const char *pictures) {
  std::vector<std::string> words = {start, build, pictures};
  std::vector<gchar *> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string &word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  GPid pid = 0;
  pb::ErrorPtr error;
  if (!g_spawn_async(nullptr, arguments.data(), nullptr, G_SPAWN_DO_NOT_REAP_CHILD, nullptr,
                     nullptr, &pid, pb::out(error))) {
    std::fprintf(stderr, "%s\n", error->message);
    return 0;
  }
  return pid;
}

/// Asks the gallery to end, by key; a gallery that does not is ended by signal.
std::string leave(const tour::Screen &screen, GPid gallery) {
  screen.press("ctrl+q");
  for (int waited = 0; waited < 5000; waited += 50) {
    tour::pause(50);
    int status = 0;
    if (waitpid(gallery, &status, WNOHANG) == gallery) {
      if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return "";
      return "The gallery ended with an error.";
    }
  }
  kill(gallery, SIGTERM);
  waitpid(gallery, nullptr, 0);
  return "The gallery did not end by itself.";
}

struct Places {
  const char *start;
  const char *build;
  const char *out;
};

/// @return milliseconds from the start to the first window; -1 when there was none, or when the
///         gallery did not end as it should
int read_chapter(const Chapter &chapter, const Places &places, std::vector<Result> &results) {
  tour::Screen screen;
  const gint64 begun = g_get_monotonic_time();
  const GPid gallery = start_gallery(places.start, places.build, chapter.place.c_str());
  if (gallery == 0) return -1;
  if (!screen.wait_for_window(kTimeoutMs)) {
    std::fprintf(stderr, "The gallery shows no window.\n");
    kill(gallery, SIGTERM);
    waitpid(gallery, nullptr, 0);
    return -1;
  }
  const int window_ms = static_cast<int>((g_get_monotonic_time() - begun) / 1000);
  for (const Step &step : chapter.steps) {
    results.push_back(take(screen, step, static_cast<int>(results.size()) + 1, places.out));
    const Result &result = results.back();
    std::printf("%s  %5d ms  %s%s\n", result.file.c_str(), result.settled_ms,
                result.sentence.c_str(),
                result.problem.empty() ? "" : ("  PROBLEM: " + result.problem).c_str());
  }
  const std::string ending = leave(screen, gallery);
  if (ending.empty()) return window_ms;
  std::printf("PROBLEM: %s\n", ending.c_str());
  return -1;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 5 || !gtk_init_check(nullptr, nullptr)) {
    std::fprintf(stderr, "Usage: photobrowser-tour START BUILD PICTURES OUT, on an X display\n");
    return 2;
  }
  const std::string folder = argv[4];
  const pb::StringPtr empty(g_dir_make_tmp("no-pictures-XXXXXX", nullptr));
  if (!empty) return 1;
  std::vector<Result> results;
  int first_window_ms = -1;
  int problems = 0;
  for (const Chapter &chapter : chapters(argv[3], empty.get())) {
    const int window_ms = read_chapter(chapter, {argv[1], argv[2], folder.c_str()}, results);
    if (first_window_ms < 0) first_window_ms = window_ms;
    if (window_ms < 0) ++problems;
  }
  g_rmdir(empty.get());
  for (const Result &result : results) {
    if (!result.problem.empty()) ++problems;
  }
  write_report(folder, results, first_window_ms);
  std::printf("%zu screens, %d problems, first window after %d ms\n", results.size(), problems,
              first_window_ms);
  return problems == 0 ? 0 : 1;
}
