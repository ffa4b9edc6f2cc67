// The folder of one program after the other, on a disk in memory where there is one, so
// that syncs cost no time.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "reliability/swept_commands.h"
#include "support/temporary_folder.h"

namespace quorrix::test {

class ProgramFolder {
 public:
  // The bytes of each file, by its path in the folder.
  using State = std::map<std::string, std::string>;

  // Replaces everything in the folder.
  void give(const Files& files) const {
    std::filesystem::remove_all(path());
    for (const auto& [name, bytes] : files) {
      std::filesystem::create_directories((path() / name).parent_path());
      if (!name.ends_with('/')) parent_.givenAFile(Path("Quorrix") / name, bytes);
    }
  }

  [[nodiscard]] Path path() const { return parent_ / "Quorrix"; }

  [[nodiscard]] State state() const {
    State state;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path())) {
      if (!entry.is_regular_file()) continue;
      const Path name = entry.path().lexically_relative(parent_.path());
      state[name.lexically_relative("Quorrix").string()] = parent_.bytesOf(name);
    }
    return state;
  }

 private:
  // Chooses the disk for the temporary folder.
  struct InMemory {
    InMemory() {
      if (std::filesystem::is_directory("/dev/shm")) ::setenv("TMPDIR", "/dev/shm", 1);
    }
  };

  InMemory inMemory_;
  TemporaryFolder parent_;
};

}  // namespace quorrix::test
