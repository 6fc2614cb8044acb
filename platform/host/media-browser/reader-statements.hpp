/// The questions that the service's readers ask.
#pragma once

#include <array>

#include "media-browser/reader.hpp"

namespace phone::media {

/// Rows in the order of a number from a place on, one walk for each class, both ways.
struct Walks {
  std::array<Statement, kClasses.size()> from, back_from;
  Statement number_of_id;
};

struct Reader::Statements {
  explicit Statements(const Database &database);

  Statement counts;
  Statement file;
  Statement place;
  Statement album_of_path;
  Statement file_of_name;

  Walks by_date, by_size;

  // The first rows of an order, without the order.
  Statement newest, oldest, largest, smallest;
  Statement first_names, last_names, first_added, last_added;

  Statement albums;
  Statement album;
  Statement album_dates;
  Statement album_sizes;
  Statement album_names;
};

}  // namespace phone::media
