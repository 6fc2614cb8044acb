#include <algorithm>

#include "media-browser/reader-statements.hpp"

namespace phone::media {

namespace {

/// Pages shorter than this are read file by file.
constexpr std::size_t kShortest = 8;
/// Rows that are read beyond a page, for files that have come into it since its order was made.
constexpr std::size_t kMargin = 32;

/// One class's rows in the order of dates or sizes.
class Walk {
 public:
  Walk(const Statement &statement, int file_class, gint64 number, gint32 id)
      : row_(statement, file_class, number, id), class_(file_class) {
    more_ = row_.next();
  }

  [[nodiscard]] bool more() const { return more_; }
  [[nodiscard]] std::pair<gint64, gint32> place() const {
    return {row_.integer(0), row_.number(1)};
  }
  [[nodiscard]] const Cursor &row() const { return row_; }
  [[nodiscard]] int file_class() const { return class_; }
  void step() { more_ = row_.next(); }

 private:
  Cursor row_;
  int class_;
  bool more_;
};

}  // namespace

std::vector<std::optional<Reader::File>> Reader::files(const Sort &sort, ClassMask mask,
                                                       const std::vector<gint32> &ids) {
  std::vector<std::optional<File>> result(ids.size());
  const Reading reading(*this);
  if (!reading) return result;
  const bool by_number = sort.key == SortKey::kDate || sort.key == SortKey::kSize;
  if (by_number && ids.size() >= kShortest) read_by_number(sort, mask, ids, result);
  for (std::size_t at = 0; at < ids.size(); ++at) {
    if (!result[at]) result[at] = read_file(ids[at]);
  }
  return result;
}

void Reader::read_by_number(const Sort &sort, ClassMask mask, const std::vector<gint32> &ids,
                            std::vector<std::optional<File>> &files) {
  const Walks &ways = sort.key == SortKey::kSize ? statements_->by_size : statements_->by_date;
  gint64 number = 0;
  {
    Cursor row(ways.number_of_id, ids.front());
    if (!row.next()) return;
    number = row.integer(0);
  }
  std::vector<std::unique_ptr<Walk>> walks;
  for (std::size_t at = 0; at < kClasses.size(); ++at) {
    if ((mask >> at & 1) == 0) continue;
    const Statement &statement = (sort.reversed ? ways.back_from : ways.from)[at];
    walks.push_back(std::make_unique<Walk>(statement, kClasses[at], number, ids.front()));
  }
  std::size_t next = 0;
  for (std::size_t left = ids.size() + kMargin; left > 0 && next < ids.size(); --left) {
    Walk *nearest = nullptr;
    for (const auto &walk : walks) {
      if (!walk->more()) continue;
      if (nearest == nullptr || (walk->place() < nearest->place()) != sort.reversed) {
        nearest = walk.get();
      }
    }
    if (nearest == nullptr) return;
    const gint32 id = nearest->place().second;
    // Usually the next one; the order may also hold files that have gone or moved since.
    const auto from = ids.begin() + static_cast<std::ptrdiff_t>(next);
    const auto found = std::find(from, ids.end(), id);
    if (found != ids.end()) {
      next = static_cast<std::size_t>(found - ids.begin());
      File &file = files[next++].emplace();
      file.file_class = nearest->file_class();
      file.kind = file.file_class & (kPicture | kVideo);
      file.album = nearest->row().number(2);
      file.name = nearest->row().text(3);
      file.user_flags = nearest->row().number(4);
      file.nfid = nearest->row().integer(5);
      file.folder = place_of(file.album).path;
      show_marks(id, file);
    }
    nearest->step();
  }
}

}  // namespace phone::media
