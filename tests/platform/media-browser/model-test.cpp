/// Long runs: random changes against a simple model, and processes that are killed.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <set>

#include "library.hpp"
#include "media-browser/index.hpp"
#include "media-browser/schema.hpp"
#include "media-browser/storage.hpp"

namespace {

namespace fs = std::filesystem;
using namespace phone::media;
using test::Library;

/// What a person would expect the list to be: names with their dates, and what marks a file.
class Model {
 public:
  Model(Library &library, unsigned seed) : library_(library), random_(seed) {}

  /// One change of some kind. Every file has a size of its own, so identities differ.
  void change() {
    switch (random_() % 8) {
      case 0:
      case 1:
      case 2:
        return create();
      case 3:
        return remove();
      case 4:
        return move_file();
      case 5:
        return touch();
      case 6:
        return move_folder();
      default:
        return remove_folder();
    }
  }

  /// The index has seen everything up to here.
  void look() {
    touched_.clear();
    moved_.clear();
  }

  /// Names in the order of dates, newest first; the same dates never come twice.
  [[nodiscard]] std::vector<std::string> newest_first() const {
    std::map<gint64, std::string, std::greater<>> by_date;
    for (const auto &[name, date] : files_) by_date[date] = name;
    std::vector<std::string> names;
    for (const auto &[date, name] : by_date) names.push_back(name);
    return names;
  }
  [[nodiscard]] const std::map<std::string, gint64> &files() const { return files_; }
  /// What each file must have as its id, whatever its name is by now.
  std::map<std::string, gint> ids;

 private:
  std::string folder() { return std::string(1, static_cast<char>('a' + random_() % 5)); }
  std::string any() {
    auto at = files_.begin();
    std::advance(at, static_cast<std::ptrdiff_t>(random_() % files_.size()));
    return at->first;
  }
  void create() {
    const std::string name = folder() + "/" + std::to_string(++number_) + ".jpg";
    library_.write(name, std::string(static_cast<std::size_t>(number_), 'x'));
    test::set_mtime(library_.path(name), ++date_);
    files_[name] = date_;
  }
  void remove() {
    if (files_.empty()) return;
    const std::string name = any();
    fs::remove(library_.path(name));
    forget(name);
  }
  void forget(const std::string &name) {
    files_.erase(name);
    ids.erase(name);
  }
  /// The model's side of a new name.
  void follow(const std::string &from, const std::string &to) {
    files_[to] = files_.at(from);
    if (ids.contains(from)) ids[to] = ids.at(from);
    if (touched_.contains(from)) touched_.insert(to);
    if (moved_.contains(from)) moved_.insert(to);
    forget(from);
  }
  void move_file() {
    if (files_.empty()) return;
    const std::string from = any();
    const std::string to = folder() + "/" + std::to_string(++number_) + ".jpg";
    fs::create_directories(fs::path(library_.path(to)).parent_path());
    fs::rename(library_.path(from), library_.path(to));
    follow(from, to);
    moved_.insert(to);
    // Renamed and changed while nobody looked, it may be any file.
    if (touched_.contains(to)) ids.erase(to);
  }
  void touch() {
    if (files_.empty()) return;
    const std::string name = any();
    test::set_mtime(library_.path(name), ++date_);
    files_[name] = date_;
    touched_.insert(name);
    if (moved_.contains(name)) ids.erase(name);
  }
  void move_folder() {
    const std::string from = folder();
    const std::string to = folder() + std::to_string(++number_);
    if (!fs::exists(library_.path(from))) return;
    fs::rename(library_.path(from), library_.path(to));
    for (const auto &[name, date] : std::map(files_)) {
      if (name.starts_with(from + "/")) follow(name, to + name.substr(from.size()));
    }
  }
  void remove_folder() {
    // Rarely: otherwise little else would ever be seen.
    if (random_() % 4 != 0) return;
    const std::string gone = folder();
    fs::remove_all(library_.path(gone));
    for (const auto &[name, date] : std::map(files_)) {
      if (name.starts_with(gone + "/")) forget(name);
    }
  }

  Library &library_;
  std::mt19937 random_;
  std::map<std::string, gint64> files_;
  /// Since the last look().
  std::set<std::string> touched_;
  std::set<std::string> moved_;
  int number_ = 0;
  gint64 date_ = 1'000'000'000;
};

class Random : public support::GlibTest, public testing::WithParamInterface<unsigned> {
 protected:
  /// Everything that the service tells, against the model.
  void compare(Model &model) {
    const std::vector<std::string> expected = model.newest_first();
    ASSERT_TRUE(test::run_until([&] { return library_.list(3) == expected; }))
        << testing::PrintToString(library_.list(3)) << " instead of "
        << testing::PrintToString(expected);
    for (const auto &[name, id] : model.ids) EXPECT_EQ(library_.id_of(name), id) << name;
    for (const auto &[name, date] : model.files()) model.ids[name] = library_.id_of(name);
    model.look();
    std::map<std::string, std::size_t> albums;
    for (const auto &[name, date] : model.files()) ++albums[name.substr(0, name.find('/'))];
    std::vector<std::string> names;
    for (const auto &[name, number] : albums) {
      names.push_back(name);
      EXPECT_EQ(Library::album_files(Library::album_id(name)).size(), number) << name;
    }
    EXPECT_THAT(Library::albums(), testing::UnorderedElementsAreArray(names));
  }

