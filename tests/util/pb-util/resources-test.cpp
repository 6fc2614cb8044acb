#include <string>

#include "pb-debug.h"
#include "pb-util-image.h"
#include "pb-util-resource.h"
#include "support/fake-platform.hpp"
#include "support/pixbufs.hpp"

namespace {

using fake::calls_of;
using fake::Logged;
using fake::platform;
using support::PixbufPtr;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StrEq;

std::string open_bitmaps_call() {
  return std::string("rsrc_open_rbm(\"") + g_getenv("PHOTOBROWSER_ROOT") +
         "/usr/apps/com.velmora.photobrowser/res/bitmap/pb-res-bitmap-wvga.rbm\")";
}

std::string open_strings_call() {
  return std::string("rsrc_open_rsr(\"") + g_getenv("PHOTOBROWSER_ROOT") +
         "/usr/apps/com.velmora.photobrowser/res/string/pb-res-string.rsr\")";
}

void refuse_to_open() {
  platform().rsrc_open_rbm = [](const gchar *) { return -1; };
  platform().rsrc_open_rsr = [](const gchar *) { return -1; };
}

TEST(ResOpen, OpensBothFiles) {
  pb_res_open();

  EXPECT_THAT(platform().calls, ElementsAre(open_bitmaps_call(), open_strings_call()));
}

TEST(ResOpen, LogsItself) {
  pb_res_open();

  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_INFO, "[pb_res_open]pb_res_open\n")));
}

TEST(ResOpen, OpensOnce) {
  pb_res_open();
  fake::take_calls();

  pb_res_open();

  EXPECT_THAT(platform().calls, IsEmpty());
}

TEST(ResOpen, OpensTheFileThatIsClosed) {
  const PixbufPtr bitmap = PixbufPtr::adopt(pb_get_pixbuf(5));
  fake::take_calls();

  pb_res_open();

  EXPECT_THAT(platform().calls, ElementsAre(open_strings_call()));
}

TEST(ResOpen, LogsFilesThatDoNotOpen) {
  refuse_to_open();

  pb_res_open();

  EXPECT_THAT(
      platform().log,
      ElementsAre(Logged(PB_LOG_INFO, "[pb_res_open]pb_res_open\n"),
                  Logged(PB_LOG_ERROR, "[pb_res_open]fail to open bitmap resource-mananger\n"),
                  Logged(PB_LOG_ERROR, "[pb_res_open]fail to open string resource-mananger\n")));
}

TEST(ResOpen, TriesFilesAgainThatDidNotOpen) {
  refuse_to_open();
  pb_res_open();
  fake::take_calls();

  pb_res_open();

  EXPECT_THAT(platform().calls, ElementsAre(open_bitmaps_call(), open_strings_call()));
}

TEST(ResOpen, TakesTheHandleZero) {
  platform().rsrc_open_rsr = [](const gchar *) { return 0; };
  pb_res_open();

  pb_get_res_string(1001);

  EXPECT_THAT(calls_of("rsrc_get_string"), ElementsAre("rsrc_get_string(0, 1)"));
}

TEST(ResClose, ClosesBothFilesAndFreesTheStrings) {
  pb_res_open();
  fake::take_calls();

  pb_res_close();

  EXPECT_THAT(platform().calls,
              ElementsAre("rsrc_close_rbm(1)", "rsrc_close_rsr(2)", "rsrc_free_strings()"));
}

TEST(ResClose, LogsItself) {
  pb_res_close();

  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_INFO, "[pb_res_close]pb_res_close\n")));
}

TEST(ResClose, ClosesOnceAndFreesStringsEachTime) {
  pb_res_open();
  pb_res_close();
  fake::take_calls();

  pb_res_close();

  EXPECT_THAT(platform().calls, ElementsAre("rsrc_free_strings()"));
}

TEST(ResClose, IsNotCounted) {
  pb_res_open();
  pb_res_open();

  pb_res_close();

  EXPECT_EQ(pb_get_res_string(1000), nullptr);
}

TEST(ResClose, ReleasesTheCachedFrame) {
  pb_res_open();
  GdkPixbuf *frame = pb_get_cached_pixbuf(PB_CACHED_PIXBUF_FRAME);
  const support::ExpectFinalized watch(frame);

  pb_res_close();
}

TEST(ResClose, LetsTheFrameBeLoadedAgain) {
  pb_get_cached_pixbuf(PB_CACHED_PIXBUF_FRAME);
  pb_res_close();
  fake::take_calls();

  GdkPixbuf *frame = pb_get_cached_pixbuf(PB_CACHED_PIXBUF_FRAME);

  EXPECT_EQ(fake::image_id(frame), 83);
  EXPECT_THAT(platform().calls, ElementsAre(open_bitmaps_call(), "rsrc_get_image(1, 83)"));
  pb_res_close();
}

TEST(ResString, IsTheApplicationsOwnAtItsIndex) {
  pb_res_open();

  EXPECT_THAT(pb_get_res_string(1000), StrEq("string 0"));
  EXPECT_THAT(pb_get_res_string(1220), StrEq("string 220"));

  EXPECT_THAT(calls_of("rsrc_get_string"),
              ElementsAre("rsrc_get_string(2, 0)", "rsrc_get_string(2, 220)"));
}

