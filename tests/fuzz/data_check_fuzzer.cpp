// Puts the input into one file of a data folder, QUORRIX_FUZZED_FILE, and reads it as quorrix-data
// does. Each finding must name a place in the file, the table and the exports must be well-formed,
// and what check finds right can be searched.
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

#include "data_tool/export.h"
#include "data_tool/folder_check.h"
#include "data_tool/listing.h"
#include "fuzz/require.h"
#include "platform/failure.h"
#include "platform/utf8.h"
#include "search/site_search.h"
#include "support/code_pages.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using test::require;

const std::string kFile = QUORRIX_FUZZED_FILE;

class Text final : public Output {
 public:
  void write(std::string_view text) override { text_ += text; }
  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  std::string text_;
};

class Session {
 public:
  explicit Session(const std::string& bytes) : bytes_(bytes) {
    memory_.givenAFolder(folder_.path);
    for (const char* name : {"nodes.dat", "notes.dat", "info.dat", "purchases.dat", "load.txt"}) {
      memory_.givenAFile(folder_.path / name, name == kFile ? bytes : "");
    }
  }

  void run() {
    const bool isRight = check();
    list();
    exportEverything();
    require(!isRight || canBeSearched(), "what is right can be searched");
    require(memory_.bytesOf(folder_.path / kFile) == bytes_, "no byte changes");
  }

 private:
  // Whether no error is found.
  bool check() {
    bool isRight = true;
    FolderCheck check(memory_, reader_,
                      {.finding =
                           [&](const Path& file, const Finding& finding) {
                             if (file.filename() != kFile) return;
                             requirePlace(finding);
                             if (finding.kind == FindingKind::Error) isRight = false;
                           },
                       .problem = [](const Problem&) { require(false, "all can be read"); }});
    check.check(folder_);
    return isRight;
  }

  void requirePlace(const Finding& finding) const {
    require(finding.byte.has_value(), "a finding names a byte");
    require(*finding.byte <= bytes_.size(), "the byte is in the file");
    require(finding.record.has_value() == (kFile != "load.txt"), "a finding names a record");
    require(!finding.record || *finding.record <= *finding.byte + 1, "the record begins before");
  }

  void list() {
    Text table;
    const DetailChoice all{.notes = true, .purchases = true, .logins = true, .passwords = true};
    const auto listing = makeListing({.format = ListFormat::Table, .details = all},
                                     {.archiveColumns = 0, .width = 80}, table);
    FolderReader reader(reader_, test::westernCodePage(), folder_);
    const SiteDetailIndex details(reader, all);
    listing->begin();
    reader.forEachSite(
        [&](const SiteEntry& site) { listing->add(site, "", details.of(site.address)); });
    listing->end();
    require(isUtf8(table.text()), "the table is UTF-8");
    for (const char byte : table.text()) {
      const bool isControl = static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
      require(!isControl || byte == '\n', "the table has no control character");
    }
  }

  void exportEverything() {
    for (const auto format : {ExportFormat::Json, ExportFormat::Csv, ExportFormat::Html,
                              ExportFormat::NetscapeBookmarks}) {
      Text file;
      exportFolders({folder_}, reader_, test::westernCodePage(), format, Passwords::Show, file);
      require(isUtf8(file.text()), "the export is UTF-8");
      require(format != ExportFormat::Json || nlohmann::json::accept(file.text()),
              "the export is JSON");
    }
  }

  bool canBeSearched() {
    WorkingPaths paths;
    paths.setFolder(folder_.path);
    try {
      static_cast<void>(searchSiteFile(memory_, paths, test::westernCodePage(),
                                       {.userSearchType = UserSearchType::Both,
                                        .searchText = "example",
                                        .searchDate = "1/1/26"}));
      return true;
    } catch (const Failure&) {
      return false;
    }
  }

  std::string bytes_;
  DataFolder folder_{.path = "Data", .archive = {}};
  test::MemoryFileSystem memory_;
  RecordReader reader_{memory_};
};

}  // namespace
}  // namespace quorrix

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quorrix::Session({reinterpret_cast<const char*>(data), size}).run();
  return 0;
}
