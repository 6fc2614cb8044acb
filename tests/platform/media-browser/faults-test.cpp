/// Databases on a disk that fails: the nth write, sync or opening, and power failures.
#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <map>

#include "faulty-disk.hpp"
#include "library.hpp"
#include "media-browser/index.hpp"
#include "media-browser/schema.hpp"

namespace {

namespace fs = std::filesystem;
using namespace phone::media;
using test::FaultyDisk;
using test::Library;

using Act = FaultyDisk::Act;

/// Rounds of the long runs; the environment can ask for more.
int rounds(int usual) {
  const char *wanted = g_getenv("PB_FAULT_ROUNDS");
  return wanted != nullptr ? std::atoi(wanted) : usual;
}

bool is_whole(const std::string &path) {
  Database database;
  if (database.open(path) != SQLITE_OK) return false;
  const Statement check = database.prepare("PRAGMA integrity_check");
  Cursor row(check);
  return row.next() && row.text(0) == "ok";
}

std::vector<std::string> files_set_aside(const std::string &start) {
  std::vector<std::string> found;
  for (const auto &entry : fs::directory_iterator(data_folder())) {
    const std::string name = entry.path().filename();
    if (name.starts_with(start) && name.find(".broken") != std::string::npos) {
      found.push_back(name);
    }
  }
  return found;
}

/// Starts, scans, marks a file and stops, however little of it succeeds.
/// @return whether the service has said that the favourite is stored
bool scan_and_mark(Library &library, const char *name) {
  const std::string root = library.path("");
  const gchar *roots[] = {root.c_str()};
  bool marked = false;
  library.take_changes();
  gchar *problem = nullptr;
  if (media_index_start(roots, 1, &problem)) {
    guint changes = 0;
    EXPECT_TRUE(test::run_until([&] {
      changes |= library.take_changes();
      return (changes & MEDIA_INDEX_SCAN_FINISHED) != 0;
    }));
    const gint id = library.id_of(name);
    marked = id != 0 && Index::current()->set_flag(id, kFavourite, true);
  } else {
    EXPECT_THAT(problem, testing::HasSubstr("cannot be made"));
  }
  g_free(problem);
  media_index_stop();
  return marked;
}

struct Fault {
  const char *name;
  Act act;
  bool for_good;
};

void PrintTo(const Fault &fault, std::ostream *out) { *out << fault.name; }

class FaultyScan : public support::GlibTest, public testing::WithParamInterface<Fault> {
 protected:
  FaultyScan() {
    for (const char *name : {"x/a.jpg", "x/b.jpg", "y/c.jpg"}) library_.add(name);
  }

  void forget_everything() { fs::remove_all(data_folder()); }

  FaultyDisk disk_;
  Library library_;
};

TEST_P(FaultyScan, IsMendedByTheNextWhicheverActFails) {
  const auto [name, act, for_good] = GetParam();
  bool failed = true;
  int number = 0;
  while (failed && !HasFailure()) {
    forget_everything();
    FaultyDisk::fail(act, ++number, for_good);
    const bool marked = scan_and_mark(library_, "x/a.jpg");
    failed = FaultyDisk::has_failed();
    FaultyDisk::mend();

    library_.start();

    EXPECT_EQ(library_.list(0).size(), 3u) << number;
    FmFileRecord record;
    EXPECT_TRUE(fm_svc_mb_get_item_by_database_index(library_.id_of("x/a.jpg"), &record, nullptr));
    EXPECT_TRUE(!marked || (record.item.flags & kFavourite) != 0) << number;
    library_.stop();
    EXPECT_TRUE(is_whole(Library::index_files().front())) << number;
    EXPECT_TRUE(is_whole(data_folder() + "/user.sqlite")) << number;
    EXPECT_THAT(files_set_aside("user.sqlite"), testing::IsEmpty()) << number;
  }
  // Each kind of act takes place more often than this in the script.
  EXPECT_GT(number, 4);
  std::printf("%s: %d scans\n", name, number);
}

INSTANTIATE_TEST_SUITE_P(Acts, FaultyScan,
                         testing::Values(Fault{"AWriteOnce", Act::kWrite, false},
                                         Fault{"AllWrites", Act::kWrite, true},
                                         Fault{"ASyncOnce", Act::kSync, false},
                                         Fault{"AllSyncs", Act::kSync, true},
                                         Fault{"AnOpeningOnce", Act::kOpen, false},
                                         Fault{"AllOpenings", Act::kOpen, true}),
                         [](const auto &fault) { return std::string(fault.param.name); });

/// What is said of files until the power fails at some write.
class PowerLoss : public support::GlibTest {
 protected:
  struct Tally {
    int crashes = 0;
    int damaged = 0;
    int lost = 0;
  };

