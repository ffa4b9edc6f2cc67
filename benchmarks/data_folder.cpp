#include "data_folder.h"

#include <stdlib.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cerrno>
#include <fstream>
#include <sstream>
#include <system_error>

namespace quorrix::bench {
namespace {

struct Mount {
  std::string type;
  std::string source;
};

// Parses lines like "id parent major:minor root point options... - type source ..."
Mount mountOf(const std::string& device) {
  std::ifstream table("/proc/self/mountinfo");
  for (std::string line; std::getline(table, line);) {
    std::istringstream fields(line);
    std::string id;
    std::string parent;
    std::string number;
    fields >> id >> parent >> number;
    const auto separator = line.find(" - ");
    if (number != device || separator == std::string::npos) continue;
    std::istringstream rest(line.substr(separator + 3));
    Mount mount;
    rest >> mount.type >> mount.source;
    return mount;
  }
  return {"an unknown file system", "an unknown disk"};
}

// A partition has no queue of its own; the disk, one level up, has one.
std::string kindOfDisk(const std::string& device) {
  const std::filesystem::path disk = std::filesystem::path("/sys/dev/block") / device;
  for (const auto& queue : {disk / "queue", disk / ".." / "queue"}) {
    std::ifstream file(queue / "rotational");
    char rotational = '\0';
    if (file >> rotational) {
      return rotational == '1' ? ", reported as rotating" : ", reported as not rotating";
    }
  }
  return {};
}

}  // namespace

DataFolder::DataFolder() {
  const char* const wanted = ::getenv("QUORRIX_BENCH_DIR");
  const std::filesystem::path parent = wanted != nullptr ? wanted : QUORRIX_BENCH_DEFAULT_DIR;
  std::string name = (parent / "quorrix-bench-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), name);
  }
  path_ = name;
}

DataFolder::~DataFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string storageUnder(const std::filesystem::path& folder) {
  struct stat status {};
  if (::stat(folder.c_str(), &status) != 0) return "unknown";
  const std::string device =
      std::to_string(major(status.st_dev)) + ":" + std::to_string(minor(status.st_dev));
  const Mount mount = mountOf(device);
  if (mount.type == "tmpfs" || mount.type == "ramfs") {
    return mount.type +
           ", which is MEMORY: the synced figures mean nothing here, set "
           "QUORRIX_BENCH_DIR to a folder on a disk";
  }
  return mount.type + " on " + mount.source + kindOfDisk(device);
}

}  // namespace quorrix::bench
