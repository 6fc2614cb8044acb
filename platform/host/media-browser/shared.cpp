#include "media-browser/shared.hpp"

#include "phone-services/status.hpp"

namespace phone::media {

namespace {

constexpr const char *kReadyKey = "/PhoneStatus/Application/FileManager/PhoneInit";

}  // namespace

void Shared::set_ready() {
  if (!ready.exchange(true)) status::set(kReadyKey, 1);
}

void Shared::set_unready() { status::set(kReadyKey, 0); }

}  // namespace phone::media
