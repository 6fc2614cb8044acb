#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>

#include "file-bytes.hpp"
#include "pictures/descriptor.hpp"
#include "pictures/header-reader.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"

namespace phone::pictures {
namespace {

using test::Bytes;

class HeaderOfFile : public testing::Test {
 protected:
  std::optional<Header> read(const Bytes &bytes) {
    const Descriptor file(open_regular_file(dir_.write("file", bytes).c_str()));
    EXPECT_TRUE(file);
    return read_header_of_file(file.get());
  }

  support::TempDir dir_;
  Bytes jpeg_ = test::jpeg_of(support::solid_pixbuf(40, 30, support::kRed).get());
};

TEST_F(HeaderOfFile, SeeksBehindExifDataLargerThanTheFirstRead) {
  const Bytes preview(20000, 'p');

  const auto header = read(test::with_exif(jpeg_, {.orientation = 6, .preview = preview}));

  EXPECT_EQ(header->width, 40);
  EXPECT_EQ(header->orientation, 6);
  EXPECT_EQ(header->preview_length, 20000);
}

TEST_F(HeaderOfFile, ReadsExifDirectoriesBehindTheFirstRead) {
  const Bytes filled = test::with_segment(
      test::with_exif(jpeg_, {.orientation = 6, .position = true}), 0xe2, Bytes(30000, 'x'));

  const auto header = read(filled);

  EXPECT_EQ(header->orientation, 6);
  EXPECT_TRUE(header->has_gps);
}

TEST_F(HeaderOfFile, FindsIndexOfFilmAtTheEnd) {
  EXPECT_EQ(read(test::mp4_of({.width = 640, .height = 480, .index_last = true}))->width, 640);
}

TEST_F(HeaderOfFile, LeavesPositionOfTheDescriptorAlone) {
  const Descriptor file(open_regular_file(dir_.write("file", jpeg_).c_str()));
  lseek(file.get(), 7, SEEK_SET);

  read_header_of_file(file.get());

  EXPECT_EQ(lseek(file.get(), 0, SEEK_CUR), 7);
}

TEST_F(HeaderOfFile, IsNothingForAnEmptyFile) { EXPECT_FALSE(read("").has_value()); }

TEST_F(HeaderOfFile, IsNothingForADirectory) {
  const Descriptor folder(open(dir_.path().c_str(), O_RDONLY | O_CLOEXEC));

  EXPECT_FALSE(read_header_of_file(folder.get()).has_value());
}

TEST_F(HeaderOfFile, ReadsLittleOfAFileOfManySegments) {
  Bytes file = jpeg_.substr(0, 2);
  for (int i = 0; i < 5000; ++i)
    file += Bytes("\xff\xfe", 2) + test::big(1200, 2) + Bytes(1198, ' ');
  file += jpeg_.substr(2);

  const gint64 begin = g_get_monotonic_time();
  const auto header = read(file);

  // It gives up long before the end.
  EXPECT_TRUE(header->refused);
  EXPECT_LT(g_get_monotonic_time() - begin, G_TIME_SPAN_SECOND);
}

class OpenRegularFile : public testing::Test {
 protected:
  /// Opens, and tells why not.
  static int error_of(const std::string &path) {
    const Descriptor file(open_regular_file(path.c_str()));
    return file ? 0 : errno;
  }

  support::TempDir dir_;
};

TEST_F(OpenRegularFile, OpensAFile) { EXPECT_EQ(error_of(dir_.write("a", "x")), 0); }

TEST_F(OpenRegularFile, FollowsNoLink) {
  dir_.write("a", "x");
  const std::string link = dir_.path("link");
  ASSERT_EQ(symlink("a", link.c_str()), 0);

  EXPECT_EQ(error_of(link), ELOOP);
}

TEST_F(OpenRegularFile, DoesNotWaitForAPipe) {
  const std::string pipe = dir_.path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);

  EXPECT_EQ(error_of(pipe), EINVAL);
}

TEST_F(OpenRegularFile, RefusesASocket) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = dir_.path("socket");
  ASSERT_LT(path.size(), sizeof address.sun_path);
  path.copy(address.sun_path, path.size());
  const Descriptor socket_fd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  ASSERT_EQ(bind(socket_fd.get(), reinterpret_cast<sockaddr *>(&address), sizeof address), 0);

  EXPECT_EQ(error_of(path), EINVAL);
}

TEST_F(OpenRegularFile, RefusesADevice) { EXPECT_EQ(error_of("/dev/zero"), EINVAL); }

TEST_F(OpenRegularFile, RefusesADirectory) { EXPECT_EQ(error_of(dir_.path()), EINVAL); }

TEST_F(OpenRegularFile, TellsThatThereIsNothing) { EXPECT_EQ(error_of(dir_.path("none")), ENOENT); }

}  // namespace
}  // namespace phone::pictures
