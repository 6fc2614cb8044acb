#include <gconf/gconf-value.h>

#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "pb-util-settings.h"
#include "support/fake-platform.hpp"
#include "util/pb-util/fake-settings.hpp"

namespace {

using fake::Logged;
using fake::settings;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StrEq;

constexpr const char *kKey = "/Apps/MediaBrowser/WebAlbumCount";

using SlistPtr = std::unique_ptr<GSList, pb::FreeWith<g_slist_free>>;

std::vector<int> numbers_of(const GSList *list) {
  std::vector<int> numbers;
  for (; list != nullptr; list = list->next) numbers.push_back(GPOINTER_TO_INT(list->data));
  return numbers;
}

TEST(GconfGetString, ReadsTheText) {
  settings().values[kKey] = "quick";

  const pb::StringPtr text(mb_gconf_get_string(kKey));

  EXPECT_THAT(text.get(), StrEq("quick"));
}

TEST(GconfGetString, IsNullForAnUnsetKey) {
  EXPECT_EQ(mb_gconf_get_string(kKey), nullptr);

  EXPECT_THAT(fake::platform().log, IsEmpty());
}

TEST(GconfGetString, InitialisesTypesAndUsesTheClientOnce) {
  const pb::StringPtr text(mb_gconf_get_string(kKey));

  EXPECT_THAT(settings().calls, ElementsAre("type_init", "default_client",
                                            "get_string(/Apps/MediaBrowser/WebAlbumCount)"));
  EXPECT_EQ(settings().live_clients, 0);
}

TEST(GconfGetString, LogsANullKey) {
  EXPECT_EQ(mb_gconf_get_string(nullptr), nullptr);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_get_string]invalid parameter\n")));
}

TEST(GconfGetString, LogsAMissingClient) {
  settings().has_client = false;

  EXPECT_EQ(mb_gconf_get_string(kKey), nullptr);

  EXPECT_THAT(
      fake::platform().log,
      ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_get_string]fail to get gconf default client\n")));
}

TEST(GconfGetString, LogsAnError) {
  settings().failure = "no daemon";

  EXPECT_EQ(mb_gconf_get_string(kKey), nullptr);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_get_string]no daemon\n")));
  EXPECT_EQ(settings().live_clients, 0);
}

TEST(GconfGetInt, ReadsTheNumber) {
  settings().values[kKey] = 12;

  EXPECT_EQ(mb_gconf_get_int(kKey), 12);
}

TEST(GconfGetInt, InitialisesTypesAndUsesTheClientOnce) {
  mb_gconf_get_int(kKey);

  EXPECT_THAT(settings().calls, ElementsAre("type_init", "default_client",
                                            "get_int(/Apps/MediaBrowser/WebAlbumCount)"));
  EXPECT_EQ(settings().live_clients, 0);
}

TEST(GconfGetInt, LogsANullKey) {
  EXPECT_EQ(mb_gconf_get_int(nullptr), -1);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_get_int]invalid parameter\n")));
}

TEST(GconfGetInt, LogsAMissingClient) {
  settings().has_client = false;

  EXPECT_EQ(mb_gconf_get_int(kKey), -1);

  EXPECT_THAT(
      fake::platform().log,
      ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_get_int]fail to get gconf default client\n")));
}

TEST(GconfGetInt, LogsAnError) {
  settings().failure = "no daemon";

  EXPECT_EQ(mb_gconf_get_int(kKey), -1);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_get_int]no daemon\n")));
}

TEST(GconfSetString, WritesTheText) {
  mb_gconf_set_string(kKey, "quick");

  EXPECT_THAT(settings().calls, ElementsAre("type_init", "default_client",
                                            "set_string(/Apps/MediaBrowser/WebAlbumCount, quick)"));
  EXPECT_EQ(settings().live_clients, 0);
}

TEST(GconfSetString, LogsANullKey) {
  mb_gconf_set_string(nullptr, "quick");

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_set_string]invalid parameter\n")));
}

TEST(GconfSetString, LogsANullText) {
  mb_gconf_set_string(kKey, nullptr);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_set_string]invalid parameter\n")));
}

TEST(GconfSetString, LogsATextThatIsNone) {
  mb_gconf_set_string(kKey, "\xff");

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_set_string]invalid parameter\n")));
  EXPECT_THAT(settings().calls, IsEmpty());
}

