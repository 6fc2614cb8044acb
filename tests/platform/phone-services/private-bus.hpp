/// A bus of the test's own with daemons that the test plays, in place of the machine's.
#pragma once

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "glib-ptr.hpp"

namespace test {

/// Runs the main loop until `done`, for at most five seconds.
bool wait_for(const std::function<bool()> &done);

/// One bus, which stands for both the session's and the system's. Started in the test's process
/// before anything connects, so that everything in it finds this one.
class PrivateBus {
 public:
  /// @param service_folder (nullable) of services that the bus may start
  explicit PrivateBus(const char *service_folder = nullptr);
  ~PrivateBus();
  PrivateBus(const PrivateBus &) = delete;
  PrivateBus &operator=(const PrivateBus &) = delete;
  [[nodiscard]] const char *address() const { return address_.c_str(); }

 private:
  GPid daemon_ = 0;
  std::string address_;
};

/// A daemon: answers calls on the main loop over a connection of its own.
class Daemon {
 public:
  /// Gets the method's name and the invocation, which it answers or leaves unanswered.
  using Handler = std::function<void(const std::string &method, GDBusMethodInvocation *call)>;

  Daemon(const PrivateBus &bus, const char *name);
  ~Daemon();
  Daemon(const Daemon &) = delete;
  Daemon &operator=(const Daemon &) = delete;

  /// @param methods introspection data of an interface, such as
  ///        "<method name='Inhibit'><arg type='s' direction='in'/></method>"
  void serve(const char *path, const std::string &interface, const std::string &methods,
             Handler handler);
  /// The calls so far: the method and its arguments as text.
  std::vector<std::string> calls;

 private:
  struct Object {
    Daemon *daemon;
    Handler handler;
  };
  static void called(GDBusConnection *connection, const gchar *sender, const gchar *path,
                     const gchar *interface, const gchar *method, GVariant *arguments,
                     GDBusMethodInvocation *call, gpointer object);

  pb::Ref<GDBusConnection> connection_;
  std::vector<std::unique_ptr<Object>> objects_;
};

}  // namespace test
