/// How large the pictures of all grids are.
#pragma once

namespace gallery {

inline constexpr int kLargeTile = 148;
inline constexpr int kSmallTile = 64;

/// Side of a tile, in pixels. Main loop only.
int tile_size();
void set_tile_size(int side);

}  // namespace gallery
