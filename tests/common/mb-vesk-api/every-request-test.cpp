// What all requests have in common.
#include "common/mb-vesk-api/vesk-fixture.hpp"

namespace {

using testing::AnyOf;
using testing::StartsWith;

class EveryRequest : public vesk_test::VeskTest {
 protected:
  struct Request {
    const char *name;
    std::function<void(guint32 handle)> send;
  };

  std::vector<Request> requests() {
    GList *ids = ids_.get();
    GList *fids = fids_.get();
    return {
        {"web albums", [](guint32 h) { mb_vesk_get_web_albums(h, nullptr, 0, 30); }},
        {"contents", [](guint32 h) { mb_vesk_media_get_web_album_contents(h, 8, 0, 30, nullptr); }},
        {"my shared content",
         [](guint32 h) { mb_vesk_media_get_my_shared_content(h, 8, TRUE, 0, 30, nullptr); }},
        {"content", [](guint32 h) { mb_vesk_get_content(h, 21); }},
        {"hidden album", [](guint32 h) { mb_vesk_get_hidden_album_id(h); }},
        {"rename", [](guint32 h) { mb_vesk_update_web_album(h, 8, "n"); }},
        {"delete album", [=](guint32 h) { mb_vesk_delete_web_album(h, ids); }},
        {"delete contents",
         [=](guint32 h) { mb_vesk_delete_web_album_contents(h, nullptr, 8, ids); }},
        {"delete content", [](guint32 h) { mb_vesk_delete_content_cb(h, 21, 8); }},
        {"upload", [=](guint32 h) { mb_vesk_upload_multiple_contents(h, fids); }},
        {"archive", [](guint32 h) { mb_vesk_archieve_and_delete_local(h, 4); }},
        {"one-click share", [](guint32 h) { mb_vesk_one_click_share(h, 4, nullptr); }},
        {"backup", [=](guint32 h) { mb_vesk_file_manual_backup(h, fids); }},
        {"synchronize", [](guint32 h) { mb_vesk_synchronize_details(h); }},
        {"add", [](guint32 h) { mb_vesk_media_add_content_to_web_album(h, &kId, 1, 8); }},
        {"publish", [=](guint32 h) { mb_vesk_media_share_content_sns_group(h, ids, FALSE, "g"); }},
        {"groups", [=](guint32 h) { mb_vesk_tools_get_shared_album_gids(h, ids); }},
        {"unshare", [=](guint32 h) { mb_vesk_media_unshare_album(h, ids); }},
        {"shared album", [](guint32 h) { mb_vesk_media_get_shared_album(h, 8); }},
        {"shared quick post", [](guint32 h) { mb_vesk_media_get_shared_quick_post(h); }},
        {"shared content", [](guint32 h) { mb_vesk_media_get_shared_content(h, 8, 0, 30); }},
        {"comments", [](guint32 h) { mb_vesk_media_get_comments(h, 21, 8, 0, 20); }},
        {"comment", [](guint32 h) { mb_vesk_media_add_comments(h, 21, "c"); }},
        {"delete comments", [=](guint32 h) { mb_vesk_media_delete_comments(h, ids, 1); }},
        {"make album", [](guint32 h) { mb_vesk_vesk_upload_album(h, 3); }},
    };
  }
  /// The calls of the service so far.
  static std::vector<std::string> service_calls() {
    std::vector<std::string> found;
    for (const std::string &call : fake::platform().calls) {
      if (call.starts_with("vesk_svc_")) found.push_back(call);
    }
    return found;
  }

  static constexpr gint64 kId = 21;
  gint64 id_ = kId;
  pb::ListSpinePtr ids_{g_list_prepend(nullptr, &id_)};
  pb::ListSpinePtr fids_{g_list_prepend(nullptr, GINT_TO_POINTER(4))};
};

TEST_F(EveryRequest, AsksForTheUserFirst) {
  for (const Request &request : requests()) {
    fake::take_calls();

    request.send(5);

    ASSERT_FALSE(service_calls().empty()) << request.name;
    EXPECT_EQ(service_calls().at(0), "vesk_svc_core_is_logout(5)") << request.name;
  }
}

TEST_F(EveryRequest, KeepsTheFlagOfTheUser) {
  fake::platform().vesk_svc_core_is_logout = [](guint32) { return 1; };
  for (const Request &request : requests()) {
    mb_util_set_vesk_login_present(1);

    request.send(5);

    EXPECT_EQ(mb_util_is_vesk_login_present(), 0) << request.name;
  }
}

TEST_F(EveryRequest, GoesOutWithItsHandle) {
  veskMediaHandle = 44;
  for (const Request &request : requests()) {
    fake::take_calls();

    request.send(5);

    ASSERT_GE(service_calls().size(), 2U) << request.name;
    EXPECT_THAT(service_calls().at(1), testing::ContainsRegex("\\(5[,)]")) << request.name;
  }
}

TEST_F(EveryRequest, WithoutAHandleGoesOutWithTheOwnOneOrNotAtAll) {
  veskMediaHandle = 44;
  for (const Request &request : requests()) {
    fake::take_calls();

    request.send(0);

    if (service_calls().size() < 2) continue;
    EXPECT_THAT(service_calls().at(1), testing::ContainsRegex("\\(44[,)]")) << request.name;
  }
}

}  // namespace
