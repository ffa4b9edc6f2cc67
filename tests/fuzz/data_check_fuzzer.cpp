// Puts the input into one file of a data folder, QUORRIX_FUZZED_FILE, and runs the commands of
// quorrix-data on it. Each finding must name a place in the file, the exports must be
// well-formed, and what check finds right can be searched.
#include <cstdint>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "data_tool/data_tool.h"
#include "fuzz/require.h"
#include "platform/utf8.h"
#include "support/code_pages.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using test::require;

const std::string kFile = QUORRIX_FUZZED_FILE;

class Session {
 public:
  explicit Session(const std::string& bytes) : bytes_(bytes) {
    memory_.givenAFolder("Quorrix/Data");
    for (const char* name : {"nodes.dat", "notes.dat", "info.dat", "purchases.dat", "load.txt"}) {
      memory_.givenAFile(Path("Quorrix/Data") / name, name == kFile ? bytes : "");
    }
  }

  void run() {
    const bool isRight = check() == 0;
    list();
    exportEverything();
    const int searched = runCommand({"search", "example"});
    require(!isRight || searched != 2, "what is right can be searched");
    require(memory_.bytesOf(Path("Quorrix/Data") / kFile) == bytes_, "no byte changes");
  }

 private:
  int runCommand(const std::vector<std::string>& arguments) {
    output_.clear();
    error_.clear();
    DataTool tool({.files = memory_,
                   .codePage = test::westernCodePage(),
                   .defaultFolder = "Quorrix/Data",
                   .write = [this](std::string_view text) { output_ += text; },
                   .writeError = [this](std::string_view text) { error_ += text; },
                   .terminalWidth = 80});
    return tool.run(arguments);
  }

  int check() {
    const int status = runCommand({"check"});
    require(status == 0 || status == 1, "everything can be read");
    require(error_.empty(), "no problem is reported");
    std::istringstream lines(output_);
    for (std::string line; std::getline(lines, line);) {
      if (line.find(kFile + ": ") == std::string::npos) continue;
      const auto place = line.find("byte ");
      require(place != std::string::npos, "a finding names a byte");
      require(std::stoull(line.substr(place + 5)) <= bytes_.size(), "the byte is in the file");
    }
    return status;
  }

  void list() {
    const int status = runCommand({"list", "--with", "notes,purchases,logins", "--show-passwords"});
    require(status == 0, "everything can be listed");
    require(isUtf8(output_), "the table is UTF-8");
    for (const char byte : output_) {
      const bool isControl = static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
      require(!isControl || byte == '\n', "the table has no control character");
    }
  }

  void exportEverything() {
    runCommand({"export", "--format", "json", "--show-passwords"});
    require(nlohmann::json::accept(output_), "the export is JSON");
    for (const char* format : {"csv", "html", "netscape-bookmarks"}) {
      require(runCommand({"export", "--format", format}) == 0, "everything can be exported");
      require(isUtf8(output_), "the export is UTF-8");
    }
  }

  std::string bytes_;
  std::string output_;
  std::string error_;
  test::MemoryFileSystem memory_;
};

}  // namespace
}  // namespace quorrix

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quorrix::Session({reinterpret_cast<const char*>(data), size}).run();
  return 0;
}
