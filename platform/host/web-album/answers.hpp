/// What the web album service answers while no account is set up.
#pragma once

#include <glib.h>

namespace phone::web_album {

inline constexpr gint kLoggedOut = 1;       ///< answer of the question about the log-in
inline constexpr gint kNoAccount = -2;      ///< error code of every request
inline constexpr gint kNoSuchRequest = -3;  ///< error code for a request that does not exist

}  // namespace phone::web_album
