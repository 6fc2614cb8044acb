/// Decoding of files, for tests.
#pragma once

#include <string>

#include "pictures/picture-file.hpp"
#include "quarters.hpp"

namespace test {

/// Decodes a file as the services do.
phone::pictures::Result decode_file(const std::string &path, int width, int height,
                                    std::uint32_t flags = 0);

}  // namespace test
