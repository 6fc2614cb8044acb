/// Pictures out of videos, by a program of the desktop.
#pragma once

#include "pictures/picture-file.hpp"

namespace phone::pictures {

/// Takes a picture out of an open video. Blocks up to the time limits of the wish.
Result decode_video(int fd, const Wish &wish);

}  // namespace phone::pictures
