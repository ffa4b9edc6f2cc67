// Every command of the user on a data folder as it is after many years: as many notes,
// user IDs and purchases as the files can have, and QUORRIX_SITES sites.

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDialog>
#include <QListWidget>
#include <QRadioButton>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "platform/linux/posix_file_system.h"
#include "records/record_file_stage.h"
#include "reliability/user.h"
#include "support/site_record_bytes.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

using test::control;
using test::User;

constexpr std::size_t kRecords = 32'766;  // one less than fit, so that one can be added

std::size_t sitesWanted() {
  const char* const wanted = std::getenv("QUORRIX_SITES");
  return wanted ? static_cast<std::size_t>(std::atoi(wanted)) : 40'000;
}

// Site 123456 is "www.site-123.example/news/page-456".
std::string siteOf(std::size_t number) {
  return "www.site-" + std::to_string(number / 1000) + ".example/news/page-" +
         std::to_string(number % 1000);
}

class FullFolder : public testing::Test {
 protected:
  FullFolder() {
    std::filesystem::create_directories(folder_ / "Data");
    std::filesystem::create_directories(folder_ / "Archives/May");
    std::ofstream(folder_ / "Data/load.txt") << "none\r\n";
    std::ofstream nodes(folder_ / "Data/nodes.dat", std::ios::binary);
    for (std::size_t i = 0; i < sites_; ++i) nodes << test::siteRecord(siteOf(i));
    std::ofstream notes(folder_ / "Data/notes.dat", std::ios::binary);
    std::ofstream logins(folder_ / "Data/info.dat", std::ios::binary);
    std::ofstream purchases(folder_ / "Data/purchases.dat", std::ios::binary);
    for (std::size_t i = 0; i < kRecords; ++i) {
      notes << test::notesRecord(siteOf(i), "roses");
      logins << test::userIDPasswordRecord(siteOf(i), "secret", "anna");
      purchases << test::purchaseRecord(siteOf(i));
    }
  }

  [[nodiscard]] std::size_t recordsIn(const char* file, std::size_t length) const {
    return std::filesystem::file_size(folder_ / file) / length;
  }

  // Runs a command, which must report no failure.
  template <typename Command>
  void timed(const char* what, Command command) {
    const auto begin = std::chrono::steady_clock::now();
    command();
    const std::chrono::duration<double, std::milli> taken =
        std::chrono::steady_clock::now() - begin;
    std::cout << "measured: " << what << " takes " << taken.count() << " ms with " << sites_
              << " sites\n";
    EXPECT_EQ(user_.messageBox().sentences, std::vector<std::string>()) << what;
  }

  void inArchive(const char* entry, const char* name) {
    user_.choose(entry, [&](QDialog& dialog) {
      control<FolderList>(dialog, "Dir1").setPath(folder_ / "Archives" / name);
      User::press(dialog, "OKButton");
    });
  }

  // Returns the number of results. `criteria` fills in the dialog.
  int search(const User::InDialog& criteria) {
    user_.choose("FileSearch");
    auto& dialog = control<QDialog>(user_.form(), "SearchDialog");
    criteria(dialog);
    User::press(dialog, "OKButton");
    auto& results = control<QDialog>(user_.form(), "SearchResultsDialog");
    const int found = control<QAbstractItemView>(results, "List1").model()->rowCount();
    results.close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return found;
  }

  const std::size_t sites_ = sitesWanted();
  test::TemporaryFolder folder_;
  PosixFileSystem files_;
  User user_{files_, folder_.path()};
};

