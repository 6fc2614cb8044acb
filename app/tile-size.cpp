#include "tile-size.hpp"

namespace gallery {
namespace {

int &side() {
  static int instance = kLargeTile;
  return instance;
}

}  // namespace

int tile_size() { return side(); }

void set_tile_size(int new_side) { side() = new_side; }

}  // namespace gallery