TEST(GconfKeys, AreNotAskedForWhenTheyAreNone) {
  for (const char *text : {"no slash", "", "/a/"}) {
    mb_gconf_get_string(text);
    mb_gconf_get_int(text);
    mb_gconf_get_list(text);
    mb_gconf_set_string(text, "x");
    mb_gconf_set_int(text, 1);
    mb_gconf_set_list(text, nullptr);
  }

  EXPECT_THAT(settings().calls, IsEmpty());
}

TEST(GconfSetString, LogsAMissingClient) {
  settings().has_client = false;

  mb_gconf_set_string(kKey, "quick");

  EXPECT_THAT(
      fake::platform().log,
      ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_set_string]fail to get gconf default client\n")));
}

TEST(GconfSetString, LogsAnError) {
  settings().failure = "read only";

  mb_gconf_set_string(kKey, "quick");

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_set_string]read only\n")));
}

TEST(GconfSetInt, WritesTheNumber) {
  mb_gconf_set_int(kKey, -5);

  EXPECT_THAT(settings().calls, ElementsAre("type_init", "default_client",
                                            "set_int(/Apps/MediaBrowser/WebAlbumCount, -5)"));
  EXPECT_EQ(settings().live_clients, 0);
}

TEST(GconfSetInt, LogsANullKey) {
  mb_gconf_set_int(nullptr, 1);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_set_int]invalid parameter\n")));
}

TEST(GconfSetInt, LogsAMissingClient) {
  settings().has_client = false;

  mb_gconf_set_int(kKey, 1);

  EXPECT_THAT(
      fake::platform().log,
      ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_set_int]fail to get gconf default client\n")));
}

TEST(GconfSetInt, LogsAnError) {
  settings().failure = "read only";

  mb_gconf_set_int(kKey, 1);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_set_int]read only\n")));
}

TEST(GconfGetList, ReadsTheNumbers) {
  settings().values[kKey] = std::vector<int>{3, -1, 4};

  const SlistPtr list(mb_gconf_get_list(kKey));

  EXPECT_THAT(numbers_of(list.get()), ElementsAre(3, -1, 4));
}

TEST(GconfGetList, AsksForIntegers) {
  const SlistPtr list(mb_gconf_get_list(kKey));

  EXPECT_EQ(settings().calls.back(),
            "get_list(/Apps/MediaBrowser/WebAlbumCount, " + std::to_string(GCONF_VALUE_INT) + ")");
  EXPECT_EQ(settings().live_clients, 0);
}

TEST(GconfGetList, LogsANullKey) {
  EXPECT_EQ(mb_gconf_get_list(nullptr), nullptr);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_get_list]invalid parameter\n")));
}

TEST(GconfGetList, LogsAMissingClient) {
  settings().has_client = false;

  EXPECT_EQ(mb_gconf_get_list(kKey), nullptr);

  EXPECT_THAT(
      fake::platform().log,
      ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_get_list]fail to get gconf default client\n")));
}

TEST(GconfGetList, LogsAnError) {
  settings().failure = "no daemon";

  EXPECT_EQ(mb_gconf_get_list(kKey), nullptr);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_get_list]no daemon\n")));
}

TEST(GconfSetList, WritesIntegers) {
  const SlistPtr list(
      g_slist_append(g_slist_append(nullptr, GINT_TO_POINTER(7)), GINT_TO_POINTER(-8)));

  mb_gconf_set_list(kKey, list.get());

  EXPECT_EQ(settings().calls.back(), "set_list(/Apps/MediaBrowser/WebAlbumCount, " +
                                         std::to_string(GCONF_VALUE_INT) + ", 7 -8)");
  EXPECT_EQ(settings().live_clients, 0);
}

TEST(GconfSetList, LogsANullKey) {
  mb_gconf_set_list(nullptr, nullptr);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_set_list]invalid parameter\n")));
}

TEST(GconfSetList, LogsAMissingClient) {
  settings().has_client = false;

  mb_gconf_set_list(kKey, nullptr);

  EXPECT_THAT(
      fake::platform().log,
      ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_set_list]fail to get gconf default client\n")));
}

TEST(GconfSetList, LogsAnError) {
  settings().failure = "read only";

  mb_gconf_set_list(kKey, nullptr);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_gconf_set_list]read only\n")));
}

}  // namespace
