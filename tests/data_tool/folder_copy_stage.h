// A fixture that copies a data folder with one archive, on the real file system.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "data_tool/folder_copy.h"
#include "data_tool/problem.h"
#include "platform/real_file_system.h"
#include "support/faulty_file_system.h"
#include "support/temporary_folder.h"

namespace quorrix::test {

class FolderCopyStage : public testing::Test {
 protected:
  FolderCopyStage() {
    for (const char* name : {"Data", "Archives/2025/May"}) {
      std::filesystem::create_directories(folder_ / name);
      for (const char* file : {"nodes.dat", "notes.dat", "info.dat", "purchases.dat"}) {
        folder_.givenAFile(Path(name) / file, std::string(name) + " " + file);
      }
    }
    folder_.givenAFile("Data/load.txt", "none\r\n");
  }

  std::string copy(const Path& target) {
    try {
      copyFolders(
          files_, folder_ / "Data", Archives::Include, target,
          [this](const Problem& problem) { reported_.push_back(problem.what()); }, timing_);
    } catch (const Problem& problem) {
      return problem.what();
    }
    return "";
  }

  // The files below a folder, sorted.
  std::vector<std::string> filesIn(const Path& name) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_ / name)) {
      if (!entry.is_directory()) {
        names.push_back(entry.path().lexically_relative(folder_ / name).generic_string());
      }
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  const std::vector<std::string> kAll{"Archives/2025/May/info.dat",
                                      "Archives/2025/May/nodes.dat",
                                      "Archives/2025/May/notes.dat",
                                      "Archives/2025/May/purchases.dat",
                                      "info.dat",
                                      "load.txt",
                                      "nodes.dat",
                                      "notes.dat",
                                      "purchases.dat"};

  // Another program that writes a data file. Fails the test if the file is locked.
  void write(const Path& name, std::uint64_t offset, const std::string& bytes) {
    real_.openRandomAccess(folder_ / name)->writeAt(offset, bytes);
  }

  // Calls `act` at the beginning of every write of the copy.
  void onEveryWrite(const std::function<void()>& act) {
    files_.onEveryCall([this, act] {
      if (files_.calls().back() == FileCall::WriteAt) act();
    });
  }

  TemporaryFolder folder_;
  RealFileSystem real_{std::chrono::milliseconds(1)};
  FaultyFileSystem files_{real_};
  std::vector<std::string> reported_;
  LockTiming timing_{.patience = std::chrono::milliseconds(0)};
};

}  // namespace quorrix::test
