/// The questions that the service's readers ask.
#pragma once

#include <array>

#include "media-browser/reader.hpp"

namespace phone::media {

struct Reader::Statements {
  explicit Statements(const Database &database);

  Statement counts;
  Statement file;
  Statement place;
  Statement album_of_path;
  Statement file_of_name;

  /// Rows in the order of dates from a place on, one walk for each class, both ways.
  std::array<Statement, kClasses.size()> from_date, back_from_date;
  Statement date_of_id;

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
