/// The user's data as a file that people can keep and carry.
#include "media-browser/user-data-file.hpp"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "library.hpp"
#include "media-browser/index.hpp"
#include "media-browser/mirror.hpp"

namespace {

using namespace phone::media;
using test::Library;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

class UserDataFile : public support::GlibTest {
 protected:
  /// @return the sentence of a failure; empty after a success
  std::string save() const { return sentence_of(media_index_export_user_data, file_); }
  std::string load() const { return sentence_of(media_index_import_user_data, file_); }

  static std::string sentence_of(gboolean (*function)(const gchar *, gchar **),
                                 const std::string &path) {
    gchar *problem = nullptr;
    const gboolean done = function(path.c_str(), &problem);
    EXPECT_EQ(done != FALSE, problem == nullptr);
    const std::string sentence = problem != nullptr ? problem : "";
    g_free(problem);
    return sentence;
  }
  /// Throws away all that is known: the index and the user's data.
  void lose_everything() {
    library_.stop();
    for (const std::string &path : Library::index_files()) unlink(path.c_str());
    for (const char *side : {"", "-wal", "-shm"}) {
      unlink((data_folder() + "/user.sqlite" + side).c_str());
    }
  }
  UserData::File known(std::string_view name) const {
    const auto index = Index::current();
    const auto file = index->reader().file(library_.id_of(name));
    return file ? UserData::File{file->user_flags, file->nfid} : UserData::File{-1, -1};
  }
  void set_flag(std::string_view name, int flag) {
    ASSERT_TRUE(Index::current()->set_flag(library_.id_of(name), flag, true));
  }
  void set_nfid(std::string_view name, gint64 nfid) {
    ASSERT_TRUE(Index::current()->set_nfid(library_.id_of(name), nfid));
  }
  /// Writes a file with one entry.
  void write_entry(const std::string &entry) const {
    dir_.write("saved.json", R"({"format": "photobrowser-user-data", "version": 1, "files": [)" +
                                 entry + R"(], "folders": []})");
  }
  std::string good_entry(std::string_view name) const {
    return R"({"uri": "file://)" + library_.path(name) +
           R"(", "inode": "1", "size": "1", "mtime": "1", "favourite": true, "marked": false, )"
           R"("web_id": "0", "gone": false})";
  }

  Library library_;
  support::TempDir dir_;
  std::string file_ = dir_.path("saved.json");
};

TEST_F(UserDataFile, BringsEverythingBack) {
  for (const char *name : {"a.jpg", "b.jpg", "c.jpg", "d.jpg"}) library_.add(name);
  library_.start();
  set_flag("a.jpg", kFavourite);
  set_flag("b.jpg", kMarked);
  set_nfid("c.jpg", gint64{1} << 60);
  ASSERT_EQ(save(), "");

  lose_everything();
  ASSERT_EQ(load(), "");
  library_.start();

  EXPECT_EQ(known("a.jpg"), (UserData::File{kFavourite, 0}));
  EXPECT_EQ(known("b.jpg"), (UserData::File{kMarked, 0}));
  EXPECT_EQ(known("c.jpg"), (UserData::File{0, gint64{1} << 60}));
  EXPECT_EQ(known("d.jpg"), (UserData::File{0, 0}));
}

TEST_F(UserDataFile, BringsBackWhatWasSaidOfRenamedFiles) {
  library_.add("a.jpg");
  library_.start();
  set_flag("a.jpg", kFavourite);
  ASSERT_EQ(save(), "");
  lose_everything();
  ASSERT_EQ(rename(library_.path("a.jpg").c_str(), library_.path("z.jpg").c_str()), 0);

  ASSERT_EQ(load(), "");
  library_.start();

  EXPECT_EQ(known("z.jpg"), (UserData::File{kFavourite, 0}));
}

TEST_F(UserDataFile, CarriesTheWebAlbumsOfFolders) {
  library_.add("x/a.jpg");
  library_.start();
  const std::string folder = library_.path("x");
  ASSERT_TRUE(mirror::set_naid_of_folder(Index::current()->user_data(), folder, 77));
  ASSERT_EQ(save(), "");

  lose_everything();
  ASSERT_EQ(load(), "");
  library_.start();

  EXPECT_EQ(mirror::naids_of_folders(Index::current()->user_data()).at(folder), 77);
}

TEST_F(UserDataFile, NamesFilesOfAnyBytes) {
  const std::string name = "a \"b\" \\ \n \xff\xfe %41 {}.jpg";
  library_.add(name);
  library_.start();
  set_flag(name, kFavourite);
  ASSERT_EQ(save(), "");
  EXPECT_TRUE(g_utf8_validate(support::read_file(file_).c_str(), -1, nullptr));

  lose_everything();
  ASSERT_EQ(load(), "");
  library_.start();

  EXPECT_EQ(known(name), (UserData::File{kFavourite, 0}));
}

