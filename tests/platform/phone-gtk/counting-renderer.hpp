/// A cell renderer that counts: each cell is one colour made from its value.
#pragma once

#include <gtk/gtk.h>

#include <vector>

namespace test {

/// Values drawn since the last reset, in order.
std::vector<int> &drawn_values();

/// (transfer floating) A renderer with an int property "value".
GtkCellRenderer *new_counting_renderer();

/// The colour of a value, as 0xrrggbb.
unsigned colour_of(int value);

}  // namespace test
