#include <cerrno>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "phone-services/bus.hpp"
#include "telephony.h"

namespace {

constexpr gint64 kLimitUs = G_USEC_PER_SEC / 2;   // for all questions together
constexpr gint64 kFreshUs = 30 * G_USEC_PER_SEC;  // an older answer is asked for again
constexpr gint kUnknownType = 0;

using VariantPtr = std::unique_ptr<GVariant, pb::FreeWith<g_variant_unref>>;

/// The type of a card, if there is one.
using Card = std::optional<gint>;

/// Asks daemons on the system bus, none of them after the limit.
class Questions {
 public:
  explicit Questions(GDBusConnection *bus) : bus_(bus) {}

  /// @return NULL for every failure; a daemon that does not run is not started
  [[nodiscard]] VariantPtr ask(const char *name, const char *path, const char *interface,
                               const char *method, GVariant *arguments, const char *reply) const {
    const VariantPtr owned(g_variant_ref_sink(arguments));
    const gint64 left_ms = (end_ - g_get_monotonic_time()) / 1000;
    if (left_ms <= 0) return nullptr;
    pb::ErrorPtr error;
    VariantPtr answer(g_dbus_connection_call_sync(
        bus_, name, path, interface, method, owned.get(), G_VARIANT_TYPE(reply),
        G_DBUS_CALL_FLAGS_NO_AUTO_START, static_cast<gint>(left_ms), nullptr, pb::out(error)));
    if (answer == nullptr) g_debug("%s: %s", name, error->message);
    return answer;
  }

 private:
  GDBusConnection *bus_;
  gint64 end_ = g_get_monotonic_time() + kLimitUs;
};

constexpr const char *kModemManager = "org.freedesktop.ModemManager1";

gint type_of_sim(const Questions &questions, const char *sim) {
  const VariantPtr reply =
      questions.ask(kModemManager, sim, "org.freedesktop.DBus.Properties", "Get",
                    g_variant_new("(ss)", "org.freedesktop.ModemManager1.Sim", "SimType"), "(v)");
  if (reply == nullptr) return kUnknownType;
  const VariantPtr boxed(g_variant_get_child_value(reply.get(), 0));
  const VariantPtr type(g_variant_get_variant(boxed.get()));
  if (!g_variant_is_of_type(type.get(), G_VARIANT_TYPE_UINT32)) return kUnknownType;
  return static_cast<gint>(g_variant_get_uint32(type.get()));
}

/// The object of the first card in a modem; "/" stands for none.
std::optional<std::string> first_sim(GVariant *objects) {
  GVariantIter object;
  g_variant_iter_init(&object, objects);
  const gchar *path = nullptr;
  GVariant *raw_interfaces = nullptr;
  while (g_variant_iter_next(&object, "{&o@a{sa{sv}}}", &path, &raw_interfaces) != FALSE) {
    const VariantPtr interfaces(raw_interfaces);
    const VariantPtr modem(g_variant_lookup_value(
        interfaces.get(), "org.freedesktop.ModemManager1.Modem", G_VARIANT_TYPE_VARDICT));
    const gchar *sim = nullptr;
    if (modem == nullptr || g_variant_lookup(modem.get(), "Sim", "&o", &sim) == FALSE) continue;
    if (g_strcmp0(sim, "/") != 0) return sim;
  }
  return std::nullopt;
}

Card ask_modem_manager(const Questions &questions) {
  const VariantPtr reply = questions.ask(kModemManager, "/org/freedesktop/ModemManager1",
                                         "org.freedesktop.DBus.ObjectManager", "GetManagedObjects",
                                         g_variant_new("()"), "(a{oa{sa{sv}}})");
  if (reply == nullptr) return std::nullopt;
  const VariantPtr objects(g_variant_get_child_value(reply.get(), 0));
  const auto sim = first_sim(objects.get());
  if (!sim) return std::nullopt;
  return type_of_sim(questions, sim->c_str());
}

constexpr const char *kOfono = "org.ofono";

bool has_card(const Questions &questions, const char *modem) {
  const VariantPtr reply = questions.ask(kOfono, modem, "org.ofono.SimManager", "GetProperties",
                                         g_variant_new("()"), "(a{sv})");
  if (reply == nullptr) return false;
  const VariantPtr properties(g_variant_get_child_value(reply.get(), 0));
  gboolean present = FALSE;
  return g_variant_lookup(properties.get(), "Present", "b", &present) != FALSE && present != FALSE;
}

Card ask_ofono(const Questions &questions) {
  const VariantPtr reply = questions.ask(kOfono, "/", "org.ofono.Manager", "GetModems",
                                         g_variant_new("()"), "(a(oa{sv}))");
  if (reply == nullptr) return std::nullopt;
  const VariantPtr modems(g_variant_get_child_value(reply.get(), 0));
  GVariantIter modem;
  g_variant_iter_init(&modem, modems.get());
  const gchar *path = nullptr;
  GVariant *raw_properties = nullptr;
  while (g_variant_iter_next(&modem, "(&o@a{sv})", &path, &raw_properties) != FALSE) {
    const VariantPtr properties(raw_properties);
    if (has_card(questions, path)) return kUnknownType;
  }
  return std::nullopt;
}

/// What is known of the card. Asking takes up to half a second, so a worker does it and callers
/// get the answer that is there.
class Sim {
 public:
  struct Answer {
    gint error = EAGAIN;
    gint type = kUnknownType;
  };

  Answer get() {
    const std::scoped_lock lock(mutex_);
    const bool is_fresh =
        answer_.error != EAGAIN && g_get_monotonic_time() - answered_at_ < kFreshUs;
    if (!is_fresh && !asking_) {
      asking_ = true;
      g_thread_unref(g_thread_new("sim", ask, this));
    }
    return answer_;
  }

 private:
  static gpointer ask(gpointer self) {
    auto *sim = static_cast<Sim *>(self);
    const auto bus = phone::bus::connect_now(G_BUS_TYPE_SYSTEM);
    Card card;
    if (bus) {
      const Questions questions(bus.get());
      card = ask_modem_manager(questions);
      if (!card) card = ask_ofono(questions);
    }
    const std::scoped_lock lock(sim->mutex_);
    sim->answer_ = card ? Answer{0, *card} : Answer{ENODEV, kUnknownType};
    sim->answered_at_ = g_get_monotonic_time();
    sim->asking_ = false;
    return nullptr;
  }

  std::mutex mutex_;
  Answer answer_;           // guarded by mutex_
  gint64 answered_at_ = 0;  // guarded by mutex_
  bool asking_ = false;     // guarded by mutex_
};

/// Never destroyed: its worker may end after everything else.
Sim &sim() {
  static auto *instance = new Sim;
  return *instance;
}

}  // namespace

gint TelTapiSimGetCardType(gint *card_type) {
  if (card_type == nullptr) return EINVAL;
  const Sim::Answer answer = sim().get();
  if (answer.error == 0) *card_type = answer.type;
  return answer.error;
}