TEST_F(UserDataFile, IsTheSameAfterItHasBeenRead) {
  library_.add("a.jpg");
  library_.start();
  set_flag("a.jpg", kFavourite);
  ASSERT_EQ(save(), "");
  const std::string before = support::read_file(file_);
  lose_everything();

  ASSERT_EQ(load(), "");
  ASSERT_EQ(save(), "");

  EXPECT_EQ(support::read_file(file_), before);
  EXPECT_THAT(before, HasSubstr("/a.jpg"));
}

TEST_F(UserDataFile, ShowsInTheListsThatAreOpen) {
  library_.add("a.jpg");
  library_.start();
  write_entry(good_entry("a.jpg"));
  library_.take_changes();

  ASSERT_EQ(load(), "");

  EXPECT_TRUE(test::run_until([this] { return known("a.jpg").flags == kFavourite; }));
}

TEST_F(UserDataFile, TakesNothingAway) {
  library_.add("a.jpg");
  library_.start();
  set_flag("a.jpg", kMarked);
  set_nfid("a.jpg", 5);
  write_entry(good_entry("a.jpg"));

  ASSERT_EQ(load(), "");

  EXPECT_TRUE(test::run_until([this] {
    return known("a.jpg") == UserData::File{kMarked | kFavourite, 5};
  }));
}

TEST_F(UserDataFile, IsPrivate) {
  ASSERT_EQ(save(), "");

  struct stat info;
  ASSERT_EQ(stat(file_.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0600u);
}

TEST_F(UserDataFile, LeavesNothingBehindWhenItCannotBeWritten) {
  dir_.make_dir("saved.json");

  EXPECT_THAT(save(), AllOf(HasSubstr("cannot be written to"), HasSubstr("Is a directory")));

  const std::unique_ptr<GDir, void (*)(GDir *)> dir(g_dir_open(dir_.path().c_str(), 0, nullptr),
                                                    g_dir_close);
  EXPECT_STREQ(g_dir_read_name(dir.get()), "saved.json");
  EXPECT_EQ(g_dir_read_name(dir.get()), nullptr);
}

TEST_F(UserDataFile, ThatIsMissingIsTold) {
  EXPECT_THAT(load(), AllOf(HasSubstr("saved.json"), HasSubstr("No such file")));
}

TEST_F(UserDataFile, ThatIsNoneIsRefused) {
  for (const char *text :
       {"", "{", "[]", "7", "{\"format\": \"another\", \"version\": 1, \"files\": []}",
        "{\"format\": \"photobrowser-user-data\", \"version\": 2, \"files\": [], \"folders\": []}",
        "{\"format\": \"photobrowser-user-data\", \"version\": 1, \"files\": {}}"}) {
    dir_.write("saved.json", text);

    EXPECT_THAT(load(), HasSubstr("not a file that a gallery has written")) << text;
  }
  dir_.write("saved.json", std::string("{}\0\xff", 4));
  EXPECT_NE(load(), "");
  EXPECT_NE(sentence_of(media_index_import_user_data, dir_.path()), "");
  EXPECT_NE(sentence_of(media_index_import_user_data, "/dev/zero"), "");
}

TEST_F(UserDataFile, ChangesNothingWhenOneEntryIsWrong) {
  library_.add("a.jpg");
  library_.start();
  for (const char *wrong :
       {"7", "{}", R"({"uri": "http://host/a"})", R"({"uri": "relative", "inode": "1"})",
        R"({"uri": "file:///x", "inode": "1x", "size": "1", "mtime": "1", "web_id": "1"})",
        R"({"uri": "file:///x", "inode": "1", "size": "1", "mtime": "1",
            "web_id": "99999999999999999999"})"}) {
    write_entry(good_entry("a.jpg") + ", " + wrong);

    EXPECT_THAT(load(), HasSubstr("an entry is wrong")) << wrong;

    EXPECT_TRUE(Index::current()->user_data().empty());
  }
}

TEST_F(UserDataFile, ThatIsCutOffChangesNothing) {
  write_entry(good_entry("a.jpg"));
  const std::string whole = support::read_file(file_);
  for (std::size_t length = 0; length + 1 < whole.size(); length += 7) {
    dir_.write("saved.json", whole.substr(0, length));

    EXPECT_NE(load(), "") << length;
  }
  std::string problem;
  EXPECT_TRUE(UserData(problem).empty());
}

TEST_F(UserDataFile, NeedsAPath) {
  EXPECT_FALSE(media_index_export_user_data(nullptr, nullptr));
  EXPECT_FALSE(media_index_import_user_data(nullptr, nullptr));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("media_index_export_user_data: assertion 'path != nullptr' failed",
                          "media_index_import_user_data: assertion 'path != nullptr' failed"));
}

}  // namespace