TEST(ResString, IsThePhonesForEveryOtherId) {
  pb_res_open();

  for (const int id : {999, 1221, 10035, 0, -1}) {
    EXPECT_EQ(pb_get_res_string(id), "system string " + std::to_string(id));
  }

  EXPECT_THAT(calls_of("rsrc_get_string"), IsEmpty());
}

TEST(ResString, IsNullBeforeTheFileIsOpen) {
  EXPECT_EQ(pb_get_res_string(1000), nullptr);
  EXPECT_EQ(pb_get_res_string(10035), nullptr);

  EXPECT_THAT(platform().calls, IsEmpty());
}

TEST(ResString, IsNullWhenTheFileDidNotOpen) {
  refuse_to_open();
  pb_res_open();

  EXPECT_EQ(pb_get_res_string(1000), nullptr);
}

TEST(ResString, IsQuiet) {
  pb_res_open();
  fake::take_log();

  pb_get_res_string(1000);

  EXPECT_THAT(platform().log, IsEmpty());
}

TEST(ResString, GoesOnInsideALookUpOfTheSameThread) {
  pb_res_open();
  fake::take_log();
  std::string nested;
  platform().rsrc_get_string = [&nested](gint, gint index) -> const gchar * {
    if (index == 0) nested = pb_get_res_string(1001);
    return g_intern_string(std::to_string(index).c_str());
  };

  const std::string outer = pb_get_res_string(1000);

  EXPECT_EQ(outer, "0");
  EXPECT_EQ(nested, "1");
  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR,
                                 "[pb_get_res_string]Mutex is already locked by the "
                                 "same thread \n\n")));
}

TEST(ResString, CanBeLookedUpWithinABitmapsLookUp) {
  pb_res_open();
  fake::take_log();
  platform().rsrc_get_image = [](gint, gint) -> GdkPixbuf * {
    pb_get_res_string(1000);
    return nullptr;
  };

  pb_get_pixbuf(4);

  EXPECT_THAT(platform().log, IsEmpty());
}

TEST(ResPixbuf, IsTheBitmapOfItsId) {
  pb_res_open();

  const PixbufPtr bitmap = PixbufPtr::adopt(pb_get_pixbuf(105));

  EXPECT_EQ(fake::image_id(bitmap.get()), 105);
  EXPECT_EQ(platform().calls.back(), "rsrc_get_image(1, 105)");
}

TEST(ResPixbuf, IsOfTheCallersOwn) {
  const PixbufPtr first = PixbufPtr::adopt(pb_get_pixbuf(105));
  const PixbufPtr second = PixbufPtr::adopt(pb_get_pixbuf(105));

  EXPECT_NE(first.get(), second.get());
}

TEST(ResPixbuf, OpensTheBitmapFileAlone) {
  const PixbufPtr bitmap = PixbufPtr::adopt(pb_get_pixbuf(105));

  EXPECT_THAT(platform().calls, ElementsAre(open_bitmaps_call(), "rsrc_get_image(1, 105)"));
}

TEST(ResPixbuf, OpensTheBitmapFileOnce) {
  const PixbufPtr first = PixbufPtr::adopt(pb_get_pixbuf(105));
  fake::take_calls();

  const PixbufPtr second = PixbufPtr::adopt(pb_get_pixbuf(53));

  EXPECT_THAT(platform().calls, ElementsAre("rsrc_get_image(1, 53)"));
}

TEST(ResPixbuf, LogsAFileThatDoesNotOpen) {
  refuse_to_open();

  EXPECT_EQ(pb_get_pixbuf(105), nullptr);

  EXPECT_THAT(
      platform().log,
      ElementsAre(Logged(PB_LOG_ERROR, "[pb_get_pixbuf]fail to open bitmap resource-mananger\n")));
}

TEST(ResPixbuf, IsRefusedForMinusOne) {
  EXPECT_EQ(pb_get_pixbuf(-1), nullptr);

  EXPECT_THAT(platform().calls, IsEmpty());
  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[pb_get_pixbuf]bitmap id -> (-1)\n")));
}

TEST(ResPixbuf, IsAskedForWithOtherNegativeIds) {
  platform().rsrc_get_image = [](gint, gint) -> GdkPixbuf * { return nullptr; };

  EXPECT_EQ(pb_get_pixbuf(-2), nullptr);

  EXPECT_EQ(platform().calls.back(), "rsrc_get_image(1, -2)");
}

TEST(ResPixbuf, GoesOnInsideALookUpOfTheSameThread) {
  pb_res_open();
  fake::take_log();
  platform().rsrc_get_image = [](gint, gint id) -> GdkPixbuf * {
    if (id == 1) pb_get_pixbuf(2);
    return nullptr;
  };

  pb_get_pixbuf(1);

  EXPECT_EQ(platform().calls.back(), "rsrc_get_image(1, 2)");
  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR,
                                 "[pb_get_pixbuf]Mutex is already locked by the same "
                                 "thread \n\n")));
}

}  // namespace
