#include "platform/linux/locale_code_page.h"

#include <gtest/gtest.h>

#include <string_view>

namespace quorrix {
namespace {

struct Case {
  std::string_view locale;
  unsigned codePage;
};

TEST(CodePageOfLocale, IsTheOneOfTheLanguage) {
  for (const auto& [locale, codePage] : {
           Case{"th_TH.UTF-8", 874},  Case{"pl_PL.UTF-8", 1250}, Case{"cs_CZ.UTF-8", 1250},
           Case{"hu_HU.UTF-8", 1250}, Case{"ro_RO.UTF-8", 1250}, Case{"sq_AL.UTF-8", 1250},
           Case{"ru_RU.UTF-8", 1251}, Case{"uk_UA.UTF-8", 1251}, Case{"bg_BG.UTF-8", 1251},
           Case{"mk_MK.UTF-8", 1251}, Case{"kk_KZ.UTF-8", 1251}, Case{"de_DE.UTF-8", 1252},
           Case{"fr_FR.UTF-8", 1252}, Case{"pt_BR.UTF-8", 1252}, Case{"is_IS.UTF-8", 1252},
           Case{"el_GR.UTF-8", 1253}, Case{"tr_TR.UTF-8", 1254}, Case{"he_IL.UTF-8", 1255},
           Case{"yi_US.UTF-8", 1255}, Case{"ar_EG.UTF-8", 1256}, Case{"fa_IR.UTF-8", 1256},
           Case{"ur_PK.UTF-8", 1256}, Case{"lt_LT.UTF-8", 1257}, Case{"lv_LV.UTF-8", 1257},
           Case{"et_EE.UTF-8", 1257}, Case{"vi_VN.UTF-8", 1258},
       }) {
    EXPECT_EQ(codePageOfLocale(locale), codePage) << locale;
  }
}

TEST(CodePageOfLocale, IsWesternForLanguagesWithoutASingleBytePage) {
  for (const std::string_view locale : {"zh_CN.UTF-8", "ja_JP.UTF-8", "ko_KR.UTF-8", "hi_IN",
                                        "ka_GE", "hy_AM", "am_ET", "C", "C.UTF-8", "POSIX", ""}) {
    EXPECT_EQ(codePageOfLocale(locale), 1252U) << locale;
  }
}

TEST(CodePageOfLocale, DependsOnTheScriptOfTheLanguage) {
  for (const auto& [locale, codePage] : {
           Case{"sr_RS", 1251},
           Case{"sr_RS@latin", 1250},
           Case{"sr_RS.UTF-8@latin", 1250},
           Case{"uz_UZ", 1254},
           Case{"uz_UZ.UTF-8@cyrillic", 1251},
           Case{"az_AZ", 1254},
           Case{"be_BY@latin", 1250},
           Case{"tt_RU@iqtelif", 1254},
           Case{"sd_IN", 1256},
           Case{"sd_IN@devanagari", 1252},
           Case{"pa_IN", 1252},
           Case{"pa_PK", 1256},
           Case{"ku_TR", 1254},
           Case{"ku_IQ", 1256},
           Case{"mn_MN", 1251},
           Case{"mn_CN", 1252},
       }) {
    EXPECT_EQ(codePageOfLocale(locale), codePage) << locale;
  }
}

TEST(CodePageOfLocale, DependsOnNeitherTerritoryNorCharacterSet) {
  EXPECT_EQ(codePageOfLocale("ru"), 1251U);
  EXPECT_EQ(codePageOfLocale("ru_UA"), 1251U);
  EXPECT_EQ(codePageOfLocale("ru_RU.KOI8-R"), 1251U);
  EXPECT_EQ(codePageOfLocale("pl.ISO-8859-2"), 1250U);
  EXPECT_EQ(codePageOfLocale("de_DE@euro"), 1252U);
}

}  // namespace
}  // namespace quorrix
