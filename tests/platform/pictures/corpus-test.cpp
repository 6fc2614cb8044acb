#include <glib/gstdio.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>

#include "decoded.hpp"
#include "pictures/identity.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"

namespace phone::pictures {
namespace {

/// Regular files below a folder.
void list_files(const std::string &folder, std::vector<std::string> &files) {
  GDir *entries = g_dir_open(folder.c_str(), 0, nullptr);
  if (entries == nullptr) return;
  while (const gchar *name = g_dir_read_name(entries)) {
    const std::string path = folder + "/" + name;
    struct stat info {};
    if (lstat(path.c_str(), &info) != 0) continue;
    if (S_ISDIR(info.st_mode)) list_files(path, files);
    if (S_ISREG(info.st_mode)) files.push_back(path);
  }
  g_dir_close(entries);
}

std::string checksum_of(const std::string &path) {
  const std::string bytes = support::read_file(path);
  const pb::StringPtr sum(g_compute_checksum_for_data(
      G_CHECKSUM_SHA256, reinterpret_cast<const guchar *>(bytes.data()), bytes.size()));
  return sum.get();
}

/// A folder of odd and hostile files named by $PB_SAMPLES. Each is decoded the way thumbnails
/// and the viewer do it; whatever is in them, it ends, and the files stay as they are.
TEST(Corpus, IsDecodedOrRefusedWithinTheLimits) {
  const char *folder = std::getenv("PB_SAMPLES");
  if (folder == nullptr) GTEST_SKIP() << "PB_SAMPLES names no folder of samples";
  std::vector<std::string> files;
  list_files(folder, files);
  if (files.empty()) GTEST_SKIP() << "no files in " << folder;

  int decoded = 0;
  gint64 longest = 0;
  for (const std::string &path : files) {
    const std::string before = checksum_of(path);
    for (const int side : {148, 800}) {
      const gint64 begin = g_get_monotonic_time();
      const Result result = test::decode_file(path, side, side, wire::kUpright | wire::kPreview);
      longest = std::max(longest, g_get_monotonic_time() - begin);
      EXPECT_NE(result.problem, Problem::kNoDecoder) << path;
      if (!result.pixbuf) continue;
      ++decoded;
      EXPECT_LE(gdk_pixbuf_get_width(result.pixbuf.get()), side) << path;
      EXPECT_LE(gdk_pixbuf_get_height(result.pixbuf.get()), side) << path;
    }
    EXPECT_EQ(checksum_of(path), before) << path;
  }

  EXPECT_GT(decoded, 0);
  EXPECT_LT(longest, test::kLongest);
  std::printf("%zu files, %d pictures of %zu, longest %.2f s\n", files.size(), decoded,
              files.size() * 2, static_cast<double>(longest) / G_TIME_SPAN_SECOND);
}

}  // namespace
}  // namespace phone::pictures
