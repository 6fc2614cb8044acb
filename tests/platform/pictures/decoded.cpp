#include "decoded.hpp"

namespace test {

phone::pictures::Result decode_file(const std::string &path, int width, int height,
                                    std::uint32_t flags) {
  phone::pictures::Wish wish;
  wish.width = width;
  wish.height = height;
  wish.flags = flags;
  wish.time_limit.longest = kLongest;
  return phone::pictures::decode_picture(phone::pictures::open_picture(path.c_str()), wish);
}

}  // namespace test
