// Names and paths as nobody gives them: empty, no text, too long, full of shell signs.
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <ostream>
#include <string>

#include "glib-ptr.hpp"
#include "pb-util.h"
#include "support/fake-platform.hpp"

namespace {

using fake::platform;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

using MallocString = std::unique_ptr<gchar, pb::FreeWith<std::free>>;

constexpr std::size_t kBufferSize = 5000;

struct Hostile {
  const char *name;
  std::string text;
};

void PrintTo(const Hostile &hostile, std::ostream *out) { *out << hostile.name; }

class HostileText : public support::GlibTest, public testing::WithParamInterface<Hostile> {
 protected:
  [[nodiscard]] static const std::string &text() { return GetParam().text; }
  [[nodiscard]] static std::string last_component() {
    return text().substr(text().rfind('/') + 1);  // all of it without a slash
  }

  /// A writable copy with room behind it, and a mark behind the room.
  std::array<gchar, kBufferSize> buffer_of_text() {
    std::array<gchar, kBufferSize> buffer{};
    text().copy(buffer.data(), text().size());
    return buffer;
  }
};

TEST_P(HostileText, IsNoGeneratedName) {
  EXPECT_FALSE(mb_util_check_default_generated_name(text().c_str()));
}

TEST_P(HostileText, IsTrimmedToItself) {
  auto buffer = buffer_of_text();

  const MallocString copy(mb_util_trim_space(buffer.data()));

  EXPECT_EQ(copy == nullptr ? "" : std::string(copy.get()), text());
}

TEST_P(HostileText, HasAnExtensionOfItsOwnBytes) {
  const gchar *extension = pb_get_file_ext_name(text().c_str());

  if (extension == nullptr) {
    EXPECT_EQ(text().find('.'), std::string::npos);
  } else {
    EXPECT_THAT(text(), EndsWith("." + std::string(extension)));
  }
}

TEST_P(HostileText, KeepsWhatIsInFrontOfItsExtension) {
  auto buffer = buffer_of_text();

  const gboolean changed = pb_util_change_file_ext("png", buffer.data());

  const std::string result = buffer.data();
  if (changed == FALSE) {
    EXPECT_EQ(result, text());
  } else {
    EXPECT_THAT(result, EndsWith(".png"));
    EXPECT_THAT(text(), StartsWith(result.substr(0, result.size() - 3)));
  }
}

TEST_P(HostileText, GivesANameThatFits) {
  std::array<gchar, PB_FILE_NAME_SIZE + 1> name{};
  name.back() = 'x';

  EXPECT_TRUE(mb_get_file_name_with_ext(text().c_str(), name.data()));

  EXPECT_EQ(std::string(name.data()), last_component().substr(0, PB_FILE_NAME_SIZE - 1));
  EXPECT_EQ(name.back(), 'x');
}

TEST_P(HostileText, GivesANameWithoutExtensionThatFits) {
  std::array<gchar, PB_FILE_NAME_SIZE + 1> name{};
  name.back() = 'x';

  mb_get_filename_from_path(text().c_str(), name.data());

  EXPECT_THAT(last_component(), StartsWith(name.data()));
  EXPECT_EQ(name.back(), 'x');
}

TEST_P(HostileText, IsSplitIntoItsParts) {
  std::array<gchar, kBufferSize> file{};
  std::array<gchar, kBufferSize> directory{};
  std::array<gchar, kBufferSize> path{};

  const gboolean split =
      pb_get_file_dir_names(text().c_str(), file.data(), directory.data(), path.data());

  EXPECT_EQ(split != FALSE, text().find('/') != std::string::npos);
  if (split == FALSE) return;
  EXPECT_EQ(std::string(path.data()) + "/" + file.data(), text());
  EXPECT_THAT(std::string(path.data()), EndsWith(directory.data()));
}

TEST_P(HostileText, IsResolvedWholeOrNotAtAll) {
  std::array<gchar, PB_FULL_PATH_SIZE> full_path{};

  mb_util_get_full_path_by_record("DCIM", text().c_str(), 0, full_path.data());

  if (text().size() + 5 < PB_FULL_PATH_SIZE) {
    EXPECT_EQ(platform().calls.size(), 1U);
  } else {
    EXPECT_THAT(platform().calls, IsEmpty());
  }
}

TEST_P(HostileText, GoesToTheExplorerAsItIs) {
  std::string deleted;
  platform().fexplorer_delete_file_only = [&deleted](const gchar *path) {
    deleted = path;
    return 0;
  };

  EXPECT_TRUE(pb_util_delete_file(text().c_str(), FALSE));
  EXPECT_EQ(deleted, text());
  deleted = "-";
  EXPECT_TRUE(pb_util_edit_delete_file(text().c_str()));
  EXPECT_EQ(deleted, text());
}

TEST_P(HostileText, GoesToThePhonesStatusAsItIs) {
  std::string asked;
  platform().phonestatus_get = [&asked](const gchar *key, GConfValue *) {
    asked = key;
    return FALSE;
  };
  gint value = 3;

  EXPECT_FALSE(mb_get_int_phone_status(text().c_str(), &value));

  EXPECT_EQ(asked, text());
  EXPECT_EQ(value, 3);
}

TEST_P(HostileText, IsNoPictureAndNoVideo) {
  EXPECT_EQ(pb_get_pixbuf_at_size_with_adjustment(text().c_str(), 10, 10), nullptr);

  platform().MMFileGetContentAttr = [](const gchar *, MMAttrs **attrs) {
    *attrs = nullptr;
    return -1;
  };
  EXPECT_EQ(pb_get_video_thumnail_by_path(text().c_str()), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, HostileText,
    testing::Values(Hostile{"Empty", ""}, Hostile{"NoText", "/mnt/\xff\xfe/\xfd.\xc3"},
                    Hostile{"LongName", std::string(4096, 'n')},
                    Hostile{"LongFile", "/a/" + std::string(4088, 'n') + ".jpg"},
                    Hostile{"LongExtension", "/a/b." + std::string(4091, 'n')},
                    Hostile{"Slashes", std::string(4096, '/')},
                    Hostile{"Dots", std::string(4096, '.')},
                    Hostile{"ShellSigns", "/a/$(touch x); `id` | & '\"*?<>\\ .jpg"},
                    Hostile{"Newlines", "/a\n/b\n.j\tpg"}, Hostile{"Format", "/%s%n/%d.%x"}),
    [](const auto &row) { return row.param.name; });

}  // namespace
