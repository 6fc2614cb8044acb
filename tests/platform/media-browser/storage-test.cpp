/// Where the database files lie, and what becomes of broken ones.
#include "media-browser/storage.hpp"

#include <gmock/gmock.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "library.hpp"
#include "media-browser/index.hpp"
#include "media-browser/schema.hpp"

namespace {

using namespace phone::media;
using test::Library;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::string user_file() { return data_folder() + "/user.sqlite"; }

std::vector<std::string> files_like(const std::string &part) {
  std::vector<std::string> found;
  for (const std::string &file : Library::index_files()) {
    if (file.find(part) != std::string::npos) found.push_back(file);
  }
  return found;
}

TEST(CanonicalRoots, AreAbsoluteSortedAndOnce) {
  EXPECT_THAT(canonical_roots({"/b/", "/a//x/../y", "/b"}), ElementsAre("/a/y", "/b"));
}

TEST(IndexName, DiffersForEverySetOfRoots) {
  EXPECT_EQ(index_name({"/a", "/b"}), index_name({"/a", "/b"}));
  EXPECT_NE(index_name({"/a", "/b"}), index_name({"/a"}));
  EXPECT_NE(index_name({"/a", "/b"}), index_name({"/a/b"}));
  EXPECT_NE(index_name({"/a/b"}), index_name({"/a", "b"}));
}

class Storage : public support::GlibTest {
 protected:
  Storage() : storage_(std::make_unique<IndexStorage>(std::vector<std::string>{"/roots"})) {}

