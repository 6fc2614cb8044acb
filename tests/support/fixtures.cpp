#include <gtk/gtk.h>

#include <cstdlib>
#include <string_view>

#include "support/glib-test.hpp"

namespace support {
namespace {

/// An X server whose last client has just left starts over and refuses connections meanwhile.
bool open_display() {
  constexpr int kAttempts = 20;
  constexpr gulong kPauseUs = 50'000;
  for (int attempt = 1; !gtk_init_check(nullptr, nullptr); ++attempt) {
    if (std::getenv("DISPLAY") == nullptr || attempt == kAttempts) return false;
    g_usleep(kPauseUs);
  }
  return true;
}

}  // namespace

void DisplayTest::SetUp() {
  if (open_display()) return;
  const char *without = std::getenv("PB_TESTS_WITHOUT_DISPLAY");
  if (without != nullptr && std::string_view(without) == "1") {
    GTEST_SKIP() << "there is no display";
  }
  FAIL() << "There is no display. Run the test under xvfb-run, or set PB_TESTS_WITHOUT_DISPLAY=1 "
            "to skip it.";
}

ExpectFinalized::ExpectFinalized(gpointer object, std::source_location where)
    : object_(object), type_(G_OBJECT_TYPE_NAME(object)), where_(where) {
  // Data of an object goes in its finalisation; a weak reference would end with its disposal.
  const std::string key = "expect-finalized-" + std::to_string(reinterpret_cast<gintptr>(this));
  g_object_set_data_full(G_OBJECT(object), key.c_str(), this, note_finalized);
}

ExpectFinalized::~ExpectFinalized() {
  if (finalized_) return;
  const std::string key = "expect-finalized-" + std::to_string(reinterpret_cast<gintptr>(this));
  g_object_steal_data(G_OBJECT(object_), key.c_str());
  ADD_FAILURE_AT(where_.file_name(), static_cast<int>(where_.line()))
      << "a " << type_ << " was not finalised; " << G_OBJECT(object_)->ref_count
      << " reference(s) left";
}

void ExpectFinalized::note_finalized(gpointer self) {
  static_cast<ExpectFinalized *>(self)->finalized_ = true;
}

}  // namespace support
