#include "media-browser/reader.hpp"

#include <algorithm>

#include "media-browser/natural-order.hpp"
#include "media-browser/reader-statements.hpp"

namespace phone::media {

namespace {

/// Folders whose paths are kept at hand.
constexpr std::size_t kMostPlaces = 4096;
/// Rows that are read from the front while an order is being made.
constexpr gint64 kFirstRows = 1000;
/// How long a page behind them may wait for its order.
constexpr std::chrono::milliseconds kLongestWait{10'000};

}  // namespace

Reader::Reader(const IndexStorage &storage, Shared &shared) : storage_(storage), shared_(shared) {}

Reader::~Reader() = default;

Reader::Reading::Reading(Reader &reader) : reader_(reader), lock_(reader.mutex_) {
  reader_.ahead_ = reader_.shared_.views.ahead();
  open_ = reader_.open();
  // One transaction also saves each row the file's lock.
  if (open_) reader_.database_.run("BEGIN");
}

Reader::Reading::~Reading() {
  if (open_) reader_.database_.run("COMMIT");
}

bool Reader::open() {
  const guint64 version = shared_.file_version;
  if (!database_.is_open() || version != file_version_) {
    file_version_ = version;
    places_.clear();
    statements_.reset();
    if (storage_.open_for_reading(database_) != SQLITE_OK) {
      database_.close();
      return false;
    }
    statements_ = std::make_unique<Statements>(database_);
  }
  const guint64 folders = shared_.folders_version;
  if (folders != folders_version_ || places_.size() > kMostPlaces) {
    folders_version_ = folders;
    places_.clear();
  }
  return true;
}

bool Reader::good(const Cursor &row) {
  if (!row.failed()) return true;
  if (is_damage(row.result())) damaged_ = true;
  return false;
}

bool Reader::take_damage() {
  const std::scoped_lock lock(mutex_);
  return std::exchange(damaged_, false);
}

std::optional<gint64> Reader::count(ClassMask mask) {
  if (const auto known = shared_.views.count_anew(mask)) return static_cast<gint64>(*known);
  const Reading reading(*this);
  return reading ? counted(mask) : std::nullopt;
}

std::optional<gint64> Reader::counted(ClassMask mask) {
  gint64 count = 0;
  Cursor row(statements_->counts);
  while (row.next()) {
    if (lets_through(mask, row.number(0))) count += row.integer(1);
  }
  if (!good(row)) return std::nullopt;
  for (const gint32 id : ahead_.hidden) {
    const auto file = read_file(id);
    if (file && lets_through(mask, file->file_class)) --count;
  }
  return count;
}

std::vector<gint32> Reader::page(const Sort &sort, ClassMask mask, gint64 first, gint64 last) {
  first = std::max<gint64>(first, 0);
  if (last < first) return {};
  const auto begin = static_cast<std::size_t>(first);
  const auto count = static_cast<std::size_t>(last - first + 1);
  Views::OrderPtr order = shared_.views.read({sort.key, mask});
  if (order == nullptr) {
    {
      const Reading reading(*this);
      // A short list is read in whole: many callers ask for the rows from 0 to its length.
      const std::optional<gint64> known = reading ? counted(mask) : std::nullopt;
      const gint64 wanted = std::min(last + 1, known.value_or(last + 1));
      if (reading && wanted <= kFirstRows) {
        std::vector<gint32> rows = first_rows(sort, mask, wanted);
        rows.erase(rows.begin(),
                   rows.begin() + static_cast<std::ptrdiff_t>(std::min(begin, rows.size())));
        return rows;
      }
    }
    order = shared_.views.wait({sort.key, mask}, kLongestWait);
    if (order == nullptr) return {};
  }
  return sort.reversed ? order->page_from_end(begin, count) : order->page(begin, count);
}

std::optional<gint64> Reader::row_of(const Sort &sort, ClassMask mask, gint32 id) {
  const Views::OrderPtr order = shared_.views.wait({sort.key, mask}, kLongestWait);
  if (order == nullptr) return std::nullopt;
  const auto row = order->row_of(id);
  if (!row) return std::nullopt;
  return static_cast<gint64>(sort.reversed ? order->size() - 1 - *row : *row);
}

std::vector<gint32> Reader::first_by_number(const Statement &statement, bool reversed,
                                            ClassMask mask, gint64 count) {
  std::vector<std::pair<gint64, gint32>> rows;
  for (std::size_t at = 0; at < kClasses.size(); ++at) {
    if ((mask >> at & 1) == 0) continue;
    Cursor row(statement, kClasses[at], count);
    while (row.next()) rows.emplace_back(row.integer(0), row.number(1));
    good(row);
  }
  std::sort(rows.begin(), rows.end());
  if (reversed) std::reverse(rows.begin(), rows.end());
  rows.resize(std::min(rows.size(), static_cast<std::size_t>(count)));
  std::vector<gint32> ids;
  for (const auto &[number, id] : rows) ids.push_back(id);
  return ids;
}

std::vector<gint32> Reader::first_by_walk(const Statement &statement, ClassMask mask,
                                          gint64 count) {
  std::vector<gint32> ids;
  Cursor row(statement);
  while (static_cast<gint64>(ids.size()) < count && row.next()) {
    if (lets_through(mask, row.number(1))) ids.push_back(row.number(0));
  }
  good(row);
  return ids;
}

std::vector<gint32> Reader::first_rows(const Sort &sort, ClassMask mask, gint64 count) {
  if (count <= 0) return {};
  const std::set<gint32> &hidden = ahead_.hidden;
  const gint64 wanted = count + static_cast<gint64>(hidden.size());
  const Statements &all = *statements_;
  std::vector<gint32> ids;
  switch (sort.key) {
    case SortKey::kDate:
      ids = first_by_number(sort.reversed ? all.newest : all.oldest, sort.reversed, mask, wanted);
      break;
    case SortKey::kSize:
      ids =
          first_by_number(sort.reversed ? all.largest : all.smallest, sort.reversed, mask, wanted);
      break;
    case SortKey::kName:
      ids = first_by_walk(sort.reversed ? all.last_names : all.first_names, mask, wanted);
      break;
    case SortKey::kAdded:
      ids = first_by_walk(sort.reversed ? all.last_added : all.first_added, mask, wanted);
      break;
  }
  std::erase_if(ids, [&](gint32 id) { return hidden.contains(id); });
  ids.resize(std::min(ids.size(), static_cast<std::size_t>(count)));
  return ids;
}

const Reader::Place &Reader::place_of(gint32 album) {
  const auto known = places_.find(album);
  if (known != places_.end()) return known->second;
  Place place;
  Cursor row(statements_->place, album);
  if (row.next()) {
    place.path = row.text(0);
    place.device = static_cast<guint64>(row.integer(1));
  }
  good(row);
  return places_[album] = std::move(place);
}

std::optional<Reader::File> Reader::read_file(gint32 id) {
  Cursor row(statements_->file, id);
  if (!row.next()) {
    good(row);
    return std::nullopt;
  }
  File file;
  file.album = row.number(0);
  file.file_class = row.number(1);
  file.kind = row.number(2);
  file.name = row.text(3);
  file.state = {static_cast<guint64>(row.integer(4)), row.integer(5), row.integer(6)};
  file.user_flags = row.number(7);
  file.nfid = row.integer(8);
  const Place &place = place_of(file.album);
  file.folder = place.path;
  file.device = place.device;
  show_marks(id, file);
  return file;
}

void Reader::show_marks(gint32 id, File &file) const {
  const auto marks = ahead_.marks.find(id);
  if (marks == ahead_.marks.end()) return;
  file.user_flags = marks->second.flags.value_or(file.user_flags);
  file.nfid = marks->second.nfid.value_or(file.nfid);
}

std::optional<Reader::File> Reader::file(gint32 id) {
  const Reading reading(*this);
  return reading ? read_file(id) : std::nullopt;
}

gint32 Reader::id_of_path(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return 0;
  const std::string_view folder = slash == 0 ? path.substr(0, 1) : path.substr(0, slash);
  const Reading reading(*this);
  if (!reading) return 0;
  gint32 album = 0;
  {
    Cursor row(statements_->album_of_path, folder);
    if (row.next()) album = row.number(0);
    if (!good(row)) return 0;
  }
  Cursor row(statements_->file_of_name, path.substr(slash + 1), album);
  const gint32 id = row.next() ? row.number(0) : 0;
  good(row);
  return ahead_.hidden.contains(id) ? 0 : id;
}

}  // namespace phone::media