  std::unique_ptr<IndexStorage> storage_;
};

TEST_F(Storage, LiesInAPrivateFolderOfTheDataHome) {
  struct stat info;

  ASSERT_EQ(stat(data_folder().c_str(), &info), 0);

  EXPECT_EQ(info.st_mode & 0777, 0700u);
  EXPECT_TRUE(storage_->path().starts_with(data_folder() + "/index-"));
  EXPECT_TRUE(data_folder().starts_with(g_get_user_data_dir()));
}

TEST_F(Storage, SyncsTheIndexSeldomAndLogsAhead) {
  Database database;

  ASSERT_EQ(storage_->open_for_writing(database), SQLITE_OK);

  EXPECT_EQ(database.ask("PRAGMA synchronous", -1), 1);
  EXPECT_EQ(database.ask("SELECT journal_mode = 'wal' FROM pragma_journal_mode", -1), 1);
  EXPECT_EQ(database.ask("PRAGMA cell_size_check", -1), 1);
  EXPECT_EQ(database.ask("PRAGMA trusted_schema", -1), 0);
  EXPECT_EQ(database.ask("PRAGMA user_version", -1), kIndexVersion);
}

TEST_F(Storage, SyncsTheUsersDataWithEveryCommit) {
  Database database;
  std::string problem;

  ASSERT_TRUE(open_user_data(database, problem));

  EXPECT_EQ(problem, "");
  EXPECT_EQ(database.ask("PRAGMA synchronous", -1), 2);
  EXPECT_EQ(database.ask("SELECT journal_mode = 'wal' FROM pragma_journal_mode", -1), 1);
  EXPECT_EQ(database.ask("PRAGMA cell_size_check", -1), 1);
  EXPECT_EQ(database.ask("PRAGMA trusted_schema", -1), 0);
  EXPECT_EQ(database.ask("PRAGMA user_version", -1), kUserVersion);
}

TEST_F(Storage, SetsAFileAsideThatIsNoDatabase) {
  std::ofstream(storage_->path()) << std::string(8192, 'x');
  Database database;

  EXPECT_EQ(storage_->open_for_writing(database), SQLITE_OK);

  EXPECT_THAT(storage_->problems(), ElementsAre(HasSubstr("was damaged")));
  EXPECT_EQ(support::read_file(storage_->path() + ".broken"), std::string(8192, 'x'));
}

TEST_F(Storage, SetsADatabaseAsideThatIsNotAnIndex) {
  {
    Database other;
    ASSERT_EQ(other.open(storage_->path()), SQLITE_OK);
    ASSERT_EQ(other.run("CREATE TABLE x(y)"), SQLITE_OK);
  }
  Database database;

  EXPECT_EQ(storage_->open_for_writing(database), SQLITE_OK);

  EXPECT_EQ(database.ask("SELECT count(*) FROM sqlite_schema WHERE name = 'x'", -1), 0);
}

TEST_F(Storage, SetsAnIndexAsideWhoseTablesAreNotOurs) {
  Database database;
  ASSERT_EQ(storage_->open_for_writing(database), SQLITE_OK);
  ASSERT_EQ(database.run("DROP INDEX files_by_size"), SQLITE_OK);
  database.close();

  EXPECT_EQ(storage_->open_for_writing(database), SQLITE_OK);

  EXPECT_THAT(storage_->problems(), SizeIs(1));
}

TEST_F(Storage, SetsAnIndexOfALaterVersionAside) {
  Database database;
  ASSERT_EQ(storage_->open_for_writing(database), SQLITE_OK);
  ASSERT_EQ(database.run("PRAGMA user_version = 99"), SQLITE_OK);
  database.close();

  EXPECT_EQ(storage_->open_for_writing(database), SQLITE_OK);

  EXPECT_EQ(database.ask("PRAGMA user_version", -1), kIndexVersion);
}

TEST_F(Storage, TakesAnIndexOfTheFirstVersionAlong) {
  Database database;
  ASSERT_EQ(storage_->open_for_writing(database), SQLITE_OK);
  ASSERT_EQ(database.run("INSERT INTO albums(id, path, device, inode, born, camera) "
                         "VALUES(7, '/x', 1, 2, 3, 0);"
                         "DROP INDEX files_by_size;"
                         "CREATE INDEX files_by_size ON files(class, size);"
                         "PRAGMA user_version = 1"),
            SQLITE_OK);
  database.close();

  EXPECT_EQ(storage_->open_for_writing(database), SQLITE_OK);

  EXPECT_THAT(storage_->problems(), IsEmpty());
  EXPECT_EQ(database.ask("PRAGMA user_version", -1), kIndexVersion);
  EXPECT_EQ(database.ask("SELECT id FROM albums", -1), 7);
  EXPECT_EQ(database.ask("SELECT count(*) FROM pragma_index_info('files_by_size')", -1), 7);
}

TEST_F(Storage, LeavesUserDataOfALaterVersionAlone) {
  Database database;
  std::string problem;
  ASSERT_TRUE(open_user_data(database, problem));
  ASSERT_EQ(database.run("PRAGMA user_version = 99"), SQLITE_OK);
  database.close();

  EXPECT_FALSE(open_user_data(database, problem));

  EXPECT_THAT(problem, HasSubstr("A later version of the gallery"));
  ASSERT_EQ(database.open(user_file()), SQLITE_OK);
  EXPECT_EQ(database.ask("PRAGMA user_version", -1), 99);
}

TEST_F(Storage, KeepsEveryBrokenFileOfTheUsersData) {
  Database database;
  std::string problem;
  for (int round = 0; round < 2; ++round) {
    database.close();
    std::ofstream(user_file()) << std::string(4096, 'x');
    EXPECT_TRUE(open_user_data(database, problem));
    EXPECT_THAT(problem, HasSubstr("was damaged. It is kept as"));
  }

  int kept = 0;
  const std::unique_ptr<GDir, void (*)(GDir *)> dir(g_dir_open(data_folder().c_str(), 0, nullptr),
                                                    g_dir_close);
  while (const gchar *name = g_dir_read_name(dir.get())) {
    if (g_str_has_prefix(name, "user.sqlite.broken-")) ++kept;
  }
  EXPECT_EQ(kept, 2);
}

TEST_F(Storage, IsTemporaryWhenAnotherProcessHasTheIndex) {
  const IndexStorage second({"/roots"});

  EXPECT_NE(second.path(), storage_->path());
  EXPECT_THAT(second.problems(), ElementsAre(HasSubstr("Another gallery keeps the list")));
}

TEST_F(Storage, LeavesNothingBehindWhenItWasTemporary) {
  std::string path;
  {
    IndexStorage second({"/roots"});
    Database database;
    ASSERT_EQ(second.open_for_writing(database), SQLITE_OK);
    path = second.path();
    EXPECT_TRUE(support::exists(path));
  }

  EXPECT_FALSE(support::exists(path));
  EXPECT_FALSE(support::exists(path.substr(0, path.rfind('/'))));
}

TEST_F(Storage, IsFreeAgainWhenItsHolderIsGone) {
  const std::string path = storage_->path();
  storage_.reset();

  const IndexStorage second({"/roots"});

  EXPECT_EQ(second.path(), path);
}

/// The service over broken files and full disks.
class Damage : public support::GlibTest {
 protected:
  void scribble(const std::string &path, std::streamoff from, std::size_t count) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(from);
    file << std::string(count, '\x5a');
    EXPECT_TRUE(file.good());
  }
  /// The index with everything in its main file.
  std::string checkpointed_index() {
    library_.stop();
    const std::string path = files_like(".sqlite").front();
    Database database;
    EXPECT_EQ(database.open(path), SQLITE_OK);
    EXPECT_EQ(database.run("PRAGMA wal_checkpoint(TRUNCATE)"), SQLITE_OK);
    return path;
  }

