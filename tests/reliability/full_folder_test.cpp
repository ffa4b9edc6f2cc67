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
#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <string_view>

#include "platform/linux/posix_file_system.h"
#include "records/record_file_stage.h"
#include "reliability/user.h"
#include "support/site_record_bytes.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

using test::control;
using test::User;

constexpr const char* kNow = "7/9/26 3:04:05 PM~";  // of the program's clock
constexpr std::size_t kRecords = 32'766;            // one less than fit, so that one can be added

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

  // Expects these bytes as the record of this number, counted from 0.
  void expectRecord(const char* file, std::size_t number, const std::string& bytes) const {
    std::string found(bytes.size(), '\0');
    std::ifstream in(folder_ / file, std::ios::binary);
    in.seekg(static_cast<std::streamoff>(number * bytes.size()));
    in.read(found.data(), static_cast<std::streamsize>(found.size()));
    EXPECT_EQ(found, bytes) << file;
  }

  // A digest of each data file in the folder. Of a million sites, the files are too large
  // to keep in memory.
  [[nodiscard]] std::map<std::string, std::size_t> digests(const std::string& folder) const {
    std::map<std::string, std::size_t> digests;
    for (const char* const name : {"nodes.dat", "notes.dat", "info.dat", "purchases.dat"}) {
      std::ifstream file(folder_ / folder / name, std::ios::binary);
      std::string block(1U << 20U, '\0');
      std::size_t& digest = digests[name];
      while (file.read(block.data(), static_cast<std::streamsize>(block.size())), file.gcount()) {
        const std::string_view read(block.data(), static_cast<std::size_t>(file.gcount()));
        digest = digest * 31 + std::hash<std::string_view>()(read);
      }
    }
    return digests;
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

  // In the folder that the dialog shows first, Archives.
  void makeFolder(const char* name) {
    user_.choose("FileArchive", [&](QDialog& archive) {
      User::press(archive, "NewButton", [&](QDialog& newArchive) {
        User::type(newArchive, "Text1", name);
        User::press(newArchive, "OKButton");
      });
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
  expectRecord("Data/nodes.dat", sites_ - 1, test::siteRecord(siteOf(sites_ - 1), 'N', kNow));
  expectRecord("Data/nodes.dat", sites_, test::siteRecord("one.two.three/a", 'N', kNow));

  const auto inPopup = [&](const std::string& site, const char* entry, const char* text,
                           const char* button) {
    user_.select(site);
    user_.popUp(entry, [&](QDialog& dialog) {
      if (text != nullptr) User::type(dialog, "Text1", text);
      User::press(dialog, button);
    });
  };
  timed("replacing notes", [&] { inPopup(last, "PopUpNotes", "tulips", "OKButton"); });
  expectRecord("Data/notes.dat", kRecords - 1, test::notesRecord(last, "tulips"));
  timed("adding notes", [&] { inPopup(without, "PopUpNotes", "tulips", "OKButton"); });
  expectRecord("Data/notes.dat", kRecords, test::notesRecord(without, "tulips"));
  timed("deleting notes", [&] { inPopup(last, "PopUpNotes", nullptr, "DeleteButton"); });
  expectRecord("Data/notes.dat", kRecords - 1, std::string(1324, ' '));
  EXPECT_EQ(recordsIn("Data/notes.dat", 1324), kRecords + 1);
  timed("replacing a user ID", [&] { inPopup(last, "PopUpPasswords", "otto", "OKButton"); });
  expectRecord("Data/info.dat", kRecords - 1, test::userIDPasswordRecord(last, "secret", "otto"));
  timed("adding a user ID", [&] { inPopup(without, "PopUpPasswords", "otto", "OKButton"); });
  expectRecord("Data/info.dat", kRecords, test::userIDPasswordRecord(without, "", "otto"));
  timed("deleting a user ID", [&] { inPopup(last, "PopUpPasswords", nullptr, "DeleteButton"); });
  expectRecord("Data/info.dat", kRecords - 1, std::string(360, ' '));
  EXPECT_EQ(recordsIn("Data/info.dat", 360), kRecords + 1);
  const std::string chair = test::purchaseRecord(last, {.dateStamp = kNow,
                                                        .price = "~",
                                                        .paymentMethod = "~",
                                                        .item = "a chair~",
                                                        .description = "~",
                                                        .quantity = "~"});
  timed("adding a purchase", [&] { inPopup(last, "PopUpNewPurchase", "a chair", "OKButton"); });
  expectRecord("Data/purchases.dat", kRecords, chair);
  timed("deleting a purchase", [&] {
    user_.select(last);
    user_.popUp("PopUpPurchases", [&](QDialog& purchases) {
      EXPECT_EQ(control<QListWidget>(purchases, "List1").count(), 2);
      control<QListWidget>(purchases, "List1").setCurrentRow(0);
      User::press(purchases, "Command1",
                  [](QDialog& purchase) { User::press(purchase, "DeleteButton"); });
    });
  });
  expectRecord("Data/purchases.dat", kRecords - 1, std::string(542, ' '));
  expectRecord("Data/purchases.dat", kRecords, chair);
  EXPECT_EQ(recordsIn("Data/purchases.dat", 542), kRecords + 1);
  timed("making a folder", [&] { makeFolder("June"); });
  EXPECT_TRUE(std::filesystem::is_directory(folder_ / "Archives/June"));

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
  expectRecord("Data/nodes.dat", 999, test::siteRecord(siteOf(999)));
  expectRecord("Data/nodes.dat", 1000, std::string(322, ' '));
  expectRecord("Data/nodes.dat", 1999, std::string(322, ' '));
  expectRecord("Data/notes.dat", 1999, std::string(1324, ' '));
  expectRecord("Data/info.dat", 1999, std::string(360, ' '));
  expectRecord("Data/purchases.dat", 1999, std::string(542, ' '));
  expectRecord("Data/nodes.dat", 2000, test::siteRecord(siteOf(2000)));
  const auto before = digests("Data");
  timed("clearing the display", [&] { user_.choose("FileClear"); });
  EXPECT_EQ(user_.form().tree().find("one.two.three"), kNoNode);
  EXPECT_EQ(digests("Data"), before);
}

TEST_F(FullFolder, IsArchivedLoadedAndDeleted) {
  ASSERT_TRUE(user_.start());
  const auto given = digests("Data");
  timed("archiving to a new folder", [&] { inArchive("FileArchive", "May"); });
  EXPECT_EQ(digests("Archives/May"), given);
  EXPECT_EQ(recordsIn("Data/nodes.dat", 322), 0U);
  timed("loading an archive", [&] { inArchive("FileLoadArchive", "May"); });
  EXPECT_NE(user_.form().tree().find(siteOf(sites_ - 1)), kNoNode);
  EXPECT_EQ(digests("Data"), given);
  user_.visit("http://one.two.three/a");
  const auto changed = digests("Data");
  timed("archiving to a used folder", [&] { inArchive("FileArchive", "May"); });
  EXPECT_NE(changed, given);
  EXPECT_EQ(digests("Archives/May"), changed);
  inArchive("FileLoadArchive", "May");
  timed("deleting an archive", [&] { inArchive("FileDeleteArchive", "May"); });
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Archives/May/nodes.dat"));
  EXPECT_EQ(digests("Data"), changed);
  timed("deleting the root", [&] {
    user_.select("ROOT");
    user_.choose("FileDelete");
  });
  for (const char* const file :
       {"Data/nodes.dat", "Data/notes.dat", "Data/info.dat", "Data/purchases.dat"}) {
    EXPECT_EQ(std::filesystem::file_size(folder_ / file), 0U) << file;
  }
}

}  // namespace
}  // namespace quorrix
