/// Orders made from the index. Index thread.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "media-browser/order.hpp"
#include "media-browser/query.hpp"
#include "media-browser/sqlite.hpp"

namespace phone::media {

class OrderBuilder {
 public:
  explicit OrderBuilder(const Database &database);

  /// @return NULL when reading fails
  [[nodiscard]] std::shared_ptr<const Order> build(const OrderKey &key) const;

  /// An order after some files have come, gone or changed. The index already has the changes, and
  /// no others.
  /// @param touched ids of these files, each at most once
  /// @return NULL when reading fails
  [[nodiscard]] std::shared_ptr<const Order> follow(const OrderKey &key, const Order &order,
                                                    const std::vector<gint32> &touched) const;

 private:
  struct Place;
  struct Failure {};
  /// The same question for each class, so that all can be answered at once.
  using OfClass = std::array<Statement, kClasses.size()>;

  [[nodiscard]] Place place_of(SortKey key, gint32 id) const;
  [[nodiscard]] std::vector<gint32> by_number(const OfClass &of_class, ClassMask mask) const;
  [[nodiscard]] std::vector<gint32> by_name(ClassMask mask) const;

  OfClass dates_of_class_;
  OfClass sizes_of_class_;
  Statement all_by_name_;
  Statement date_of_id_;
  Statement size_of_id_;
  Statement name_of_id_;
  Statement class_of_id_;
};

}  // namespace phone::media