  Library library_;
};

TEST_F(Damage, OfTheIndexIsMendedByAScan) {
  library_.add("a.jpg");
  library_.add("b.jpg");
  library_.start();
  scribble(checkpointed_index(), 0, 100);

  library_.start();

  EXPECT_THAT(library_.list(0), ElementsAre("a.jpg", "b.jpg"));
  EXPECT_THAT(Library::progress().problem, HasSubstr("was damaged"));
  EXPECT_THAT(files_like(".broken"), testing::Not(IsEmpty()));
}

TEST_F(Damage, InTheMiddleOfTheIndexIsFoundAtTheStart) {
  for (int at = 0; at < 300; ++at) library_.write("f" + std::to_string(at) + ".jpg", "");
  library_.start();
  const std::string path = checkpointed_index();
  struct stat info;
  ASSERT_EQ(stat(path.c_str(), &info), 0);
  // Every page from the tables on, as a disk may do that forgets.
  scribble(path, 12 * 4096, static_cast<std::size_t>(info.st_size) - 12 * 4096);

  library_.start();

  EXPECT_TRUE(test::run_until([] { return Library::count() == 300; }));
  EXPECT_THAT(files_like(".broken"), testing::Not(IsEmpty()));
}

TEST_F(Damage, OfAnyPageEndsInTheRightList) {
  for (int at = 0; at < 200; ++at) library_.write("f" + std::to_string(at) + ".jpg", "");
  library_.start();
  const std::string path = checkpointed_index();
  const std::string good = support::read_file(path);
  const auto pages = static_cast<std::streamoff>(good.size() / 4096);
  for (std::streamoff page = 0; page < pages; page += 3) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << good;
    unlink((path + "-wal").c_str());
    unlink((path + "-shm").c_str());
    scribble(path, page * 4096 + 8, 600);

    library_.start();
    EXPECT_TRUE(test::run_until([] { return Library::count() == 200; })) << "page " << page;
    EXPECT_THAT(library_.list(0), SizeIs(200));
    library_.stop();
  }
}

TEST_F(Damage, WhileTheIndexIsOpenIsMendedToo) {
  for (int at = 0; at < 300; ++at) library_.write("f" + std::to_string(at) + ".jpg", "");
  library_.start();
  const auto index = Index::current();
  const std::string path = files_like(".sqlite").front();
  {
    Database database;
    ASSERT_EQ(database.open(path), SQLITE_OK);
    ASSERT_EQ(database.run("PRAGMA wal_checkpoint(TRUNCATE)"), SQLITE_OK);
  }
  struct stat info;
  ASSERT_EQ(stat(path.c_str(), &info), 0);
  scribble(path, 4096, static_cast<std::size_t>(info.st_size) - 4096);

  // Reading meets the damage; the index thread sets the file aside and the scanner fills another.
  EXPECT_TRUE(test::run_until([&] {
    FmMediaRecord record;
    fm_svc_mb_get_record_by_index(150, &record, nullptr);
    media_index_rescan();
    return !files_like(".broken").empty() && Library::count() == 300;
  }));
}

