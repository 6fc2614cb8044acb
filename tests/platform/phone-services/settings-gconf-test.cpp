// The settings with the real client, a real daemon and the defaults that the build makes.
#include <gconf/gconf-client.h>

#include <array>
#include <clocale>
#include <string>

#include "phone-services/settings.hpp"
#include "phone-settings.h"
#include "private-bus.hpp"
#include "support/glib-test.hpp"

using test::PrivateBus;
using test::wait_for;
using testing::StrEq;

namespace {

constexpr const char *kDateFormat = "/apps/photobrowser/date_format";

using SchemaPtr = std::unique_ptr<GConfSchema, pb::FreeWith<gconf_schema_free>>;
using ValuePtr = std::unique_ptr<GConfValue, pb::FreeWith<gconf_value_free>>;

struct Setting {
  const char *key;
  GConfValueType type;
  const char *default_value;
  const char *owner = "photobrowser";
};

void PrintTo(const Setting &setting, std::ostream *out) { *out << setting.key; }

class SettingsDaemon : public testing::Test {
 protected:
  SettingsDaemon() {
    g_setenv("DEFAULTS_PATH", PB_SETTINGS_SOURCES, TRUE);
    bus_ = std::make_unique<PrivateBus>(PB_DBUS_SERVICES);
    client_ = pb::Ref<GConfClient>::adopt(gconf_client_get_default());
  }

  [[nodiscard]] SchemaPtr schema_of(const Setting &setting) const {
    return SchemaPtr(gconf_client_get_schema(
        client_.get(), (std::string("/schemas") + setting.key).c_str(), nullptr));
  }
  [[nodiscard]] ValuePtr value_of(const char *key) const {
    return ValuePtr(gconf_client_get(client_.get(), key, nullptr));
  }
  void choose(int format) const {
    pb::ErrorPtr error;
    gconf_client_set_int(client_.get(), kDateFormat, format, pb::out(error));
    EXPECT_EQ(error, nullptr) << error->message;
    gconf_client_suggest_sync(client_.get(), nullptr);
  }

  std::unique_ptr<PrivateBus> bus_;
  pb::Ref<GConfClient> client_;
};

class SettingOfThePhone : public SettingsDaemon, public testing::WithParamInterface<Setting> {};

int read_date_format() {
  gint value = -7;
  EXPECT_EQ(settings_get_int(SETTINGS_DATE_FORMAT, &value), 0);
  return value;
}

}  // namespace

TEST_P(SettingOfThePhone, HasItsDefault) {
  const ValuePtr value = value_of(GetParam().key);

  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->type, GetParam().type);
  const pb::StringPtr text(gconf_value_to_string(value.get()));
  EXPECT_THAT(text.get(), StrEq(GetParam().default_value));
}

TEST_P(SettingOfThePhone, IsDescribed) {
  const SchemaPtr schema = schema_of(GetParam());

  ASSERT_NE(schema, nullptr);
  EXPECT_EQ(gconf_schema_get_type(schema.get()), GetParam().type);
  EXPECT_STRNE(gconf_schema_get_short_desc(schema.get()), "");
  EXPECT_STRNE(gconf_schema_get_long_desc(schema.get()), "");
  EXPECT_THAT(gconf_schema_get_owner(schema.get()), StrEq(GetParam().owner));
}

INSTANTIATE_TEST_SUITE_P(
    Of, SettingOfThePhone,
    testing::Values(Setting{"/CSC/Apps/Settings/DefTheme", GCONF_VALUE_INT, "0"},
                    Setting{"/Apps/MediaBrowser/WebAlbumCount", GCONF_VALUE_INT, "0"},
                    Setting{"/Apps/vesk-service/content/drovosharealbumId", GCONF_VALUE_STRING, ""},
                    Setting{kDateFormat, GCONF_VALUE_INT, "-1"}),
    [](const auto &setting) {
      return std::string(strrchr(setting.param.key, '/') + 1) == "date_format"
                 ? std::string("DateFormat")
                 : std::string(strrchr(setting.param.key, '/') + 1);
    });

TEST_F(SettingsDaemon, LeavesTheDateFormatToTheLocale) {
  setlocale(LC_ALL, "C");

  EXPECT_EQ(read_date_format(), 1);
}

TEST_F(SettingsDaemon, GivesTheDateFormatThatTheUserChose) {
  choose(2);

  EXPECT_EQ(read_date_format(), 2);
}

TEST_F(SettingsDaemon, TellsOfAnotherChoice) {
  choose(2);
  read_date_format();

  choose(3);

  EXPECT_TRUE(wait_for([] { return read_date_format() == 3; }));
}

TEST_F(SettingsDaemon, LeavesAFormatThatIsNoneToTheLocale) {
  setlocale(LC_ALL, "C");
  choose(4);

  EXPECT_EQ(read_date_format(), 1);
}

TEST_F(SettingsDaemon, LeavesTextInTheFormatsPlaceToTheLocale) {
  setlocale(LC_ALL, "C");
  gconf_client_set_string(client_.get(), kDateFormat, "2", nullptr);

  EXPECT_EQ(read_date_format(), 1);
}

TEST(SettingsWithoutABus, FollowTheLocale) {
  g_setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", TRUE);
  setlocale(LC_ALL, "C");

  EXPECT_EQ(read_date_format(), 1);
}
