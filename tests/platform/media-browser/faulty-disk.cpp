#include "faulty-disk.hpp"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

namespace test {

namespace {

constexpr sqlite3_int64 kSector = 512;

/// Something that was asked of a file and is not known to be on the disk yet.
struct Pending {
  sqlite3_int64 offset;
  std::string bytes;
  bool cut;  ///< the file was cut at the offset
};

struct Image {
  std::string synced;
  std::vector<Pending> pending;
};

struct Disk {
  std::mutex mutex;
  sqlite3_vfs *real = nullptr;
  sqlite3_vfs shim{};
  std::array<int, 3> acts{};
  int failing_act = -1;
  int nth = 0;
  bool for_good = false;
  bool power_goes = false;
  bool failed = false;
  /// Database files and logs by their paths.
  std::map<std::string, Image> images;
};

Disk &disk() {
  static Disk &one = *new Disk;
  return one;
}

/// Counts an act. @return whether it has to fail
bool fails(FaultyDisk::Act act) {
  Disk &here = disk();
  const int number = static_cast<int>(act);
  const int so_far = ++here.acts[static_cast<std::size_t>(number)];
  if (here.power_goes) {
    const bool off = here.acts[0] >= here.nth;
    here.failed = here.failed || off;
    return off;
  }
  if (number != here.failing_act) return false;
  if (so_far != here.nth && !(here.for_good && so_far > here.nth)) return false;
  here.failed = true;
  return true;
}

void apply(std::string &image, const Pending &pending) {
  const auto offset = static_cast<std::size_t>(pending.offset);
  if (pending.cut) {
    image.resize(std::min(image.size(), offset));
    return;
  }
  image.resize(std::max(image.size(), offset + pending.bytes.size()), '\0');
  image.replace(offset, pending.bytes.size(), pending.bytes);
}

struct File {
  sqlite3_file base;
  sqlite3_file *real;
  Image *image;  ///< NULL for temporary files
};

File *file_of(sqlite3_file *file) { return reinterpret_cast<File *>(file); }
sqlite3_file *real_of(sqlite3_file *file) { return file_of(file)->real; }
const sqlite3_io_methods *methods_of(sqlite3_file *file) { return real_of(file)->pMethods; }

int close_file(sqlite3_file *file) { return methods_of(file)->xClose(real_of(file)); }

int read_file(sqlite3_file *file, void *buffer, int length, sqlite3_int64 offset) {
  return methods_of(file)->xRead(real_of(file), buffer, length, offset);
}

int write_file(sqlite3_file *file, const void *bytes, int length, sqlite3_int64 offset) {
  const std::scoped_lock lock(disk().mutex);
  if (fails(FaultyDisk::Act::kWrite)) return SQLITE_IOERR_WRITE;
  if (Image *image = file_of(file)->image) {
    image->pending.push_back(
        {offset, {static_cast<const char *>(bytes), static_cast<std::size_t>(length)}, false});
  }
  return methods_of(file)->xWrite(real_of(file), bytes, length, offset);
}

int truncate_file(sqlite3_file *file, sqlite3_int64 length) {
  const std::scoped_lock lock(disk().mutex);
  if (fails(FaultyDisk::Act::kWrite)) return SQLITE_IOERR_TRUNCATE;
  if (Image *image = file_of(file)->image) image->pending.push_back({length, {}, true});
  return methods_of(file)->xTruncate(real_of(file), length);
}

int sync_file(sqlite3_file *file, int) {
  // Not passed on: what counts as synced is kept here, and the test's files are nobody's.
  const std::scoped_lock lock(disk().mutex);
  if (fails(FaultyDisk::Act::kSync)) return SQLITE_IOERR_FSYNC;
  if (Image *image = file_of(file)->image) {
    for (const Pending &pending : image->pending) apply(image->synced, pending);
    image->pending.clear();
  }
  return SQLITE_OK;
}

int size_of_file(sqlite3_file *file, sqlite3_int64 *size) {
  return methods_of(file)->xFileSize(real_of(file), size);
}
int lock_file(sqlite3_file *file, int level) {
  return methods_of(file)->xLock(real_of(file), level);
}
int unlock_file(sqlite3_file *file, int level) {
  return methods_of(file)->xUnlock(real_of(file), level);
}
int check_lock(sqlite3_file *file, int *held) {
  return methods_of(file)->xCheckReservedLock(real_of(file), held);
}
int control_file(sqlite3_file *file, int what, void *data) {
  return methods_of(file)->xFileControl(real_of(file), what, data);
}
int sector_size(sqlite3_file *) { return kSector; }
/// Nothing may be relied on: neither whole sectors nor their order.
int characteristics(sqlite3_file *) { return 0; }
int map_shared(sqlite3_file *file, int region, int size, int extend, void volatile **memory) {
  return methods_of(file)->xShmMap(real_of(file), region, size, extend, memory);
}
int lock_shared(sqlite3_file *file, int offset, int count, int flags) {
  return methods_of(file)->xShmLock(real_of(file), offset, count, flags);
}
void order_shared(sqlite3_file *file) { methods_of(file)->xShmBarrier(real_of(file)); }
int unmap_shared(sqlite3_file *file, int remove) {
  return methods_of(file)->xShmUnmap(real_of(file), remove);
}

constexpr sqlite3_io_methods kMethods{
    .iVersion = 2,
    .xClose = close_file,
    .xRead = read_file,
    .xWrite = write_file,
    .xTruncate = truncate_file,
    .xSync = sync_file,
    .xFileSize = size_of_file,
    .xLock = lock_file,
    .xUnlock = unlock_file,
    .xCheckReservedLock = check_lock,
    .xFileControl = control_file,
    .xSectorSize = sector_size,
    .xDeviceCharacteristics = characteristics,
    .xShmMap = map_shared,
    .xShmLock = lock_shared,
    .xShmBarrier = order_shared,
    .xShmUnmap = unmap_shared,
    .xFetch = nullptr,
    .xUnfetch = nullptr,
};

std::string contents_of(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

int open_file(sqlite3_vfs *, const char *name, sqlite3_file *file, int flags, int *out_flags) {
  const std::scoped_lock lock(disk().mutex);
  File *here = file_of(file);
  here->base.pMethods = nullptr;
  if (fails(FaultyDisk::Act::kOpen)) return SQLITE_CANTOPEN;
  here->real = reinterpret_cast<sqlite3_file *>(here + 1);
  const int code = disk().real->xOpen(disk().real, name, here->real, flags, out_flags);
  if (code != SQLITE_OK) return code;
  here->base.pMethods = &kMethods;
  here->image = nullptr;
  if (name != nullptr && (flags & (SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_WAL)) != 0) {
    const auto [at, is_new] = disk().images.try_emplace(name);
    // What was there before the disk came is taken to be safe.
    if (is_new) at->second.synced = contents_of(name);
    here->image = &at->second;
  }
  return SQLITE_OK;
}

int delete_file(sqlite3_vfs *, const char *name, int sync_folder) {
  const std::scoped_lock lock(disk().mutex);
  if (fails(FaultyDisk::Act::kWrite)) return SQLITE_IOERR_DELETE;
  const auto image = disk().images.find(name);
  if (image != disk().images.end()) image->second = {};
  return disk().real->xDelete(disk().real, name, sync_folder);
}

void begin_counting(int act, int nth, bool for_good, bool power_goes) {
  const std::scoped_lock lock(disk().mutex);
  Disk &here = disk();
  here.acts = {};
  here.failing_act = act;
  here.nth = nth;
  here.for_good = for_good;
  here.power_goes = power_goes;
  here.failed = false;
}

/// Some of the sectors of a write: a disk writes them in any order, or not at all.
void apply_some(std::string &image, const Pending &pending, std::mt19937 &random) {
  if (pending.cut) {
    if (random() % 2 == 0) apply(image, pending);
    return;
  }
  for (std::size_t at = 0; at < pending.bytes.size();) {
    const sqlite3_int64 offset = pending.offset + static_cast<sqlite3_int64>(at);
    const auto length =
        std::min(static_cast<std::size_t>(kSector - offset % kSector), pending.bytes.size() - at);
    if (random() % 2 == 0) apply(image, {offset, pending.bytes.substr(at, length), false});
    at += length;
  }
}

}  // namespace

FaultyDisk::FaultyDisk() {
  Disk &here = disk();
  here.real = sqlite3_vfs_find(nullptr);
  here.shim = *here.real;
  here.shim.zName = "faulty-disk";
  here.shim.pNext = nullptr;
  here.shim.szOsFile = here.real->szOsFile + static_cast<int>(sizeof(File));
  here.shim.xOpen = open_file;
  here.shim.xDelete = delete_file;
  sqlite3_vfs_register(&here.shim, 1);
  mend();
}

FaultyDisk::~FaultyDisk() {
  sqlite3_vfs_unregister(&disk().shim);
  sqlite3_vfs_register(disk().real, 1);
  disk().images.clear();
}

void FaultyDisk::fail(Act act, int nth, bool for_good) {
  begin_counting(static_cast<int>(act), nth, for_good, false);
}

void FaultyDisk::lose_power_at_write(int nth) { begin_counting(-1, nth, true, true); }

void FaultyDisk::mend() { begin_counting(-1, 0, false, false); }

int FaultyDisk::count(Act act) {
  const std::scoped_lock lock(disk().mutex);
  return disk().acts[static_cast<std::size_t>(act)];
}

bool FaultyDisk::has_failed() {
  const std::scoped_lock lock(disk().mutex);
  return disk().failed;
}

void FaultyDisk::restore_after_power_loss(std::mt19937 &random) {
  const std::scoped_lock lock(disk().mutex);
  for (auto &[path, image] : disk().images) {
    for (const Pending &pending : image.pending) apply_some(image.synced, pending, random);
    image.pending.clear();
    std::ofstream(path, std::ios::binary | std::ios::trunc) << image.synced;
    // It is memory, whatever the file system makes of it.
    unlink((path + "-shm").c_str());
  }
}

}  // namespace test