TEST_F(Damage, LeavesTheUsersDataAlone) {
  library_.add("a.jpg");
  library_.add("b.jpg");
  library_.start();
  ASSERT_TRUE(Index::current()->set_flag(library_.id_of("b.jpg"), kFavourite, true));
  scribble(checkpointed_index(), 0, 100);

  library_.start();
  FmFileRecord a;
  FmFileRecord b;
  fm_svc_mb_get_item_by_database_index(library_.id_of("a.jpg"), &a, nullptr);
  fm_svc_mb_get_item_by_database_index(library_.id_of("b.jpg"), &b, nullptr);

  EXPECT_EQ(a.item.flags, 0u);
  EXPECT_EQ(b.item.flags, 1u);
}

TEST_F(Damage, OfTheDataHomeIsNoReasonNotToShowPictures) {
  library_.add("a.jpg");
  // A file where our folder should be: it can neither be made nor written.
  const std::string home = g_get_user_data_dir();
  g_mkdir_with_parents(home.c_str(), 0700);
  ASSERT_TRUE(g_file_set_contents((home + "/photobrowser").c_str(), "", 0, nullptr));

  library_.start();

  EXPECT_THAT(library_.list(), ElementsAre("a.jpg"));
  EXPECT_GE(Library::progress().problems, 1u);
  library_.stop();
  unlink((home + "/photobrowser").c_str());
}

