#include <pb-item.h>

#include <array>

#include "support/fake-platform.hpp"

namespace {

using testing::Each;
using testing::ElementsAre;

constexpr gsize kMimeSize = 100;

/// A buffer of the size that callers provide, with a canary behind it.
struct MimeBuffer {
  MimeBuffer() { bytes.fill('#'); }
  gchar *data() { return bytes.data(); }
  std::array<gchar, kMimeSize + 1> bytes{};
};

struct KnownType {
  const char *extension;
  const char *mime;
};

class ContentTypeOf : public testing::TestWithParam<KnownType> {};

TEST_P(ContentTypeOf, IsFound) {
  MimeBuffer mime;

  EXPECT_TRUE(pb_item_get_content_type_by_ext(0, mime.data(), GetParam().extension));

  EXPECT_STREQ(mime.data(), GetParam().mime);
}

INSTANTIATE_TEST_SUITE_P(
    KnownExtensions, ContentTypeOf,
    testing::Values(KnownType{"gif", "image/gif"}, KnownType{"jpg", "image/jpeg"},
                    KnownType{"tif", "image/tiff"}, KnownType{"png", "image/png"},
                    KnownType{"wbmp", "image/wbmp"}, KnownType{"bmp", "image/bmp"}),
    [](const auto &test) { return std::string(test.param.extension); });

class ContentTypeMissing : public testing::TestWithParam<const char *> {};

TEST_P(ContentTypeMissing, IsNotFound) {
  MimeBuffer mime;

  EXPECT_FALSE(pb_item_get_content_type_by_ext(0, mime.data(), GetParam()));
}

TEST_P(ContentTypeMissing, LeavesTheBufferUntouched) {
  MimeBuffer mime;

  pb_item_get_content_type_by_ext(0, mime.data(), GetParam());

  EXPECT_THAT(mime.bytes, Each('#'));
}

INSTANTIATE_TEST_SUITE_P(UnknownExtensions, ContentTypeMissing,
                         testing::Values("JPG", "jpeg", "", "jp", "jpgx", "tiff", ".jpg",
                                         "image/gif", nullptr));

class ContentType : public support::GlibTest {};

TEST_F(ContentType, DoesNotDependOnTheFirstArgument) {
  MimeBuffer mime;

  EXPECT_TRUE(pb_item_get_content_type_by_ext(-12345, mime.data(), "png"));

  EXPECT_STREQ(mime.data(), "image/png");
}

TEST_F(ContentType, WritesNothingBehindItsHundredBytes) {
  MimeBuffer mime;

  pb_item_get_content_type_by_ext(0, mime.data(), "png");

  EXPECT_EQ(mime.bytes[kMimeSize], '#');
}

TEST_F(ContentType, NeedsABuffer) {
  EXPECT_FALSE(pb_item_get_content_type_by_ext(0, nullptr, "png"));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_get_content_type_by_ext: assertion 'mime_out' failed"));
}

}  // namespace