  /// @param pragma run on the connection; NULL for what the service does by itself
  Tally crash(int crashes, const char *pragma) {
    Tally tally;
    std::mt19937 random(7);
    for (; tally.crashes < crashes; ++tally.crashes) {
      fs::remove_all(data_folder());
      FaultyDisk disk;
      const auto said = say_until_power_fails(random, pragma);
      FaultyDisk::restore_after_power_loss(random);
      FaultyDisk::mend();
      if (!is_whole(data_folder() + "/user.sqlite")) {
        ++tally.damaged;
        continue;
      }
      std::string problem;
      const UserData data(problem);
      for (const auto &[path, flags] : said) {
        // The last one that failed may be there or not.
        if (data.find(path, {}).flags < flags) {
          ++tally.lost;
          break;
        }
      }
    }
    return tally;
  }

 private:
  /// @return what was acknowledged, by path
  static std::map<std::string, int> say_until_power_fails(std::mt19937 &random,
                                                          const char *pragma) {
    std::map<std::string, int> said;
    std::string problem;
    UserData data(problem);
    EXPECT_EQ(problem, "");
    if (pragma != nullptr) {
      data.with([pragma](const Database &database) { return database.run(pragma); });
    }
    FaultyDisk::lose_power_at_write(static_cast<int>(random() % 60 + 1));
    for (int number = 1; number < 200; ++number) {
      const std::string path = "/pictures/" + std::to_string(random() % 20) + ".jpg";
      if (data.set(path, {random() % 1000 + 1, 1, 1}, {number, 0}) < 0) break;
      said[path] = number;
    }
    EXPECT_TRUE(FaultyDisk::has_failed());
    return said;
  }
};

TEST_F(PowerLoss, LosesNothingThatPeopleWereToldIsKept) {
  const Tally tally = crash(rounds(60), nullptr);

  EXPECT_EQ(tally.damaged, 0);
  EXPECT_EQ(tally.lost, 0);
  std::printf("%d power failures, %d damaged, %d with losses\n", tally.crashes, tally.damaged,
              tally.lost);
}

TEST_F(PowerLoss, OfADatabaseThatDoesNotSyncIsNoticedHere) {
  const Tally tally = crash(60, "PRAGMA synchronous = OFF");

  EXPECT_GT(tally.lost + tally.damaged, 0);
}

/// The index with its own way of syncing: it may forget, but must not break.
TEST_F(PowerLoss, LeavesAnIndexThatCanBeUsed) {
  Library library;
  for (int at = 0; at < 40; ++at)
    library.add("f" + std::to_string(at % 3) + "/" + std::to_string(at) + ".jpg");
  std::mt19937 random(3);
  for (int round = 0; round < rounds(12) && !HasFailure(); ++round) {
    FaultyDisk disk;
    FaultyDisk::lose_power_at_write(static_cast<int>(random() % 50 + 1));
    scan_and_mark(library, "f0/0.jpg");
    FaultyDisk::restore_after_power_loss(random);
    FaultyDisk::mend();
    for (const std::string &path : Library::index_files()) {
      EXPECT_TRUE(!path.ends_with(".sqlite") || is_whole(path)) << round;
    }

    library.start();
    EXPECT_EQ(library.list(0).size(), 40u) << round;
    EXPECT_EQ(Library::progress().problems, 0u) << Library::progress().problem;
    library.stop();
    if (round % 3 == 2) fs::remove_all(data_folder());
  }
}

}  // namespace
