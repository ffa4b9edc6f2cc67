#include "bench_data.h"

#include <fstream>

#include "datafiles/site_record.h"
#include "platform/linux/posix_file_system.h"
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

void writeRecordFile(const Path& path, const RecordKind& kind, const AddressList& addresses,
                     std::size_t count) {
  std::ofstream file(path, std::ios::binary);
  file.exceptions(std::ios::failbit | std::ios::badbit);
  for (std::size_t i = 0; i < count; ++i) file << kind.recordOf(kind.rowOf(addresses[i], 0));
}

void writeRecordTable(const Path& path, const RecordKind& kind, const AddressList& addresses,
                      std::size_t count) {
  SqliteRecordTable table(path, kind.columns, SqliteRecordTable::Synchronous::Off);
  table.create();
  for (std::size_t i = 0; i < count; ++i) table.upsert(kind.rowOf(addresses[i], 0));
  table.finish();
}

// Otherwise the disk would still be busy with a file while something else is measured.
void sync(const Path& path) { PosixFileSystem().openRandomAccess(path)->sync(); }

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
    sync(paths.currentNodesFile);
  }
  return paths;
}

std::filesystem::path BenchData::database(std::size_t count) {
  const Path path = folder_.path() / (std::to_string(count) + ".sqlite");
  if (!std::filesystem::exists(path)) {
    writeTable(path, addresses(count), count);
    sync(path);
  }
  return path;
}

WorkingPaths BenchData::recordFile(const RecordKind& kind, std::size_t count) {
  WorkingPaths paths;
  paths.setFolder(folder_.path());
  const Path& path = paths.*kind.path;
  if (!std::filesystem::exists(path)) {
    writeRecordFile(path, kind, addresses(count), count);
    sync(path);
  }
  return paths;
}

std::filesystem::path BenchData::recordDatabase(const RecordKind& kind, std::size_t count) {
  const Path path = folder_.path() / (kind.name + ".sqlite");
  if (!std::filesystem::exists(path)) {
    writeRecordTable(path, kind, addresses(count), count);
    sync(path);
  }
  return path;
}

}  // namespace quorrix::bench
