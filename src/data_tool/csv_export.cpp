#include "data_tool/csv_export.h"

#include <string>

#include "data_tool/csv.h"
#include "data_tool/csv_columns.h"

namespace quorrix {
namespace {

constexpr const char* kKindColumn = "kind";

class CsvFile {
 public:
  CsvFile(Passwords passwords, Output& output)
      : choice_{.notes = true,
                .purchases = true,
                .logins = true,
                .passwords = passwords == Passwords::Show},
        output_(output) {
    write(kKindColumn, csvNames(choice_));
  }

  void addFolder(FolderReader& folder) {
    const std::string& archive = folder.folder().archive;
    folder.forEachSite(
        [&](const SiteEntry& site) { add("site", {.archive = archive, .site = site}); });
    folder.forEachNotes([&](const NotesEntry& notes) {
      add("notes", {.archive = archive, .site = levelAt(notes.address), .notes = &notes.text});
    });
    folder.forEachLogin([&](const LoginEntry& login) {
      add("login", {.archive = archive, .site = levelAt(login.address), .login = &login});
    });
    folder.forEachPurchase([&](const PurchaseEntry& purchase) {
      add("purchase",
          {.archive = archive, .site = levelAt(purchase.address), .purchase = &purchase});
    });
  }

 private:
  void add(const char* kind, const CsvRow& row) { write(kind, csvFields(row, choice_)); }

  void write(const char* kind, std::vector<std::string> fields) {
    fields.insert(fields.begin(), kind);
    output_.write(csvLine(fields));
  }

  DetailChoice choice_;
  Output& output_;
};

}  // namespace

void exportCsv(std::vector<FolderReader>& folders, Passwords passwords, Output& output) {
  CsvFile file(passwords, output);
  for (FolderReader& folder : folders) file.addFolder(folder);
}

}  // namespace quorrix