  Library library_;
};

INSTANTIATE_TEST_SUITE_P(Seeds, Random, testing::Values(1u, 2u, 3u, 4u, 5u, 6u));

TEST_P(Random, ChangesAreNoticed) {
  Model model(library_, GetParam());
  library_.start();
  for (int round = 0; round < 12 && !HasFailure(); ++round) {
    for (int change = 0; change < 10; ++change) model.change();

    compare(model);
  }
}

TEST_P(Random, ChangesAreFoundByScans) {
  Model model(library_, GetParam() + 100);
  library_.start();
  for (int round = 0; round < 12 && !HasFailure(); ++round) {
    for (int change = 0; change < 10; ++change) model.change();
    library_.rescan();

    compare(model);
  }
}

TEST_P(Random, ChangesAreFoundAtTheNextStart) {
  Model model(library_, GetParam() + 200);
  library_.start();
  for (int round = 0; round < 6 && !HasFailure(); ++round) {
    library_.stop();
    for (int change = 0; change < 20; ++change) model.change();
    library_.start();

    compare(model);
  }
}

/// A process that has the index open and is killed at some moment.
class Killed : public support::GlibTest {
 protected:
  /// @param microseconds how long the process lives after the start of the index
  /// @param work done by it over and over; what it tells through the descriptor is known to others
  /// @return what it has told
  std::vector<int> live_and_die(unsigned microseconds,
                                const std::function<void(int told)> &work = {}) {
    int ready[2];
    EXPECT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
      library_.begin();
      tell(ready[1], -1);
      while (true) {
        g_main_context_iteration(nullptr, !work);
        if (work) work(ready[1]);
      }
    }
    close(ready[1]);
    int number = 0;
    EXPECT_EQ(read(ready[0], &number, sizeof number), static_cast<ssize_t>(sizeof number));
    g_usleep(microseconds / 2);
    // Trees move under it.
    fs::rename(library_.path("f0"), library_.path("moved"));
    g_usleep(microseconds / 2);
    EXPECT_EQ(kill(child, SIGKILL), 0);
    int status;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    fs::rename(library_.path("moved"), library_.path("f0"));
    std::vector<int> told;
    while (read(ready[0], &number, sizeof number) == static_cast<ssize_t>(sizeof number)) {
      told.push_back(number);
    }
    close(ready[0]);
    return told;
  }
  static void tell(int descriptor, int number) {
    [[maybe_unused]] const ssize_t told = write(descriptor, &number, sizeof number);
  }
  static int rounds(int usual) {
    const char *wanted = g_getenv("PB_FAULT_ROUNDS");
    return wanted != nullptr ? std::atoi(wanted) : usual;
  }

  /// What must hold of the files as they were left, whoever opens them next.
  void check_files() {
    const std::string path = data_folder() + "/" + index_name({library_.path("")});
    Database database;
    ASSERT_EQ(database.open(path), SQLITE_OK);
    const Statement check = database.prepare("PRAGMA integrity_check");
    Cursor row(check);
    ASSERT_TRUE(row.next());
    EXPECT_EQ(row.text(0), "ok");
    EXPECT_EQ(database.ask("SELECT count(*) FROM files WHERE class > 0", -1),
              database.ask("SELECT coalesce(sum(files), 0) FROM counts", -2));
    EXPECT_EQ(database.ask("SELECT count(*) FROM albums a WHERE pictures + videos != (SELECT "
                           "count(*) FROM files f WHERE f.album = a.id AND class > 0)",
                           -1),
              0);
  }

  Library library_;
};

TEST_F(Killed, WhileScanningLeavesAWholeIndex) {
  constexpr int kFiles = 1200;
  for (int at = 0; at < kFiles; ++at) {
    library_.write("f" + std::to_string(at % 7) + "/" + std::to_string(at) + ".jpg", "");
  }
  std::mt19937 random(11);
  for (int round = 0; round < rounds(12) && !HasFailure(); ++round) {
    live_and_die(static_cast<unsigned>(random() % 40'000));
    check_files();
    // Files move and go while nobody looks.
    const std::string folder = "f" + std::to_string(round % 7);
    fs::rename(library_.path(folder), library_.path("moved"));
    fs::rename(library_.path("moved"), library_.path(folder));
  }

  library_.start();

  EXPECT_EQ(Library::count(), kFiles);
  EXPECT_EQ(library_.list(0).size(), static_cast<std::size_t>(kFiles));
}

TEST_F(Killed, WhilePeopleMarkFilesLosesNoMark) {
  constexpr int kFiles = 300;
  constexpr std::size_t kLeast = 10;
  const auto name_of = [](int file) {
    return "f" + std::to_string(file % 3) + "/" + std::to_string(file) + ".jpg";
  };
  for (int file = 0; file < kFiles; ++file) library_.write(name_of(file), std::to_string(file));
  std::mt19937 random(12);
  std::set<int> marked;
  // A slow machine gets more rounds: a few of its marks would prove little.
  const auto enough = [&](int round) {
    return round >= rounds(12) && (marked.size() > kLeast || round >= 10 * rounds(12));
  };
  for (int round = 0; !enough(round) && !HasFailure(); ++round) {
    const auto mark = [&](int told) {
      const int file = static_cast<int>(random() % kFiles);
      const gint id = library_.id_of(name_of(file));
      if (id != 0 && Index::current()->set_flag(id, kFavourite, true)) tell(told, file);
    };
    const auto told = live_and_die(static_cast<unsigned>(random() % 60'000), mark);
    marked.insert(told.begin(), told.end());
    check_files();
  }

  library_.start();

  EXPECT_GT(marked.size(), kLeast);
  for (const int file : marked) {
    FmFileRecord record;
    fm_svc_mb_get_item_by_database_index(library_.id_of(name_of(file)), &record, nullptr);
    EXPECT_NE(record.item.flags & kFavourite, 0) << file;
  }
  EXPECT_EQ(Library::count(), kFiles);
}

}  // namespace
