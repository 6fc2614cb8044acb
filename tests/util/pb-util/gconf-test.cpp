// The settings with the real client and its daemon. The session bus starts the daemon, so the
// tests need one, with a home directory of its own.
#include <gconf/gconf-client.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "pb-util-settings.h"
#include "support/fake-platform.hpp"

namespace {

using fake::Logged;
using fake::LoggedLike;
using fake::platform;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using testing::StrEq;

/// Keys of the test's own: the daemon serves all tests of a session.
class Gconf : public testing::Test {
 protected:
  void SetUp() override {
    const auto *test = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::string("/apps/photobrowser-test/") + test->name();
  }
  void TearDown() override {
    const auto client = pb::Ref<GConfClient>::adopt(gconf_client_get_default());
    gconf_client_recursive_unset(client.get(), folder_.c_str(), static_cast<GConfUnsetFlags>(0),
                                 nullptr);
  }
  [[nodiscard]] std::string key(const char *name = "key") const { return folder_ + "/" + name; }

  std::string folder_;
};

TEST_F(Gconf, KeepsATextBeyondItsClient) {
  mb_gconf_set_string(key().c_str(), "Grüße \"x\"");

  const pb::StringPtr text(mb_gconf_get_string(key().c_str()));
  EXPECT_THAT(text.get(), StrEq("Grüße \"x\""));
  EXPECT_THAT(platform().log, IsEmpty());
}

TEST_F(Gconf, KeepsAnEmptyText) {
  mb_gconf_set_string(key().c_str(), "");

  const pb::StringPtr text(mb_gconf_get_string(key().c_str()));
  EXPECT_THAT(text.get(), StrEq(""));
}

TEST_F(Gconf, KeepsALongText) {
  const std::string text(4096, 'n');

  mb_gconf_set_string(key().c_str(), text.c_str());

  const pb::StringPtr read(mb_gconf_get_string(key().c_str()));
  EXPECT_THAT(read.get(), StrEq(text));
}

TEST_F(Gconf, RefusesWhatIsNoText) {
  mb_gconf_set_string(key().c_str(), "\xff");

  EXPECT_EQ(mb_gconf_get_string(key().c_str()), nullptr);
  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_set_string]invalid parameter\n")));
}

TEST_F(Gconf, KeepsANumber) {
  mb_gconf_set_int(key().c_str(), -12);

  EXPECT_EQ(mb_gconf_get_int(key().c_str()), -12);
}

TEST_F(Gconf, ReadsAnUnsetKeyAsNothing) {
  EXPECT_EQ(mb_gconf_get_int(key("number").c_str()), 0);
  EXPECT_EQ(mb_gconf_get_string(key("text").c_str()), nullptr);
  EXPECT_EQ(mb_gconf_get_list(key("list").c_str()), nullptr);
  EXPECT_THAT(platform().log, IsEmpty());
}

TEST_F(Gconf, KeepsAListOfNumbers) {
  GSList *list = nullptr;
  for (const int number : {4, -1, 0}) list = g_slist_append(list, GINT_TO_POINTER(number));

  mb_gconf_set_list(key().c_str(), list);

  g_slist_free(list);
  GSList *read = mb_gconf_get_list(key().c_str());
  std::vector<int> numbers;
  for (GSList *link = read; link != nullptr; link = link->next) {
    numbers.push_back(GPOINTER_TO_INT(link->data));
  }
  g_slist_free(read);
  EXPECT_THAT(numbers, ElementsAre(4, -1, 0));
}

TEST_F(Gconf, EmptiesAList) {
  GSList *list = g_slist_append(nullptr, GINT_TO_POINTER(4));
  mb_gconf_set_list(key().c_str(), list);
  g_slist_free(list);

  mb_gconf_set_list(key().c_str(), nullptr);

  EXPECT_EQ(mb_gconf_get_list(key().c_str()), nullptr);
}