/// Runs a function in a process of its own; it tells success by its result.
bool in_child(const std::function<bool()> &function) {
  const pid_t child = fork();
  if (child == 0) _exit(function() ? 0 : 1);
  int status = -1;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

constexpr uid_t kNobody = 65534;

/// Gives all that this process has made to nobody, whom root's children become: to root every
/// folder is readable.
void hand_over() {
  if (geteuid() != 0) return;
  const auto give = [](const std::string &path) {
    EXPECT_EQ(lchown(path.c_str(), kNobody, kNobody), 0) << path;
  };
  give(support::private_dir());
  for (const auto &entry : std::filesystem::recursive_directory_iterator(support::private_dir())) {
    give(entry.path());
  }
}

bool become_nobody() { return geteuid() != 0 || (setgid(kNobody) == 0 && setuid(kNobody) == 0); }

TEST_F(Damage, AReadOnlyDataHomeIsToldInOneSentence) {
  library_.add("a.jpg");
  const std::string folder = data_folder();
  hand_over();
  ASSERT_EQ(chmod(folder.c_str(), 0555), 0);

  const bool shown = in_child([&] {
    if (!become_nobody()) return false;
    library_.begin();
    if (!test::run_until([&] { return Library::count() == 1; })) return false;
    const std::string sentence = Library::progress().problem;
    media_index_stop();
    return sentence.find(folder) != std::string::npos && !testing::Test::HasFailure();
  });

  EXPECT_TRUE(shown);
}

TEST_F(Damage, AnUnreadableFolderIsToldAndTheRestListed) {
  library_.add("a.jpg");
  library_.add("secret/b.jpg");
  hand_over();
  ASSERT_EQ(chmod(library_.path("secret").c_str(), 0), 0);

  const bool told = in_child([&] {
    if (!become_nobody()) return false;
    library_.start();
    const MediaIndexProgress progress = Library::progress();
    const gint listed = Library::count();
    media_index_stop();
    const std::string sentence =
        "The folder \u201c" + library_.path("secret") + "\u201d cannot be read: Permission denied.";
    return listed == 1 && sentence == progress.problem && progress.problems == 1;
  });

  EXPECT_TRUE(told);
}

TEST_F(Damage, AnUnreadableFileIsToldAndTheRestListed) {
  library_.add("a.jpg");
  library_.add("b.jpg");
  hand_over();
  ASSERT_EQ(chmod(library_.path("b.jpg").c_str(), 0), 0);

  const bool told = in_child([&] {
    if (!become_nobody()) return false;
    library_.start();
    const MediaIndexProgress progress = Library::progress();
    const std::vector<std::string> listed = library_.list();
    media_index_stop();
    const std::string sentence =
        "The file \u201c" + library_.path("b.jpg") + "\u201d cannot be read: Permission denied.";
    return listed == std::vector<std::string>{"a.jpg"} && sentence == progress.problem;
  });

  EXPECT_TRUE(told);
}

TEST_F(Damage, KeepsTheFilesOfAFolderThatCannotBeReadForNow) {
  library_.add("a.jpg");
  library_.add("x/b.jpg");
  hand_over();

  const bool kept = in_child([&] {
    if (!become_nobody()) return false;
    library_.start();
    const gint before = Library::count();
    chmod(library_.path("x").c_str(), 0);
    library_.rescan();
    const gint locked = Library::count();
    // A folder that can be listed, but whose files cannot be looked at.
    chmod(library_.path("x").c_str(), 0400);
    library_.rescan();
    const gint listed = Library::count();
    chmod(library_.path("x").c_str(), 0700);
    media_index_stop();
    return before == 2 && locked == 2 && listed == 2;
  });

  EXPECT_TRUE(kept);
}

TEST_F(Damage, AFullDiskIsToldAndMendedByTheNextScan) {
  const std::string home = support::private_dir() + "/small";
  ASSERT_EQ(mkdir(home.c_str(), 0700), 0);
  if (mount("small", home.c_str(), "tmpfs", 0, "size=500k") != 0) {
    GTEST_SKIP() << "a small file system cannot be mounted here: " << g_strerror(errno);
  }
  // Long names make long rows.
  constexpr int kFiles = 800;
  for (int at = 0; at < kFiles; ++at) {
    library_.write(std::string(150, 'n') + std::to_string(at) + ".jpg", "");
  }

  const bool mended = in_child([&] {
    g_setenv("XDG_DATA_HOME", home.c_str(), TRUE);
    library_.start();
    const gint some = Library::count();
    const std::string sentence = Library::progress().problem;

    if (some >= kFiles || sentence.find("disk is full") == std::string::npos) return false;
    if (mount("small", home.c_str(), "tmpfs", MS_REMOUNT, "size=90m") != 0) return false;
    library_.rescan();
    const gint all = Library::count();
    const std::size_t listed = library_.list(0).size();
    media_index_stop();
    return all == kFiles && listed == kFiles;
  });

  EXPECT_TRUE(mended);
  EXPECT_EQ(umount(home.c_str()), 0);
}

/// The index thread alone, over a database that may not grow.
TEST(WriterOnAFullDisk, KeepsWhatItHasAndSaysSo) {
  IndexStorage storage({"/roots"});
  Database database;
  ASSERT_EQ(storage.open_for_writing(database), SQLITE_OK);
  database.run("PRAGMA max_page_count = 40");
  std::string problem;
  UserData user_data(problem);
  Shared shared;
  Writer writer(storage, std::move(database), user_data, shared);
  std::thread thread([&writer] { writer.run(); });
  const auto folder = std::make_shared<Folder>(Folder{.path = "/roots", .inode = 1});
  std::atomic<bool> done = false;
  writer.post([](Writer &self) { self.begin_scan(); });
  for (int batch = 0; batch < 30; ++batch) {
    auto files = std::make_shared<std::vector<Found>>();
    for (int at = 0; at < 100; ++at) {
      Found file;
      file.folder = folder;
      file.name = std::to_string(batch * 100 + at) + ".jpg";
      file.state.inode = static_cast<guint64>(batch * 100 + at + 10);
      file.kind = kPicture;
      files->push_back(file);
    }
    writer.post([files](Writer &self) { self.store(*files); });
  }
  bool complete = true;
  writer.post([&](Writer &self) {
    self.end_scan();
    complete = self.is_complete();
    done = true;
  });
  while (!done) std::this_thread::yield();
  shared.stopping = true;
  writer.wake();
  thread.join();

  MediaIndexProgress progress;
  shared.progress.fill(progress);
  Database check;
  ASSERT_EQ(storage.open_for_reading(check), SQLITE_OK);
  const gint64 rows = check.ask("SELECT count(*) FROM files", -1);

  EXPECT_FALSE(complete);
  EXPECT_THAT(progress.problem, HasSubstr("The disk is full"));
  EXPECT_EQ(quick_check(check), SQLITE_OK);
  EXPECT_LT(rows, 3000);
  EXPECT_EQ(check.ask("SELECT pictures FROM albums", 0), rows);
  EXPECT_EQ(check.ask("SELECT files FROM counts WHERE class = 1", 0), rows);
}

}  // namespace
