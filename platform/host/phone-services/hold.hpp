/// Something asked of a daemon for as long as it is wanted, such as that the screen stays on.
#pragma once

#include <gio/gio.h>
#include <gio/gunixfdlist.h>

#include <cstddef>
#include <span>

namespace phone::power {

/// Where to ask, and how. The reply to `take` is a cookie (u) that `give_back` takes, or a
/// descriptor (h) that is closed to give back.
struct Daemon {
  const char *name;
  const char *path;
  const char *interface;
  const char *take;
  const char *give_back;  ///< NULL where a descriptor is closed
};

/// Main loop only; lives as long as the process, because replies come at any time. A daemon gives
/// everything back itself when the process ends, as its connection to the bus ends with it.
class Hold {
 public:
  /// @param daemons asked in turn until one agrees
  /// @param make_arguments the arguments of `take`
  Hold(GBusType bus, std::span<const Daemon> daemons, GVariant *(*make_arguments)())
      : bus_(bus), daemons_(daemons), make_arguments_(make_arguments) {}
  Hold(const Hold &) = delete;
  Hold &operator=(const Hold &) = delete;

  /// Takes it, or gives it back, without waiting for the daemon. A daemon that is not there or
  /// refuses is asked again when it is wanted the next time.
  void want(bool wanted);

 private:
  static void answered(GObject *source, GAsyncResult *result, gpointer self);
  void take();
  void ask(GDBusConnection *connection);
  void keep(GVariant *reply, GUnixFDList *descriptors);
  void give_back();

  GBusType bus_;
  std::span<const Daemon> daemons_;
  GVariant *(*make_arguments_)();
  bool wanted_ = false;
  bool asking_ = false;
  bool held_ = false;
  std::size_t daemon_ = 0;  // that is asked, or that agreed
  guint32 cookie_ = 0;
  int descriptor_ = -1;
};

}  // namespace phone::power
