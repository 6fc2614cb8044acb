/// Videos are played by another program.
#pragma once

#include <functional>
#include <string>

namespace gallery {

/// Gives a file to the system's player. `failed` is called, later and on the main loop with the
/// GDK lock, when no program takes it.
void play_video(const std::string &path, std::function<void()> failed);

}  // namespace gallery
