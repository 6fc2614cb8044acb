#include "media-browser/order-builder.hpp"

#include <algorithm>
#include <numeric>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "media-browser/natural-order.hpp"

namespace phone::media {

namespace {

/// Finding the place of one file costs about as much as reading this many rows in order.
constexpr std::size_t kRowsPerPlace = 256;

}  // namespace

/// What a file is ordered by.
struct OrderBuilder::Place {
  gint64 number = 0;
  std::string name;
  gint64 album = 0;
  gint32 id = 0;

  bool operator<(const Place &other) const {
    if (number != other.number) return number < other.number;
    if (!name.empty() || !other.name.empty()) {
      const int order = compare_naturally(name, other.name);
      if (order != 0) return order < 0;
    }
    return std::pair(album, id) < std::pair(other.album, other.id);
  }
};

OrderBuilder::OrderBuilder(const Database &database)
    : date_of_class_(database.prepare("SELECT id, date FROM files INDEXED BY files_by_date "
                                      "WHERE class = ? ORDER BY date, id")),
      size_of_class_(database.prepare("SELECT id, size FROM files INDEXED BY files_by_size "
                                      "WHERE class = ? ORDER BY size, id")),
      all_by_name_(database.prepare("SELECT id, class FROM files INDEXED BY files_by_name "
                                    "ORDER BY name COLLATE filename, album, class, id")),
      date_of_id_(database.prepare("SELECT date FROM files WHERE id = ?")),
      size_of_id_(database.prepare("SELECT size FROM files WHERE id = ?")),
      name_of_id_(database.prepare("SELECT name, album FROM files WHERE id = ?")),
      class_of_id_(database.prepare("SELECT class FROM files WHERE id = ?")) {}

std::vector<gint32> OrderBuilder::by_number(const Statement &of_class, ClassMask mask) const {
  std::vector<std::pair<gint64, gint32>> rows;
  for (std::size_t at = 0; at < kClasses.size(); ++at) {
    if ((mask >> at & 1) == 0) continue;
    const auto middle = static_cast<std::ptrdiff_t>(rows.size());
    Cursor row(of_class, kClasses[at]);
    while (row.next()) rows.emplace_back(row.integer(1), row.number(0));
    if (row.failed()) throw Failure{};
    std::inplace_merge(rows.begin(), rows.begin() + middle, rows.end());
  }
  std::vector<gint32> ids(rows.size());
  std::transform(rows.begin(), rows.end(), ids.begin(), [](const auto &row) { return row.second; });
  return ids;
}

std::vector<gint32> OrderBuilder::by_name(ClassMask mask) const {
  std::vector<gint32> ids;
  Cursor row(all_by_name_);
  while (row.next()) {
    if (lets_through(mask, row.number(1))) ids.push_back(row.number(0));
  }
  if (row.failed()) throw Failure{};
  return ids;
}

std::shared_ptr<const Order> OrderBuilder::build(const OrderKey &key) const try {
  std::vector<gint32> ids;
  switch (key.key) {
    case SortKey::kName:
      ids = by_name(key.mask);
      break;
    case SortKey::kDate:
      ids = by_number(date_of_class_, key.mask);
      break;
    case SortKey::kSize:
      ids = by_number(size_of_class_, key.mask);
      break;
    case SortKey::kAdded:
      ids = by_number(date_of_class_, key.mask);
      std::sort(ids.begin(), ids.end());
      break;
  }
  return std::make_shared<const Order>(ids);
} catch (const Failure &) {
  return nullptr;
}

OrderBuilder::Place OrderBuilder::place_of(SortKey key, gint32 id) const {
  Place place;
  place.id = id;
  if (key == SortKey::kAdded) return place;
  const Statement &statement = key == SortKey::kName   ? name_of_id_
                               : key == SortKey::kDate ? date_of_id_
                                                       : size_of_id_;
  Cursor row(statement, id);
  if (!row.next()) throw Failure{};
  if (key == SortKey::kName) {
    place.name = row.text(0);
    place.album = row.integer(1);
  } else {
    place.number = row.integer(0);
  }
  return place;
}

std::shared_ptr<const Order> OrderBuilder::follow(const OrderKey &key, const Order &order,
                                                  const std::vector<gint32> &touched) const try {
  if (touched.size() * kRowsPerPlace > order.size()) return build(key);
  std::vector<Place> coming;
  for (const gint32 id : touched) {
    Cursor row(class_of_id_, id);
    if (row.next() && lets_through(key.mask, row.number(0)))
      coming.push_back(place_of(key.key, id));
    if (row.failed()) throw Failure{};
  }
  std::sort(coming.begin(), coming.end());
  std::unordered_map<gint32, const Place *> place_of_comer;
  std::vector<gint32> ids;
  for (const Place &place : coming) {
    place_of_comer[place.id] = &place;
    ids.push_back(place.id);
  }
  return order.changed(IdSet(touched), ids, [&](gint32 present, gint32 comer) {
    return place_of(key.key, present) < *place_of_comer.at(comer);
  });
} catch (const Failure &) {
  return nullptr;
}

}  // namespace phone::media
