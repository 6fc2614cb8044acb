#include <pb-app-common.h>

#include <algorithm>

#include "private.hpp"

namespace pb::item_list {

namespace {

/// What one fetch brought: records for the rows first to last.
struct Page {
  RecordList records;
  gint first;
  gint last;
};

gint last_row_from(gint first) {
  return static_cast<gint>(std::min<gint64>(gint64{first} + kPage - 1, G_MAXINT));
}

/// Fetches rows. The service may have fewer of them than it counted, and is not believed when it
/// sends more than was asked for.
Page fetch_page(PbItemListPrivate &priv, gint first, gint last) {
  if (priv.filter <= 0) {
    gint sort = 0;
    gint64 filter = 0;
    pb_app_common_get_filter_sort_type(&sort, &filter);
    priv.filter = resolve_filter(filter);
  }
  Page page{fetch_files(kPageSort, priv.filter, first, last), first, last};
  const gint wanted = last - first + 1;
  if (page.records.length() > wanted) page.records.drop_last(page.records.length() - wanted);
  if (page.records.length() < kPage) page.last = first + page.records.length() - 1;
  return page;
}

void log_missing_row(const char *entry, const Page &page, gint row) {
  if (row >= page.first && row <= page.last) return;
  LOG_FOR(entry, PB_LOG_ERROR, "Error: record page (%d, %d), but row=%d\n", page.first, page.last,
          row);
}

/// Holds the page of a row in place of what was held.
void jump(const char *entry, PbItemListPrivate &priv, gint row) {
  const gint first = row / kPage * kPage;
  Page page = fetch_page(priv, first, last_row_from(first));
  log_missing_row(entry, page, row);
  priv.records = std::move(page.records);
  priv.page_start = page.first;
  priv.page_end = page.last;
  LOG_FOR(entry, PB_LOG_INFO, "All/Camera record list created: (%d, %d)\n", priv.page_start,
          priv.page_end);
}

void extend_down(const char *entry, PbItemListPrivate &priv, gint row) {
  Page page = fetch_page(priv, priv.page_end + 1, last_row_from(priv.page_end + 1));
  log_missing_row(entry, page, row);
  if (page.records.empty()) return;
  if (priv.records.length() > kPage) {
    priv.records.drop_first(kPage);
    priv.page_start += kPage;
  }
  priv.records.append(std::move(page.records));
  priv.page_end = page.last;
  LOG_FOR(entry, PB_LOG_INFO, "All/Camera record list upside refreshed: (%d, %d)\n",
          priv.page_start, priv.page_end);
}

/// FALSE when the rows that came do not join the held ones.
bool extend_up(const char *entry, PbItemListPrivate &priv, gint row) {
  Page page = fetch_page(priv, std::max(priv.page_start - kPage, 0), priv.page_start - 1);
  log_missing_row(entry, page, row);
  if (page.last != priv.page_start - 1) {
    LOG_FOR(entry, PB_LOG_ERROR, "Error: record page (%d, %d), record list (%d, %d)\n", page.first,
            page.last, priv.page_start, priv.page_end);
    return false;
  }
  if (priv.records.length() > kPage) {
    priv.records.drop_last(kPage);
    priv.page_end -= kPage;
  }
  priv.records.prepend(std::move(page.records));
  priv.page_start = page.first;
  LOG_FOR(entry, PB_LOG_INFO, "All/Camera record list downside refreshed: (%d, %d)\n",
          priv.page_start, priv.page_end);
  return true;
}

}  // namespace

void hold_first_page(const char *entry, PbItemList *list) {
  PbItemListPrivate &priv = private_of(list);
  auto page = fetch_files(kPageSort, priv.filter, 0, kPage - 1);
  LOG_FOR(entry, PB_LOG_INFO, "All/Camera record list created: (%d, %d), count=%d\n", 0, kPage - 1,
          page.length());
  if (page.length() > kPage) page.drop_last(page.length() - kPage);
  priv.records = std::move(page);
  priv.page_start = 0;
  priv.page_end = priv.records.length() - 1;
}

std::optional<const MbItem *> find_paged_record(const char *entry, PbItemList *list,
                                                const RowRequest &request, RecordList &single) {
  PbItemListPrivate &priv = private_of(list);
  const gint row = request.row;
  if (row < 0) return nullptr;
  const bool any = !priv.records.empty();
  if (any && row >= priv.page_start && row <= priv.page_end) return held_record(list, row);
  if (request.first == request.last) {
    Page page = fetch_page(priv, request.first, request.first);
    LOG_FOR(entry, PB_LOG_INFO, "Get %d record: (%d, %d)\n", page.records.length(), request.first,
            request.first);
    single = std::move(page.records);
    return single.at<MbItem>(0);
  }
  if (any && row > priv.page_end && row - priv.page_end <= kPage) {
    extend_down(entry, priv, row);
  } else if (any && row < priv.page_start && priv.page_start - row <= kPage) {
    if (!extend_up(entry, priv, row)) return std::nullopt;
  } else {
    jump(entry, priv, row);
  }
  return held_record(list, row);
}

}  // namespace pb::item_list
