#include "phone-services/status.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "glib-ptr.hpp"
#include "phone-status.h"

namespace {

constexpr const char *kKey = "/PhoneStatus/Application/FileManager/PhoneInit";

using ValuePtr = std::unique_ptr<GConfValue, pb::FreeWith<gconf_value_free>>;

ValuePtr int_value(int number) {
  ValuePtr value(gconf_value_new(GCONF_VALUE_INT));
  gconf_value_set_int(value.get(), number);
  return value;
}

}  // namespace

TEST(PhoneStatus, AnUnknownKeyFailsAndLeavesTheValue) {
  const ValuePtr value = int_value(7);

  EXPECT_FALSE(phonestatus_get("/PhoneStatus/Nothing", value.get()));

  EXPECT_EQ(gconf_value_get_int(value.get()), 7);
}

TEST(PhoneStatus, AnswersWhatAServiceReported) {
  phone::status::set(kKey, 1);
  const ValuePtr value = int_value(-1);

  EXPECT_TRUE(phonestatus_get(kKey, value.get()));

  EXPECT_EQ(gconf_value_get_int(value.get()), 1);
}

TEST(PhoneStatus, AnswersWhatACallerSet) {
  EXPECT_TRUE(phonestatus_set("/PhoneStatus/Own", int_value(42).get()));

  const ValuePtr value = int_value(0);
  EXPECT_TRUE(phonestatus_get("/PhoneStatus/Own", value.get()));
  EXPECT_EQ(gconf_value_get_int(value.get()), 42);
}

TEST(PhoneStatus, TheLastValueCounts) {
  phone::status::set(kKey, 0);
  phone::status::set(kKey, 1);
  const ValuePtr value = int_value(-1);

  phonestatus_get(kKey, value.get());

  EXPECT_EQ(gconf_value_get_int(value.get()), 1);
}

TEST(PhoneStatus, KeepsNumbersOnly) {
  const ValuePtr text(gconf_value_new(GCONF_VALUE_STRING));
  gconf_value_set_string(text.get(), "x");

  EXPECT_FALSE(phonestatus_set("/PhoneStatus/Text", text.get()));
  phone::status::set(kKey, 1);
  EXPECT_FALSE(phonestatus_get(kKey, text.get()));
}

TEST(PhoneStatus, RefusesNothings) {
  const ValuePtr value = int_value(1);

  EXPECT_FALSE(phonestatus_get(nullptr, value.get()));
  EXPECT_FALSE(phonestatus_get(kKey, nullptr));
  EXPECT_FALSE(phonestatus_set(nullptr, value.get()));
  EXPECT_FALSE(phonestatus_set(kKey, nullptr));
}

TEST(PhoneStatus, CanBeReportedFromAnotherThread) {
  std::thread([] { phone::status::set(kKey, 5); }).join();
  const ValuePtr value = int_value(0);

  ASSERT_TRUE(phonestatus_get(kKey, value.get()));
  EXPECT_EQ(gconf_value_get_int(value.get()), 5);
}
