/// Decoding of files, for tests.
#pragma once

#include <string>

#include "pictures/picture-file.hpp"
#include "quarters.hpp"

namespace test {

/// The longest that a decode may take here, however busy the machine is.
inline constexpr gint64 kLongest = 60 * G_TIME_SPAN_SECOND;

/// Decodes a file as the services do, but for their patience.
phone::pictures::Result decode_file(const std::string &path, int width, int height,
                                    std::uint32_t flags = 0);

}  // namespace test
