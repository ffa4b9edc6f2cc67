#include "bench_data.h"

#include <fstream>

#include "platform/linux/posix_file_system.h"
#include "sitetree/site_record.h"
#include "sqlite_site_table.h"

namespace quorrix::bench {
namespace {

constexpr std::string_view kStamp = "11/21/25 10:15:00 AM~";

void writeSiteFile(const Path& path, const AddressList& addresses, std::size_t count) {
  std::ofstream file(path, std::ios::binary);
  file.exceptions(std::ios::failbit | std::ios::badbit);
  SiteRecord record;
  for (std::size_t i = 0; i < count; ++i) {
    fillField(record, site_record::kSiteAddress, addresses[i]);
    fillField(record, site_record::kProtocolFlag, "N");
    fillField(record, site_record::kAccessStamp, kStamp);
    file.write(record.data(), static_cast<std::streamsize>(record.size()));
  }
}

void writeTable(const Path& path, const AddressList& addresses, std::size_t count) {
  SqliteSiteTable table(path, SqliteSiteTable::Synchronous::Off);
  table.create();
  for (std::size_t i = 0; i < count; ++i) table.append(addresses[i], 'N', kStamp);
  table.finish();
}

}  // namespace

const AddressList& BenchData::addresses(std::size_t count) {
  addresses_.growTo(count);
  return addresses_;
}

WorkingPaths BenchData::siteFile(std::size_t count) {
  const Path folder = folder_.path() / std::to_string(count);
  WorkingPaths paths;
  paths.setFolder(folder);
  if (std::filesystem::create_directory(folder)) {
    writeSiteFile(paths.currentNodesFile, addresses(count), count);
    // Else the disk would still be busy with it while something else is measured.
    PosixFileSystem().openRandomAccess(paths.currentNodesFile)->sync();
  }
  return paths;
}

std::filesystem::path BenchData::database(std::size_t count) {
  const Path path = folder_.path() / (std::to_string(count) + ".sqlite");
  if (!std::filesystem::exists(path)) {
    writeTable(path, addresses(count), count);
    PosixFileSystem().openRandomAccess(path)->sync();
  }
  return path;
}

}  // namespace quorrix::bench
