// Three sites with everything that can be kept for them, as bytes of the data files, and
// a reader that collects what the program shows of a data folder.
#pragma once

#include <array>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "main_window/site_collection.h"
#include "platform/failure.h"
#include "records/notes_file.h"
#include "records/purchases_file.h"
#include "records/record_file_stage.h"
#include "records/user_id_password_file.h"
#include "support/fake_clock.h"
#include "support/site_record_bytes.h"

namespace quorrix::test {

// No single changed byte turns one address into another.
inline constexpr std::array<const char*, 3> kAddresses = {
    "www.garden.example/roses", "news.harbour.example", "shop.mill.example/bread/rye"};

struct DataFile {
  const char* name;
  std::size_t recordLength;
  std::array<std::string, 3> records;  // one of each site
  std::array<std::string, 3> facts;    // what is shown of each record
  [[nodiscard]] std::string bytes() const { return records[0] + records[1] + records[2]; }
};

inline std::vector<DataFile> keptData() {
  DataFile sites{"nodes.dat", 322, {}, {}};
  DataFile notes{"notes.dat", 1324, {}, {}};
  DataFile passwords{"info.dat", 360, {}, {}};
  DataFile purchases{"purchases.dat", 542, {}, {}};
  for (std::size_t i = 0; i < kAddresses.size(); ++i) {
    const std::string address = kAddresses[i];
    const std::string n = std::to_string(i);
    sites.records[i] = siteRecord(address);
    sites.facts[i] = "site " + address;
    notes.records[i] = notesRecord(address, "note-" + n);
    notes.facts[i] = "notes " + address + ": note-" + n;
    passwords.records[i] = userIDPasswordRecord(address, "tulip" + n, "anna" + n);
    passwords.facts[i] = "user ID " + address + ": anna" + n + ", tulip" + n;
    purchases.records[i] = purchaseRecord(address);
    purchases.facts[i] = "purchase " + address + ": lamp, 9.95, 1/2/26 3:04:05 PM";
  }
  return {sites, notes, passwords, purchases};
}

// What the program shows. An operation that fails shows nothing.
class ShownData : private SiteDisplay {
 public:
  ShownData(FileSystem& files, const Path& programFolder)
      : sites_(files, clock_, AppPaths(programFolder), *this), files_(files) {}

  // Each fact as in DataFile, and "load.txt: " with its text. Nothing if the start fails,
  // because the program then ends.
  std::set<std::string> read() {
    tryTo("start", [this] { sites_.load(); });
    if (failureOf("start") != 0) return {};
    for (const std::string address : kAddresses) {
      if (sites_.tree().find(address) != kNoNode) facts_.insert("site " + address);
      tryTo("notes", [&] { readNotes(address); });
      tryTo("passwords", [&] { readPassword(address); });
      tryTo("purchases", [&] { readPurchases(address); });
    }
    return facts_;
  }

  // The number of the failure of an operation: "start", "notes", "passwords" or
  // "purchases"; 0 if it succeeded.
  [[nodiscard]] int failureOf(const std::string& operation) { return failures_[operation]; }

 private:
  template <typename Operation>
  void tryTo(const std::string& name, Operation operation) {
    try {
      operation();
    } catch (const Failure& reason) {
      failures_[name] = reason.number();
    }
  }

  static std::string trimmed(std::string text) {
    text.resize(text.find_last_not_of(' ') + 1);
    return text;
  }

  void readNotes(const std::string& address) {
    const auto text = NotesFile(files_, sites_.paths()).read(address);
    if (text) facts_.insert("notes " + address + ": " + trimmed(*text));
  }

  void readPassword(const std::string& address) {
    const auto stored = UserIDPasswordFile(files_, sites_.paths()).read(address);
    if (!stored) return;
    facts_.insert("user ID " + address + ": " + stored->userID() + ", " + stored->password());
  }

  void readPurchases(const std::string& address) {
    PurchasesFile(files_, sites_.paths()).list(address, [&](const PurchaseSummary& purchase) {
      facts_.insert("purchase " + address + ": " + purchase.item + ", " + purchase.price + ", " +
                    purchase.dateStamp);
    });
  }

  void showHosts() override {}
  void showLastArchive(std::string_view name) override {
    facts_.insert("load.txt: " + std::string(name));
  }
  void showLastArchiveFolder(const Path& /*folder*/) override {}

  FakeClock clock_;
  SiteCollection sites_;
  FileSystem& files_;
  std::set<std::string> facts_;
  std::map<std::string, int> failures_;
};

}  // namespace quorrix::test
