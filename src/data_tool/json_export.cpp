#include "data_tool/json_export.h"

#include <string>

namespace quorrix {
namespace {

// The items of one array.
class Items {
 public:
  explicit Items(Output& output) : output_(output) {}

  void add(const std::string& item) {
    output_.write(isEmpty_ ? "\n" : ",\n");
    output_.write(item);
    isEmpty_ = false;
  }

  void end() { output_.write(isEmpty_ ? "]" : "\n]"); }

 private:
  Output& output_;
  bool isEmpty_ = true;
};

void exportRecords(FolderReader& folder, Passwords passwords, Output& output) {
  output.write("\"sites\": [");
  Items sites(output);
  folder.forEachSite([&](const SiteEntry& entry) { sites.add(jsonOf(entry)); });
  sites.end();
  output.write(",\n\"notes\": [");
  Items notes(output);
  folder.forEachNotes([&](const NotesEntry& entry) { notes.add(jsonOf(entry)); });
  notes.end();
  output.write(",\n\"logins\": [");
  Items logins(output);
  folder.forEachLogin([&](const LoginEntry& entry) { logins.add(jsonOf(entry, passwords)); });
  logins.end();
  output.write(",\n\"purchases\": [");
  Items purchases(output);
  folder.forEachPurchase([&](const PurchaseEntry& entry) { purchases.add(jsonOf(entry)); });
  purchases.end();
}

}  // namespace

void exportJson(std::vector<FolderReader>& folders, Passwords passwords, Output& output) {
  output.write("{\n");
  exportRecords(folders.front(), passwords, output);
  output.write(",\n\"archives\": [");
  for (std::size_t i = 1; i < folders.size(); ++i) {
    output.write(i == 1 ? "\n{\n" : ",\n{\n");
    output.write("\"name\": " + jsonOf(folders[i].folder().archive) + ",\n");
    exportRecords(folders[i], passwords, output);
    output.write("\n}");
  }
  output.write(folders.size() > 1 ? "\n]\n}\n" : "]\n}\n");
}

}  // namespace quorrix
