#include "data_tool/entries.h"

#include <gtest/gtest.h>

#include "data_tool/stored_records.h"
#include "support/code_pages.h"

namespace quorrix {
namespace {

using namespace std::string_literals;
using test::westernCodePage;

TEST(SiteEntry, HasAddressSchemeAndTime) {
  SiteEntry site;
  ASSERT_TRUE(readSite(westernCodePage(),
                       test::siteRecord("caf\xE9.garden.example/a", 'S', "11/21/26 4:05:00 PM~"),
                       site));
  EXPECT_EQ(site.address, "caf\u00E9.garden.example/a");
  EXPECT_EQ(schemeName(site.protocolFlag), "https");
  EXPECT_EQ(webAddress(site), "https://caf\u00E9.garden.example/a");
  ASSERT_TRUE(site.visited);
  EXPECT_EQ(isoTime(*site.visited), "2026-11-21T16:05:00");
  EXPECT_EQ(isoTime(*site.visited, ' '), "2026-11-21 16:05:00");
}

TEST(SiteEntry, KeepsAStampThatCannotBeRead) {
  SiteEntry site;
  ASSERT_TRUE(readSite(westernCodePage(), test::siteRecord("a.b.c", 'N', "yesterday~"), site));
  EXPECT_FALSE(site.visited);
  EXPECT_EQ(site.unreadableStamp, "yesterday");
  ASSERT_TRUE(
      readSite(westernCodePage(), test::siteRecord("a.b.c", 'N', "1/2/26 3:04:05 AM"), site));
  EXPECT_FALSE(site.visited) << "no end mark";
  EXPECT_EQ(site.unreadableStamp, "1/2/26 3:04:05 AM");
}

TEST(SiteEntry, IsMissingFromADeletedRecord) {
  SiteEntry site;
  EXPECT_FALSE(readSite(westernCodePage(), std::string(322, ' '), site));
  EXPECT_FALSE(readSite(westernCodePage(), std::string(322, '\0'), site));
}

TEST(SchemeName, HasANameForEachLetter) {
  EXPECT_EQ(schemeName('N'), "http");
  EXPECT_EQ(schemeName('F'), "ftp");
  EXPECT_EQ(schemeName('U'), "none");
  EXPECT_EQ(schemeName('x'), "");
}

TEST(ShownScheme, IsAQuestionMarkForAnUnknownFlag) {
  SiteEntry site;
  ASSERT_TRUE(readSite(westernCodePage(), test::siteRecord("a.b.c", 'x'), site));
  EXPECT_EQ(site.unknownFlag, "x");
  EXPECT_EQ(shownScheme(site), "?");
  ASSERT_TRUE(readSite(westernCodePage(), test::siteRecord("a.b.c", 'S'), site));
  EXPECT_EQ(site.unknownFlag, "");
  EXPECT_EQ(shownScheme(site), "https");
}

TEST(SiteEntry, OfALevelWithoutARecordHasOnlyAnAddress) {
  const SiteEntry level = levelAt("a.b.c");
  EXPECT_EQ(level.address, "a.b.c");
  EXPECT_FALSE(isRecorded(level));
  EXPECT_EQ(shownScheme(level), "");
  for (const char flag : {'U', ' ', '\0'}) {
    SiteEntry site;
    ASSERT_TRUE(readSite(westernCodePage(), test::siteRecord("a.b.c", flag), site));
    EXPECT_TRUE(isRecorded(site));
  }
}

TEST(NotesEntry, IsTheTextWithoutItsPadding) {
  NotesEntry notes;
  ASSERT_TRUE(readNotes(westernCodePage(),
                        test::notesRecord("a.b.c", "Water the roses.\r\n  In March. "), notes));
  EXPECT_EQ(notes.text, "Water the roses.\r\n  In March.");
}

TEST(LoginEntry, HasAllThatWasEntered) {
  LoginEntry login;
  ASSERT_TRUE(
      readLogin(westernCodePage(), test::loginRecord("a.b.c", "anna b", "two words"), login));
  EXPECT_EQ(login.userID, "anna b");
  EXPECT_EQ(login.password, "two words");
}

TEST(PurchaseEntry, HasEachTextWithoutItsEndMark) {
  PurchaseEntry purchase;
  ASSERT_TRUE(readPurchase(
      westernCodePage(),
      test::purchaseRecord("a.b.c", {.date = "3/14/26~", .item = "Tea ~ black~", .quantity = "~"}),
      purchase));
  EXPECT_EQ(purchase.date, "3/14/26");
  EXPECT_EQ(purchase.price, "24.50");
  EXPECT_EQ(purchase.paymentMethod, "Card");
  EXPECT_EQ(purchase.item, "Tea ~ black");
  EXPECT_EQ(purchase.description, "For the climbers");
  EXPECT_EQ(purchase.quantity, "");
}

TEST(PurchaseEntry, IsReadAsFarAsTheRecordGoes) {
  PurchaseEntry purchase;
  std::string record = test::purchaseRecord("a.b.c").substr(0, 333);
  record.resize(542, '\0');
  ASSERT_TRUE(readPurchase(westernCodePage(), record, purchase));
  EXPECT_EQ(purchase.price, "24.50");
  EXPECT_EQ(purchase.item, "");
}

}  // namespace
}  // namespace quorrix