TEST_F(Gconf, LogsAKeyThatIsNone) {
  for (const char *text : {"no slash", "", "//a", "/a/", "/a b", "/\xff"}) {
    fake::take_log();

    EXPECT_EQ(mb_gconf_get_string(text), nullptr);

    EXPECT_THAT(platform().log,
                ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_get_string]invalid parameter\n")))
        << text;
  }
}

TEST_F(Gconf, TakesALongKey) {
  const std::string long_key = key(std::string(4096, 'n').c_str());

  mb_gconf_set_int(long_key.c_str(), 5);

  EXPECT_EQ(mb_gconf_get_int(long_key.c_str()), 5);
}

TEST_F(Gconf, LogsAKeyOfAnotherType) {
  mb_gconf_set_string(key().c_str(), "text");

  EXPECT_EQ(mb_gconf_get_int(key().c_str()), -1);

  EXPECT_THAT(platform().log,
              ElementsAre(LoggedLike(PB_LOG_ERROR, StartsWith("[mb_gconf_get_int]"))));
}

TEST_F(Gconf, HoldsTheTheme) {
  mb_gconf_set_int("/CSC/Apps/Settings/DefTheme", 4);

  EXPECT_EQ(mb_get_current_theme_value(), 3);

  mb_gconf_set_int("/CSC/Apps/Settings/DefTheme", 0);
}

class GconfWithoutBus : public support::GlibTest {
 protected:
  void SetUp() override { setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/no/such/bus", 1); }
  void TearDown() override {
    // GConf says the same in its own words.
    EXPECT_THAT(take_glib_warnings(), ElementsAre(StartsWith("Client failed to connect")));
  }
};

TEST_F(GconfWithoutBus, LogsWhatCannotBeRead) {
  EXPECT_EQ(mb_gconf_get_int("/apps/photobrowser-test/x"), -1);

  EXPECT_THAT(platform().log,
              ElementsAre(LoggedLike(PB_LOG_ERROR, StartsWith("[mb_gconf_get_int]"))));
}

TEST_F(GconfWithoutBus, LogsWhatCannotBeWritten) {
  mb_gconf_set_int("/apps/photobrowser-test/x", 1);

  EXPECT_THAT(platform().log,
              ElementsAre(LoggedLike(PB_LOG_ERROR, StartsWith("[mb_gconf_set_int]"))));
}

TEST_F(GconfWithoutBus, LogsATextThatCannotBeRead) {
  EXPECT_EQ(mb_gconf_get_string("/apps/photobrowser-test/x"), nullptr);

  EXPECT_THAT(platform().log,
              ElementsAre(LoggedLike(PB_LOG_ERROR, StartsWith("[mb_gconf_get_string]"))));
}

TEST_F(GconfWithoutBus, LogsATextThatCannotBeWritten) {
  mb_gconf_set_string("/apps/photobrowser-test/x", "text");

  EXPECT_THAT(platform().log,
              ElementsAre(LoggedLike(PB_LOG_ERROR, StartsWith("[mb_gconf_set_string]"))));
}

TEST_F(GconfWithoutBus, LogsAListThatCannotBeRead) {
  EXPECT_EQ(mb_gconf_get_list("/apps/photobrowser-test/x"), nullptr);

  EXPECT_THAT(platform().log,
              ElementsAre(LoggedLike(PB_LOG_ERROR, StartsWith("[mb_gconf_get_list]"))));
}

TEST_F(GconfWithoutBus, LogsAListThatCannotBeWritten) {
  mb_gconf_set_list("/apps/photobrowser-test/x", nullptr);

  EXPECT_THAT(platform().log,
              ElementsAre(LoggedLike(PB_LOG_ERROR, StartsWith("[mb_gconf_set_list]"))));
}

TEST_F(GconfWithoutBus, HasTheFirstTheme) { EXPECT_EQ(mb_get_current_theme_value(), 7); }

}  // namespace
