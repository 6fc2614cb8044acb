#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "glib-ptr.hpp"

namespace {

using PatternPtr = std::unique_ptr<FcPattern, pb::FreeWith<FcPatternDestroy>>;

/// Finds fonts as a program does that runs from the build.
class Font : public testing::Test {
 protected:
  Font() { g_setenv("FONTCONFIG_FILE", PB_FONTS_FILE, TRUE); }

  static std::string first_family(const FcPattern *pattern) {
    FcChar8 *family = nullptr;
    FcPatternGetString(pattern, FC_FAMILY, 0, &family);
    return reinterpret_cast<const char *>(family);
  }
  static std::string text_of(const FcPattern *pattern, const char *property) {
    FcChar8 *text = nullptr;
    FcPatternGetString(pattern, property, 0, &text);
    return text == nullptr ? "" : reinterpret_cast<const char *>(text);
  }
  static PatternPtr wanted(const char *name) {
    PatternPtr pattern(FcNameParse(reinterpret_cast<const FcChar8 *>(name)));
    FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    return pattern;
  }
  static PatternPtr found(const char *name) {
    FcResult result = FcResultNoMatch;
    return PatternPtr(FcFontMatch(nullptr, wanted(name).get(), &result));
  }
};

}  // namespace

TEST_F(Font, OfThePhoneIsAlwaysTheSame) {
  // Not what the machine takes for a family that it does not know.
  EXPECT_EQ(first_family(wanted("Quillon Rg").get()), "DejaVu Sans");
}

TEST_F(Font, OfThePhoneIsInstalled) {
  EXPECT_EQ(text_of(found("Quillon Rg").get(), FC_FAMILY), "DejaVu Sans");
}

TEST_F(Font, OfThePhoneIsThereInBold) {
  EXPECT_EQ(text_of(found("Quillon Rg:bold").get(), FC_STYLE), "Bold");
}

TEST_F(Font, OfOthersStaysTheirs) {
  EXPECT_EQ(first_family(wanted("Some Serif").get()), "Some Serif");
}
