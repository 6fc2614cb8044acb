/// Child processes of the decoder program, started without running anything of this process
/// between fork and exec.
#pragma once

#include <glib.h>
#include <sys/types.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "pictures/cancellation.hpp"

namespace phone::pictures {

/// Where the decoder program is: $PHOTOBROWSER_DECODER, beside this library, or where it is
/// installed. Empty when it is nowhere.
std::string decoder_path();

/// Starts the decoder program with nothing but the given descriptors, each as {ours, theirs}.
/// @return the child, or -1 with errno
pid_t start_decoder(const std::vector<std::string> &arguments,
                    std::initializer_list<std::pair<int, int>> descriptors);

/// How a child ended, or was made to.
struct Ending {
  /// The program gave this exit status, or -1 when a signal ended it.
  int status = -1;
  int signal = 0;
};

/// Kills a child and takes it off the list of processes.
Ending end_process(pid_t child);
/// Waits for a child that is about to end by itself; kills it at the deadline
/// (g_get_monotonic_time()) or on cancellation.
Ending wait_for_process(pid_t child, gint64 deadline, const Cancellation *cancellation = nullptr);

}  // namespace phone::pictures
