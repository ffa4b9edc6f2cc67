#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <random>

namespace quorrix::test {
namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::random_device random;
  do {
    path_ = fs::temp_directory_path() / ("quorrix-test-" + std::to_string(random()));
  } while (!fs::create_directory(path_));
}

// A test may have removed permissions. Failing to delete something does not fail the
// test.
TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  for (const auto& entry : fs::recursive_directory_iterator(path_, ignored)) {
    if (entry.is_symlink(ignored)) continue;
    fs::permissions(entry.path(), fs::perms::owner_all, fs::perm_options::add, ignored);
  }
  fs::remove_all(path_, ignored);
}

fs::path TemporaryFolder::givenAFile(const fs::path& name, std::string_view bytes) const {
  std::ofstream file(path_ / name, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  EXPECT_TRUE(file.flush()) << "cannot write " << path_ / name;
  return path_ / name;
}

std::string TemporaryFolder::bytesOf(const fs::path& name) const {
  std::ifstream file(path_ / name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << "cannot read " << path_ / name;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace quorrix::test
