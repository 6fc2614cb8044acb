/// The desktop's shared cache of thumbnails, as a source.
#pragma once

#include <string>

#include "pictures/picture-file.hpp"

namespace phone::thumbnail {

/// A thumbnail that another program has made of a picture, if it is large enough and was made
/// from the picture as it is now: its noted time is compared in whole seconds.
pictures::PixbufRef find_shared(const std::string &path, const struct stat &info,
                                const pictures::Wish &wish);

}  // namespace phone::thumbnail
