// quorrix-data on a file system in memory.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "data_tool/data_tool.h"
#include "data_tool/stored_records.h"
#include "support/code_pages.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"

namespace quorrix::test {

class ToolStage {
 public:
  ToolStage() { memory.givenAFolder("Quorrix/Data"); }

  // `file` such as "Data/nodes.dat" or "Archives/May/nodes.dat".
  void given(const std::string& file, const std::string& bytes) {
    memory.givenAFolder((Path("Quorrix") / file).parent_path());
    memory.givenAFile(Path("Quorrix") / file, bytes);
  }

  // All data files, empty, and a load.txt.
  void givenEmptyFiles() {
    for (const char* name : {"nodes.dat", "notes.dat", "info.dat", "purchases.dat"}) {
      given("Data/" + std::string(name), "");
    }
    given("Data/load.txt", "none\r\n");
  }

  // Runs with the default data folder Quorrix/Data. Sets `output` and `error`.
  int run(const std::vector<std::string>& arguments) {
    output.clear();
    error.clear();
    DataTool tool({.files = files,
                   .codePage = westernCodePage(),
                   .defaultFolder = "Quorrix/Data",
                   .write = [this](std::string_view text) { output += text; },
                   .writeError = [this](std::string_view text) { error += text; },
                   .terminalWidth = terminalWidth});
    return tool.run(arguments);
  }

  MemoryFileSystem memory;
  FaultyFileSystem files{memory};
  std::optional<std::size_t> terminalWidth;
  std::string output;
  std::string error;
};

}  // namespace quorrix::test
