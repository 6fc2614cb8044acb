#include <string>

#include "support/fake-platform.hpp"
#include "support/temp-dir.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

void note_end(const VeskDownloadResponse *response, gpointer user_data) {
  *static_cast<std::string *>(user_data) =
      std::to_string(response->request_id) + " " + std::to_string(response->http_status) + " " +
      std::to_string(response->response_length) + " " + std::to_string(response->header_length) +
      " " + (response->header != nullptr ? response->header : "");
}

class FakeDownload : public support::GlibTest {
 protected:
  int start() {
    const int id = vesk_svc_download_util_generate_request_id();
    vesk_svc_download_util_download_url("http://a/b", id, note_end, &end_, path_.c_str());
    return id;
  }

  support::TempDir dir_;
  std::string path_ = dir_.path("deep/file.jpg");
  std::string end_;
};

TEST_F(FakeDownload, DoesNotEndByItself) {
  start();

  EXPECT_EQ(end_, "");
  EXPECT_THAT(fake::platform().downloads, SizeIs(1));
}

TEST_F(FakeDownload, WritesTheBodyAndTellsTheCallback) {
  const int id = start();

  fake::finish_download(id, 200, "bytes", "Content-Type: image/png\r\n");

  EXPECT_EQ(end_, std::to_string(id) + " 200 5 25 Content-Type: image/png\r\n");
  EXPECT_EQ(support::read_file(path_), "bytes");
}

TEST_F(FakeDownload, WritesNoFileForAnotherStatus) {
  fake::finish_download(start(), 404);

  EXPECT_FALSE(support::exists(path_));
}

TEST_F(FakeDownload, IsForgottenWhenItIsGivenUp) {
  const int id = start();

  EXPECT_EQ(vesk_svc_download_util_abort_request(id), 1);
  EXPECT_THAT(fake::platform().downloads, IsEmpty());
  EXPECT_EQ(vesk_svc_download_util_abort_request(id), 0);
}

}  // namespace
