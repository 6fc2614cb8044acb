#include "common/mb-vesk-api/vesk-fixture.hpp"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Comments : public vesk_test::VeskTest {
 protected:
  /// The bytes of the comment that is sent.
  static std::string sent(const char *text) {
    std::string bytes;
    fake::platform().vesk_svc_comment_add_comments = [&](guint32, gint, const VeskComment *one) {
      bytes = vesk_test::bytes_of(*one);
      return 1;
    };
    mb_vesk_media_add_comments(5, 21, text);
    return bytes;
  }
};

TEST_F(Comments, AreAskedForInARange) {
  mb_vesk_media_get_comments(5, 21, 8, 0, 20);

  EXPECT_THAT(requests(), ElementsAre(R"(vesk_svc_comment_get_comments(5, {{21, 8, 5}}, )"
                                      R"({{2, "1-20", "$$"}}))"));
  EXPECT_THAT(intervals(), ElementsAre(40000U));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_get_comments]  Operation Successfull\n"));
}

TEST_F(Comments, AreAskedForWithOnesInTheGapsOfTheEntity) {
  std::string bytes;
  fake::platform().vesk_svc_comment_get_comments =
      [&](guint32, gint, const VeskCommentEntity *entity, gint, const VeskFilter *) {
        bytes = vesk_test::bytes_of(*entity);
        return 1;
      };

  mb_vesk_media_get_comments(5, 21, 8, 0, 20);

  std::string expected(24, '\0');
  expected[0] = 21;
  expected[8] = 8;
  expected[16] = 5;
  expected.replace(20, 4, 4, '\xff');
  EXPECT_EQ(bytes, expected);
}

TEST_F(Comments, LogARefusedQuestion) {
  fake::platform().vesk_svc_comment_get_comments = [](guint32, gint, const VeskCommentEntity *,
                                                      gint, const VeskFilter *) { return -1; };

  mb_vesk_media_get_comments(5, 21, 8, 0, 20);

  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_media_get_comments]  Operation Error:-1\n"));
  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

TEST_F(Comments, AreWritten) {
  mb_vesk_media_add_comments(5, 21, "Schön");

  EXPECT_THAT(requests(),
              ElementsAre(R"(vesk_svc_comment_add_comments(5, {{21, 5, "$$", "Schön"}}))"));
  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_add_comments]  Operation Successfull\n"));
}

TEST_F(Comments, AreWrittenAsTheRecordHasThem) {
  std::string expected(1096, '\0');
  expected.replace(0, 16, 16, '\xff');
  expected[16] = 21;
  expected[24] = 5;
  expected.replace(32, 2, "$$");
  expected.replace(72, 4, "Nice");

  EXPECT_EQ(sent("Nice"), expected);
}

TEST_F(Comments, AreCut) {
  const std::string bytes = sent(std::string(2000, 'c').c_str());

  EXPECT_EQ(bytes.substr(72), std::string(1023, 'c') + '\0');
}

TEST_F(Comments, LogARefusedText) {
  fake::platform().vesk_svc_comment_add_comments = [](guint32, gint, const VeskComment *) {
    return -1;
  };

  mb_vesk_media_add_comments(5, 21, "Nice");

  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_media_add_comments]  Operation Error:-1\n"));
}

TEST_F(Comments, AreDeletedWithTheirOwnersIdSignExtended) {
  std::vector<gint64> ids{61, 62};
  const pb::ListSpinePtr list(list_of(ids));

  mb_vesk_media_delete_comments(5, list.get(), -9);

  EXPECT_THAT(requests(), ElementsAre("vesk_svc_comment_remove_comments(5, {61, 62}, -9)"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_delete_comments]  Operation Successfull\n"));
}

TEST_F(Comments, LogARefusedDeletion) {
  fake::platform().vesk_svc_comment_remove_comments = [](guint32, gint, const gint64 *, gint64) {
    return 0;
  };
  std::vector<gint64> ids{61};
  const pb::ListSpinePtr list(list_of(ids));

  mb_vesk_media_delete_comments(5, list.get(), 1);

  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_media_delete_comments]  Operation Error:0\n"));
}

}  // namespace
