/// The real gallery in a display of its own.
#pragma once

#include <glib.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "glib-ptr.hpp"
#include "support/pixbufs.hpp"
#include "support/temp-dir.hpp"
#include "tools/tour/screen.hpp"

namespace gallery_test {

/// An X server for this process alone, of a phone's size; GTK+ of this process is connected to
/// it. Tests run beside each other, and keys go to one window at a time.
class PrivateDisplay {
 public:
  PrivateDisplay();
  ~PrivateDisplay();
  PrivateDisplay(const PrivateDisplay &) = delete;
  PrivateDisplay &operator=(const PrivateDisplay &) = delete;

  [[nodiscard]] const std::string &name() const { return name_; }

 private:
  GPid server_ = 0;
  std::string name_;
};

/// Runs the main loop of this process until something holds, for at most ten seconds.
bool eventually(const std::function<bool()> &holds);

/// How a program ended and what it said.
struct Outcome {
  int exit_code = -1;  ///< -1 when a signal ended it
  std::string out;
  std::string err;
};

/// Runs the gallery to its end, without a display unless one is named.
Outcome run_to_the_end(const std::vector<std::string> &arguments, const std::string &display = "");

/// A gallery that is running. It ends with its owner.
class Program {
 public:
  Program(const PrivateDisplay &display, const std::vector<std::string> &arguments);
  ~Program();
  Program(const Program &) = delete;
  Program &operator=(const Program &) = delete;

  /// Asks it to end as the session manager does and waits for it.
  Outcome stop();

 private:
  GPid pid_ = 0;
  std::string err_path_;
};

}  // namespace gallery_test
