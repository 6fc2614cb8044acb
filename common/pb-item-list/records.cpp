#include "records.hpp"

#include <cstdlib>

namespace pb::item_list {

RecordList &RecordList::operator=(RecordList &&other) noexcept {
  if (this != &other) {
    clear();
    list_ = std::exchange(other.list_, nullptr);
    kind_ = other.kind_;
    index_ = std::exchange(other.index_, {});
  }
  return *this;
}

void RecordList::clear() {
  index_ = {};
  if (list_ != nullptr) fm_svc_mb_glist_free(&list_, TRUE);
  list_ = nullptr;
}

gint RecordList::length() const {
  make_index();
  return static_cast<gint>(index_.size());
}

void RecordList::append(RecordList &&records) {
  GList *tail = std::exchange(records.list_, nullptr);
  records.index_ = {};
  index_ = {};
  list_ = g_list_concat(list_, tail);
}

void RecordList::prepend(RecordList &&records) {
  GList *head = std::exchange(records.list_, nullptr);
  records.index_ = {};
  index_ = {};
  list_ = g_list_concat(head, list_);
}

void RecordList::drop_first(gint count) {
  GList *rest = cut_at(count);
  clear();
  list_ = rest;
}

void RecordList::drop_last(gint count) { RecordList dropped(cut_at(length() - count)); }

void RecordList::remove(GList *link) {
  index_ = {};
  std::free(link->data);
  list_ = g_list_delete_link(list_, link);
}

void RecordList::make_index() const {
  if (!index_.empty()) return;
  for (GList *link = list_; link != nullptr; link = link->next) index_.push_back(link);
}

gpointer RecordList::data_at(gint position) const {
  make_index();
  if (position < 0 || static_cast<std::size_t>(position) >= index_.size()) return nullptr;
  return index_[static_cast<std::size_t>(position)]->data;
}

GList *RecordList::cut_at(gint position) {
  make_index();
  if (position <= 0) {
    index_ = {};
    return std::exchange(list_, nullptr);
  }
  if (static_cast<std::size_t>(position) >= index_.size()) return nullptr;
  GList *rest = index_[static_cast<std::size_t>(position)];
  rest->prev->next = nullptr;
  rest->prev = nullptr;
  index_ = {};
  return rest;
}

void FileList::clear() {
  if (files_.ids != nullptr || files_.types != nullptr) fm_svc_sync_list_free(&files_);
  files_ = FmFileList{};
}

}  // namespace pb::item_list
