/// The scanner: looks through the folders and follows their changes.
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "media-browser/known-files.hpp"
#include "media-browser/probe.hpp"
#include "media-browser/watches.hpp"

namespace phone::media {

class Walker {
 public:
  /// @param roots canonical roots
  Walker(std::vector<std::string> roots, const IndexStorage &storage, Shared &shared,
         Writer &writer, ProbePool &pool);

  /// The thread's function: a scan of everything, then what changes, until Shared::stopping.
  void run();
  /// Asks for a scan of everything. Any thread.
  void rescan();
  /// Wakes the thread, e.g. to see that it has to stop. Any thread.
  void wake();

 private:
  /// What one pass over some folders has seen.
  struct Pass {
    std::set<std::pair<guint64, guint64>> folders;  ///< device and inode
    std::unordered_set<std::string> paths;
    /// Folders that could not be read: what is known of them and below stays.
    std::vector<std::string> unread;
    /// Folders in whose place the index knows others: looked through at the end, when those have
    /// been found under their new names or not at all.
    std::vector<std::string> replaced;
    bool deep = true;
    bool at_the_end = false;
  };

  /// A folder while it is looked through.
  struct Visit {
    FdPtr descriptor;
    FolderPtr folder;
    gint32 album = 0;
    std::vector<std::string> subfolders;
    std::vector<Candidate> candidates;
    bool stable = true;   ///< inodes tell files apart here
    bool broken = false;  ///< entries could not all be read
  };

  void scan_everything();
  void follow(const Changes &changes);
  void scan_tree(const std::string &path, Pass &pass);
  void scan_names(const std::string &path, const std::set<std::string> &names);
  void finish(Pass &pass, const std::vector<std::string> &trees);

  void visit(Fd descriptor, const std::string &path, Pass &pass);
  [[nodiscard]] bool enter(Visit &visit, const std::string &path, Pass &pass);
  void read_entries(Visit &visit);
  void look_through(Visit &visit, std::vector<std::string> &names);
  void look_at_file(Visit &visit, const std::string &name);
  void take(Visit &visit, const std::string &name, const Entry &entry);
  void submit(Visit &visit);
  void report_lost(const Visit &visit);
  void descend(const Visit &visit, Pass &pass);

  /// @return the album of a folder, 0 for a new one, nothing for one to be looked at at the end
  [[nodiscard]] std::optional<gint32> find_album(const Folder &folder, bool at_the_end);
  [[nodiscard]] std::optional<gint32> renamed_album(const Folder &folder);
  void report(const std::string &path, int code, Pass *pass);
  void settle();
  void reopen_if_made_anew();
  [[nodiscard]] Fd open_shown(const std::string &path) const;
  void wait_for_changes(Changes &changes);

  std::vector<std::string> roots_;
  const IndexStorage &storage_;
  Shared &shared_;
  Writer &writer_;
  ProbePool &pool_;

  Fd wakeup_;
  std::atomic<bool> rescan_{true};
  /// Whether the index has taken everything that the last scan found.
  bool writer_complete_ = true;
  Watches watches_;

  guint64 file_version_ = 0;
  Database database_;
  Statement album_by_path_;
  Statement album_by_identity_;
  Statement all_albums_;
  std::unique_ptr<KnownFiles> known_;
};

}  // namespace phone::media
