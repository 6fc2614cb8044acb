#include "common/mb-vesk-api/vesk-fixture.hpp"
#include "pb-util-dialog.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class Guard : public vesk_test::VeskTest {
 protected:
  /// A request that arms the guard and shows nothing.
  static void ask() { mb_vesk_media_get_shared_album(3, 9); }
};

TEST_F(Guard, WaitsFortySecondsForARequest) {
  ask();

  EXPECT_THAT(intervals(), ElementsAre(40000U));
}

TEST_F(Guard, WaitsFiveMinutesForAnUpload) {
  mb_vesk_archieve_and_delete_local(3, 5);

  EXPECT_THAT(intervals(), ElementsAre(300000U));
}

TEST_F(Guard, IsNotArmedForARefusedRequest) {
  fake::platform().vesk_svc_share_get_shared_album = [](guint32, const VeskSharedAlbumQuery *,
                                                        gpointer) { return 0; };

  ask();

  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

TEST_F(Guard, TellsOfAMissingReply) {
  ask();

  EXPECT_THAT(shown_after(39999), IsEmpty());
  EXPECT_THAT(shown_after(1), ElementsAre("string 125"));
}

TEST_F(Guard, ShowsItsTextOverTheMainWindow) {
  create_window();
  ask();
  fake::take_calls();

  fake::advance_clock(40000);

  EXPECT_THAT(fake::calls_of("gtk_style_dialog_new"),
              ElementsAre("gtk_style_dialog_new(2, GtkMainWindow, 2)"));
}

TEST_F(Guard, TakesTheWaitingDialogDown) {
  ask();
  mb_util_create_waiting_popup("waiting");

  fake::advance_clock(40000);

  EXPECT_TRUE(mb_popup_check_exist());
  EXPECT_THAT(shown(), ElementsAre("waiting", "string 125"));
}

TEST_F(Guard, ShowsNothingWhileTheStringsAreClosed) {
  pb_res_close();
  ask();

  EXPECT_THAT(shown_after(40000), IsEmpty());
}

TEST_F(Guard, RunsOnce) {
  ask();
  fake::advance_clock(40000);

  EXPECT_THAT(shown_after(80000), IsEmpty());
}

TEST_F(Guard, IsRemovedOnce) {
  ask();

  mb_vesk_media_destroy_timer();
  mb_vesk_media_destroy_timer();

  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
  EXPECT_THAT(take_glib_warnings(), IsEmpty());
  EXPECT_TRUE(
      logged(PB_LOG_INFO, "[mb_vesk_media_destroy_timer]mb_vesk_media_destroy_timer !!!\n"));
}

TEST_F(Guard, IsOfTheLatestRequest) {
  ask();
  fake::advance_clock(10);
  ask();

  mb_vesk_media_destroy_timer();

  EXPECT_THAT(fake::pending_timeouts(), SizeIs(1));
  EXPECT_EQ(fake::pending_timeouts().at(0).due_ms, 40000U);
}

TEST_F(Guard, OfAnEarlierRequestFiresAndRemovesTheLater) {
  ask();
  fake::advance_clock(10);
  ask();

  EXPECT_THAT(shown_after(39990), ElementsAre("string 125"));
  EXPECT_THAT(shown_after(400000), IsEmpty());
}

TEST_F(Guard, RemovesItselfWithoutAWarning) {
  ask();

  fake::advance_clock(40000);
  mb_vesk_media_destroy_timer();

  EXPECT_THAT(take_glib_warnings(), IsEmpty());
}

TEST_F(Guard, IsRemovedByTheResultOfTheReply) {
  ask();
  vesk_test::send_share(VESK_SHARE_SHARE_WITH_GROUP, 1);

  EXPECT_THAT(shown_after(1000), ElementsAre("string 17"));
  EXPECT_THAT(shown_after(100000), Not(Contains("string 125")));
}

TEST_F(Guard, SaysNothingOfFreeingWhenThereWasNoText) {
  ask();

  fake::advance_clock(40000);

  EXPECT_THAT(fake::platform().log,
              Not(Contains(fake::LoggedLike(PB_LOG_INFO, HasSubstr("FREED")))));
}

}  // namespace
