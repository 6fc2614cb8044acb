/// What people have said about their files, as a file that they can keep and carry.
#pragma once

#include <string>

#include "media-browser/user-data.hpp"

namespace phone::media {

/// Writes everything that is known of files and folders as JSON. A file of that name is replaced
/// as a whole, or on failure left as it is.
/// @param problem set to a sentence for the user on failure
[[nodiscard]] bool export_user_data(const UserData &data, const std::string &path,
                                    std::string &problem);

/// Adds what such a file says to what is known. Nothing is taken away, and a web id that is known
/// stays. On failure nothing has changed.
/// @param problem set to a sentence for the user on failure
[[nodiscard]] bool import_user_data(UserData &data, const std::string &path, std::string &problem);

}  // namespace phone::media
