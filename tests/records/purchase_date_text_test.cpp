#include "records/purchase_date_text.h"

#include <gtest/gtest.h>

#include <QDateTime>

#include "support/code_pages.h"

namespace quorrix {
namespace {

constexpr LocalDateTime kAfternoon{
    .year = 2026, .month = 11, .day = 2, .hour = 15, .minute = 4, .second = 5};

std::string dateText(const char* locale, unsigned codePage) {
  return purchaseDateText(kAfternoon, QLocale(QString::fromLatin1(locale)), CodePage(codePage))
      .toStdString();
}

TEST(PurchaseDateText, IsWrittenAsTheLocaleDoes) {
  EXPECT_EQ(dateText("en_US", 1252), "11/2/26 3:04:05 PM");
  EXPECT_EQ(dateText("en_GB", 1252), "02/11/2026 15:04:05");
  EXPECT_EQ(dateText("en_AU", 1252), "2/11/26 3:04:05 PM");
  EXPECT_EQ(dateText("de_DE", 1252), "02.11.26 15:04:05");
  EXPECT_EQ(dateText("fr_FR", 1252), "02/11/2026 15:04:05");
  EXPECT_EQ(dateText("ru_RU", 1251), "02.11.2026 15:04:05");
  EXPECT_EQ(dateText("be_BY", 1251), "2.11.26 15:04:05");
  EXPECT_EQ(dateText("el_GR", 1253), "2/11/26 3:04:05 Μ.Μ.");
  EXPECT_EQ(dateText("vi_VN", 1258), "02/11/2026 15:04:05");
}

// Digits or words that no single-byte page has, or that are longer than the field.
TEST(PurchaseDateText, IsWrittenInTheFixedFormWhereTheRecordCannotHoldIt) {
  EXPECT_EQ(dateText("ar_EG", 1256), "11/2/26 3:04:05 PM");
  EXPECT_EQ(dateText("fa_IR", 1256), "11/2/26 3:04:05 PM");
  EXPECT_EQ(dateText("th_TH", 874), "11/2/26 3:04:05 PM");
  EXPECT_EQ(dateText("ja_JP", 1252), "11/2/26 3:04:05 PM");
  EXPECT_EQ(dateText("zh_TW", 1252), "11/2/26 3:04:05 PM");
}

TEST(PurchaseDateText, DependsOnTheCodePage) {
  EXPECT_EQ(dateText("el_GR", 1252), "11/2/26 3:04:05 PM");
}

// Whatever the locale, the text fits and is stored as it is shown.
TEST(PurchaseDateText, FitsTheRecordInEveryLocale) {
  const auto locales =
      QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
  ASSERT_GT(locales.size(), 500);
  for (const unsigned number : {874U, 1250U, 1251U, 1252U, 1253U, 1254U, 1255U, 1256U, 1257U}) {
    const CodePage codePage(number);
    for (const QLocale& locale : locales) {
      const std::string text = purchaseDateText(kAfternoon, locale, codePage).toStdString();
      const auto stored = codePage.exactFromUtf8(text);
      ASSERT_TRUE(stored.has_value()) << locale.name().toStdString();
      EXPECT_LE(stored->size(), 24U) << locale.name().toStdString() << ": " << text;
      EXPECT_EQ(text.find_first_of("()[]~"), std::string::npos) << text;
    }
  }
}

TEST(PurchaseDateText, LacksTheTimeZone) {
  for (const QLocale& locale :
       QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry)) {
    const QString zone = QDateTime::currentDateTime().timeZoneAbbreviation();
    EXPECT_FALSE(purchaseDateText(kAfternoon, locale, CodePage(1252)).contains(zone))
        << locale.name().toStdString();
  }
}

}  // namespace
}  // namespace quorrix
