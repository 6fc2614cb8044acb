#include "phone-services/hold.hpp"

#include <unistd.h>

#include <memory>
#include <utility>

#include "glib-ptr.hpp"
#include "phone-services/bus.hpp"

namespace phone::power {
namespace {

constexpr int kDaemonsOwnTimeout = -1;

using VariantPtr = std::unique_ptr<GVariant, pb::FreeWith<g_variant_unref>>;

}  // namespace

void Hold::want(bool wanted) {
  wanted_ = wanted;
  if (asking_ || wanted_ == held_) return;  // the reply settles what was asked for meanwhile
  if (wanted_) {
    take();
  } else {
    give_back();
  }
}

void Hold::take() {
  asking_ = true;
  daemon_ = 0;
  bus::connect(bus_, [this](GDBusConnection *connection) {
    if (connection != nullptr) {
      ask(connection);
    } else {
      asking_ = false;
    }
  });
}

void Hold::ask(GDBusConnection *connection) {
  const Daemon &daemon = daemons_[daemon_];
  g_dbus_connection_call_with_unix_fd_list(
      connection, daemon.name, daemon.path, daemon.interface, daemon.take, make_arguments_(),
      nullptr, G_DBUS_CALL_FLAGS_NONE, kDaemonsOwnTimeout, nullptr, nullptr, answered, this);
}

void Hold::answered(GObject *source, GAsyncResult *result, gpointer self) {
  auto *hold = static_cast<Hold *>(self);
  auto *connection = G_DBUS_CONNECTION(source);
  pb::ErrorPtr error;
  GUnixFDList *raw_descriptors = nullptr;
  const VariantPtr reply(g_dbus_connection_call_with_unix_fd_list_finish(
      connection, &raw_descriptors, result, pb::out(error)));
  const auto descriptors = pb::Ref<GUnixFDList>::adopt(raw_descriptors);
  if (reply == nullptr) {
    g_debug("%s: %s", hold->daemons_[hold->daemon_].name, error->message);
    if (hold->wanted_ && hold->daemon_ + 1 < hold->daemons_.size()) {
      ++hold->daemon_;
      hold->ask(connection);
    } else {
      hold->asking_ = false;
    }
    return;
  }
  hold->asking_ = false;
  hold->keep(reply.get(), descriptors.get());
  hold->want(hold->wanted_);
}

void Hold::keep(GVariant *reply, GUnixFDList *descriptors) {
  const bool is_cookie = g_variant_is_of_type(reply, G_VARIANT_TYPE("(u)"));
  if (daemons_[daemon_].give_back != nullptr && is_cookie) {
    g_variant_get(reply, "(u)", &cookie_);
    held_ = true;
  } else if (descriptors != nullptr && g_unix_fd_list_get_length(descriptors) > 0) {
    descriptor_ = g_unix_fd_list_get(descriptors, 0, nullptr);
    held_ = descriptor_ != -1;
  }
  // A daemon that answers something else is not asked at once again.
  if (!held_) wanted_ = false;
}

void Hold::give_back() {
  held_ = false;
  if (descriptor_ != -1) {
    close(std::exchange(descriptor_, -1));
    return;
  }
  const Daemon &daemon = daemons_[daemon_];
  bus::connect(bus_, [&daemon, cookie = cookie_](GDBusConnection *connection) {
    if (connection == nullptr) return;
    g_dbus_connection_call(connection, daemon.name, daemon.path, daemon.interface, daemon.give_back,
                           g_variant_new("(u)", cookie), nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
                           kDaemonsOwnTimeout, nullptr, nullptr, nullptr);
  });
}

}  // namespace phone::power
