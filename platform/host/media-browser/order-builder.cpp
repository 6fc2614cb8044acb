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
    : all_by_name_(database.prepare("SELECT id, class FROM files INDEXED BY files_by_name "
                                    "ORDER BY name COLLATE filename, album, class, id")),
      date_of_id_(database.prepare("SELECT date FROM files WHERE id = ?")),
      size_of_id_(database.prepare("SELECT size FROM files WHERE id = ?")),
      name_of_id_(database.prepare("SELECT name, album FROM files WHERE id = ?")),
      class_of_id_(database.prepare("SELECT class FROM files WHERE id = ?")) {
  for (std::size_t at = 0; at < kClasses.size(); ++at) {
    dates_of_class_[at] = database.prepare(
        "SELECT id, date FROM files INDEXED BY files_by_date WHERE class = ? ORDER BY date, id");
    sizes_of_class_[at] = database.prepare(
        "SELECT id, size FROM files INDEXED BY files_by_size WHERE class = ? ORDER BY size, id");
  }
}

std::vector<gint32> OrderBuilder::by_number(const OfClass &of_class, ClassMask mask) const {
  // One walk for each class at the same time, so that a million rows need no room beside the ids.
  std::vector<std::unique_ptr<Cursor>> walks;
  std::vector<std::pair<gint64, gint32>> heads;
  const auto take = [](Cursor &walk) { return std::pair(walk.integer(1), walk.number(0)); };
  for (std::size_t at = 0; at < kClasses.size(); ++at) {
    if ((mask >> at & 1) == 0) continue;
    auto walk = std::make_unique<Cursor>(of_class[at], kClasses[at]);
    if (walk->next()) {
      heads.push_back(take(*walk));
      walks.push_back(std::move(walk));
    } else if (walk->failed()) {
      throw Failure{};
    }
  }
  std::vector<gint32> ids;
  while (!walks.empty()) {
    const auto at =
        static_cast<std::size_t>(std::min_element(heads.begin(), heads.end()) - heads.begin());
    ids.push_back(heads[at].second);
    if (walks[at]->next()) {
      heads[at] = take(*walks[at]);
      continue;
    }
    if (walks[at]->failed()) throw Failure{};
    walks.erase(walks.begin() + static_cast<std::ptrdiff_t>(at));
    heads.erase(heads.begin() + static_cast<std::ptrdiff_t>(at));
  }
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
      ids = by_number(dates_of_class_, key.mask);
      break;
    case SortKey::kSize:
      ids = by_number(sizes_of_class_, key.mask);
      break;
    case SortKey::kAdded:
      ids = by_number(dates_of_class_, key.mask);
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