TEST_F(FullFolder, IsUsedByEveryCommand) {
  const std::string last = siteOf(kRecords - 1);
  const std::string without = siteOf(kRecords);
  timed("start-up", [&] { ASSERT_TRUE(user_.start()); });
  EXPECT_NE(user_.form().tree().find(siteOf(sites_ - 1)), kNoNode);

  timed("a visit to a new site", [&] { user_.visit("http://one.two.three/a"); });
  timed("a visit to a known site", [&] { user_.visit("http://" + siteOf(sites_ - 1)); });
  EXPECT_EQ(recordsIn("Data/nodes.dat", 322), sites_ + 1);

  const auto inPopup = [&](const std::string& site, const char* entry, const char* text,
                           const char* button) {
    user_.select(site);
    user_.popUp(entry, [&](QDialog& dialog) {
      if (text != nullptr) User::type(dialog, "Text1", text);
      User::press(dialog, button);
    });
  };
  timed("replacing notes", [&] { inPopup(last, "PopUpNotes", "tulips", "OKButton"); });
  timed("adding notes", [&] { inPopup(without, "PopUpNotes", "tulips", "OKButton"); });
  timed("deleting notes", [&] { inPopup(last, "PopUpNotes", nullptr, "DeleteButton"); });
  EXPECT_EQ(recordsIn("Data/notes.dat", 1324), kRecords + 1);
  timed("replacing a user ID", [&] { inPopup(last, "PopUpPasswords", "otto", "OKButton"); });
  timed("adding a user ID", [&] { inPopup(without, "PopUpPasswords", "otto", "OKButton"); });
  timed("deleting a user ID", [&] { inPopup(last, "PopUpPasswords", nullptr, "DeleteButton"); });
  EXPECT_EQ(recordsIn("Data/info.dat", 360), kRecords + 1);
  timed("adding a purchase", [&] { inPopup(last, "PopUpNewPurchase", "a chair", "OKButton"); });
  EXPECT_EQ(recordsIn("Data/purchases.dat", 542), kRecords + 1);
  timed("deleting a purchase", [&] {
    user_.select(last);
    user_.popUp("PopUpPurchases", [&](QDialog& purchases) {
      EXPECT_EQ(control<QListWidget>(purchases, "List1").count(), 2);
      control<QListWidget>(purchases, "List1").setCurrentRow(0);
      User::press(purchases, "Command1",
                  [](QDialog& purchase) { User::press(purchase, "DeleteButton"); });
    });
  });

  const auto byAddress = [](QDialog& dialog) { User::type(dialog, "Text3", "SITE-1.EXAMPLE"); };
  timed("a search by address", [&] { EXPECT_EQ(search(byAddress), 1000); });
  timed("a search by date", [&] {
    const int found = search([](QDialog& dialog) {
      control<QRadioButton>(dialog, "Option2").setChecked(true);
      User::type(dialog, "Text2", "7");
      User::type(dialog, "Text1", "1");
      User::type(dialog, "Text4", "2026");
    });
    EXPECT_EQ(found, static_cast<int>(sites_) + 1);
  });
  timed("deleting a site", [&] {
    user_.select("www.site-1.example");
    user_.choose("FileDelete");
  });
  EXPECT_EQ(user_.form().tree().find(siteOf(1000)), kNoNode);
  EXPECT_EQ(folder_.bytesOf("Data/nodes.dat").find("www.site-1.example"), std::string::npos);
  timed("clearing the display", [&] { user_.choose("FileClear"); });
}

TEST_F(FullFolder, IsArchivedLoadedAndDeleted) {
  ASSERT_TRUE(user_.start());
  timed("archiving to a new folder", [&] { inArchive("FileArchive", "May"); });
  EXPECT_EQ(recordsIn("Archives/May/nodes.dat", 322), sites_);
  EXPECT_EQ(recordsIn("Data/nodes.dat", 322), 0U);
  timed("loading an archive", [&] { inArchive("FileLoadArchive", "May"); });
  EXPECT_NE(user_.form().tree().find(siteOf(sites_ - 1)), kNoNode);
  timed("archiving to a used folder", [&] { inArchive("FileArchive", "May"); });
  EXPECT_EQ(recordsIn("Archives/May/purchases.dat", 542), kRecords);
  inArchive("FileLoadArchive", "May");
  timed("deleting an archive", [&] { inArchive("FileDeleteArchive", "May"); });
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Archives/May/nodes.dat"));
  timed("deleting the root", [&] {
    user_.select("ROOT");
    user_.choose("FileDelete");
  });
  EXPECT_EQ(recordsIn("Data/nodes.dat", 322), 0U);
}

}  // namespace
}  // namespace quorrix
