#include "data_tool/json_export.h"

#include <string>

#include "data_tool/json_items.h"

namespace quorrix {
namespace {

void exportRecords(FolderReader& folder, Passwords passwords, Output& output) {
  output.write("\"sites\": ");
  JsonItems sites(output);
  folder.forEachSite([&](const SiteEntry& entry) { sites.add(jsonOf(entry)); });
  sites.end();
  output.write(",\n\"notes\": ");
  JsonItems notes(output);
  folder.forEachNotes([&](const NotesEntry& entry) { notes.add(jsonOf(entry)); });
  notes.end();
  output.write(",\n\"logins\": ");
  JsonItems logins(output);
  folder.forEachLogin([&](const LoginEntry& entry) { logins.add(jsonOf(entry, passwords)); });
  logins.end();
  output.write(",\n\"purchases\": ");
  JsonItems purchases(output);
  folder.forEachPurchase([&](const PurchaseEntry& entry) { purchases.add(jsonOf(entry)); });
  purchases.end();
}

}  // namespace

void exportJson(std::vector<FolderReader>& folders, Passwords passwords, Output& output) {
  output.write("{\n");
  exportRecords(folders.front(), passwords, output);
  output.write(",\n\"archives\": ");
  JsonItems archives(output);
  for (std::size_t i = 1; i < folders.size(); ++i) {
    archives.next();
    output.write("{\n\"name\": " + jsonOf(folders[i].folder().archive) + ",\n");
    exportRecords(folders[i], passwords, output);
    output.write("\n}");
  }
  archives.end();
  output.write("\n}\n");
}

}  // namespace quorrix
