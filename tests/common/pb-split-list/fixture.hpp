/// What the tests of split lists share: records, lists of them, and looks into a split list.
#pragma once

#include <pb-split-list.h>

#include <string>
#include <vector>

#include "common/logged-text.hpp"
#include "common/pb-item-list/fixture.hpp"
#include "common/pb-split-list/private.hpp"

namespace split_list_test {

using item_list_test::ItemPtr;
using item_list_test::log_of;
using SplitPtr = pb::Ref<PbSplitList>;

class SplitListTest : public item_list_test::ItemListTest {};

SplitPtr new_list();
PbSplitListPrivate &private_of(const SplitPtr &list);
gint rows_of(const SplitPtr &list);

struct Row {
  ItemPtr item;
  bool has_title = false;
  gint index = -1;
  pb::Ref<GdkPixbuf> icon;
};
Row read_row(const SplitPtr &list, gint row);
/// The ids of the items, row by row; -1 for a row without an item.
std::vector<gint> ids_of(const SplitPtr &list);
/// Column 2, row by row.
std::vector<gint> numbers_of(const SplitPtr &list);
bool is_default_icon(const SplitPtr &list, gint row);
/// The rows that show a thumbnail.
std::vector<gint> rows_with_thumbnails(const SplitPtr &list);

/// A file of an id with its ordering index, web id and kind.
MbItem record(gint id, gint db_idx, gint nfid = 0, gint media_type = 1);

/// A list of records that nobody else frees.
class Records {
 public:
  Records() = default;
  explicit Records(const std::vector<MbItem> &records) : head(fake::record_list(records)) {}
  ~Records() { free(); }
  Records(const Records &) = delete;
  Records &operator=(const Records &) = delete;
  void free();
  [[nodiscard]] std::vector<gint> ids() const;

  GList *head = nullptr;
};
std::vector<gint> ids_of(GList *records);

/// Lets the service have count files in the whole library, with ids from 1 and their row as the
/// ordering index.
void serve(gint count);
/// Lets the service have the albums.
void serve_albums(const std::vector<FmAlbumRecord> &albums);

/// An icon view with icons of 64 pixels and spacing 6, its adjustment and a divider, which are
/// those of all split lists. They need no display.
struct View {
  View();
  ~View();
  View(const View &) = delete;
  View &operator=(const View &) = delete;
  void scroll(gdouble value) const { gtk_adjustment_set_value(adjustment.get(), value); }

  pb::Ref<GtkWidget> widget;
  pb::Ref<GtkAdjustment> adjustment;
  pb::Ref<GtkWidget> paned;
};

/// Pending idles of a priority.
gint pending_of(gint priority);
inline constexpr gint kRefresh = 130;
inline constexpr gint kFill = 140;

}  // namespace split_list_test
