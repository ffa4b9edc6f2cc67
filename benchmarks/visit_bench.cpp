#include <fcntl.h>
#include <unistd.h>

#include <functional>
#include <memory>
#include <random>
#include <stdexcept>

#include "benchmarks.h"
#include "datafiles/access_stamp.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/posix_file_system.h"
#include "platform/system_clock.h"
#include "sitetree/site_file.h"
#include "sqlite_site_table.h"
#include "turns.h"
#include "unsynced_file_system.h"

namespace quorrix::bench {
namespace {

constexpr std::size_t kCounts[] = {sized(10'000), sized(100'000), sized(1'000'000)};  // of records

constexpr int kVisits = timed(301);
constexpr int kSearches = timed(101);

// A write-ahead log that still grows costs more to sync than one that is overwritten from
// its start. SQLite overwrites the log after a checkpoint, which comes at 1,000 pages.
constexpr std::size_t kVisitsUntilLogIsReused = sized(2'000);

// Records a visit to the address with this number, counted from 0.
using Visit = std::function<void(std::size_t number)>;
enum class Sync { Yes, No };

class SiteFileVisitor {
 public:
  SiteFileVisitor(BenchData& data, std::size_t count, Sync sync)
      : paths_(data.siteFile(count)),
        addresses_(data.addresses(count)),
        siteFile_(sync == Sync::Yes ? static_cast<FileSystem&>(real_) : unsynced_, clock_, paths_) {
    siteFile_.loadNodes(tree_);
  }

  // As in tracking: the address is looked up in the tree, whose node has the number of
  // the record.
  void visit(std::size_t number) {
    const std::string_view address = addresses_[number];
    siteFile_.updateSiteRecord(address, 'S', tree_.recordNumber(tree_.at(address)));
  }

 private:
  WorkingPaths paths_;
  const AddressList& addresses_;
  PosixFileSystem real_;
  UnsyncedFileSystem unsynced_{real_};
  SystemClock clock_;
  SiteFile siteFile_;
  SiteTree tree_;
};

Visit siteFileVisit(BenchData& data, std::size_t count, Sync sync) {
  const auto visitor = std::make_shared<SiteFileVisitor>(data, count, sync);
  return [visitor](std::size_t number) { visitor->visit(number); };
}

// The file is searched, because the number of the record is not given.
Visit searchedSiteFileVisit(BenchData& data, std::size_t count) {
  return [paths = data.siteFile(count), &addresses = data.addresses(count)](std::size_t number) {
    PosixFileSystem files;
    SystemClock clock;
    SiteFile(files, clock, paths).updateSiteRecord(addresses[number], 'S');
  };
}

Visit sqliteVisit(BenchData& data, std::size_t count, SqliteSiteTable::Synchronous synchronous) {
  const AddressList& addresses = data.addresses(count);
  const auto table = std::make_shared<SqliteSiteTable>(data.database(count), synchronous);
  // The two contestants share a table. An upsert that changes nothing writes nothing, so
  // each has its own flag.
  const char flag = synchronous == SqliteSiteTable::Synchronous::Full ? 'S' : 'N';
  const Visit visit = [table, &addresses, flag](std::size_t number) {
    SystemClock clock;
    table->upsert(addresses[number], flag, accessStampText(clock.now()) + kStampEnd);
  };
  for (std::size_t i = 0; i < kVisitsUntilLogIsReused; ++i) visit(i);
  return visit;
}

// Reads the record, writes it in place and syncs the file, and nothing else.
Visit limitVisit(BenchData& data, std::size_t count) {
  const Path path = data.siteFile(count).currentNodesFile;
  const auto file =
      std::make_shared<const FileDescriptor>(::open(path.c_str(), O_RDWR | O_CLOEXEC));
  return [file](std::size_t number) {
    SiteRecord record;
    const auto offset = static_cast<off_t>(number * site_record::kLength);
    if (::pread(file->number(), record.data(), record.size(), offset) < 0 ||
        ::pwrite(file->number(), record.data(), record.size(), offset) < 0 ||
        ::fdatasync(file->number()) != 0) {
      throw std::runtime_error("the limit's file cannot be written");
    }
  };
}

// Every contestant visits the same random addresses.
template <typename MakeVisit>
void registerOne(const char* who, std::size_t count, int visits, MakeVisit makeVisit) {
  registerTurns(nameOf(who, count), visits, [count, makeVisit] {
    return Turn{.run = [count, visit = makeVisit(), random = std::mt19937_64(1)]() mutable {
      visit(static_cast<std::size_t>(random() % count));
    }};
  });
}

}  // namespace

void registerVisitBenchmarks(BenchData& data) {
  using Synchronous = SqliteSiteTable::Synchronous;
  for (const std::size_t count : kCounts) {
    registerOne("visit/site_file_synced", count, kVisits,
                [&data, count] { return siteFileVisit(data, count, Sync::Yes); });
    registerOne("visit/site_file_searched", count, kSearches,
                [&data, count] { return searchedSiteFileVisit(data, count); });
    registerOne("visit/sqlite_wal_full", count, kVisits,
                [&data, count] { return sqliteVisit(data, count, Synchronous::Full); });
    registerOne("visit/limit_write_and_sync", count, kVisits,
                [&data, count] { return limitVisit(data, count); });
    registerOne("visit/site_file_unsynced", count, kVisits,
                [&data, count] { return siteFileVisit(data, count, Sync::No); });
    registerOne("visit/sqlite_wal_off", count, kVisits,
                [&data, count] { return sqliteVisit(data, count, Synchronous::Off); });
  }
}

}  // namespace quorrix::bench
