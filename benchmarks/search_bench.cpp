#include <fcntl.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks.h"
#include "datafiles/access_stamp.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/posix_file_system.h"
#include "search/site_search.h"
#include "sitetree/site_file.h"
#include "sqlite_search_table.h"

namespace quorrix::bench {
namespace {

constexpr std::size_t kRecords = sized(1'000'000);
constexpr std::size_t kNodes = sized(1'000'000);
constexpr std::size_t kLimitBlock = std::size_t{1024} * 1024;

// In capitals, while the addresses have small letters. Matches the hosts 770 to 779 of
// 20,000.
constexpr const char* kText = "SITE-NO-0077";
constexpr const char* kPattern = "%SITE-NO-0077%";

// The addresses were visited in the ten years from 2016. The date matches the visits of
// the last year, about a tenth.
constexpr int kFirstYear = 2016;
constexpr const char* kDate = "1/1/25";
constexpr int kDay = 20250101;

using Found = std::vector<std::string>;

// A random time, the same in every run, so that the visits are not in the order of the
// addresses.
LocalDateTime visitOf(std::size_t number) {
  std::mt19937_64 random(number);
  const auto below = [&random](unsigned bound) { return static_cast<int>(random() % bound); };
  return {.year = kFirstYear + below(10),
          .month = 1 + below(12),
          .day = 1 + below(28),
          .hour = below(24),
          .minute = below(60),
          .second = below(60)};
}

int dayOf(const LocalDateTime& moment) {
  return moment.year * 10'000 + moment.month * 100 + moment.day;
}

// The same visits in a site file and in a table.
class VisitedSites {
 public:
  explicit VisitedSites(BenchData& data)
      : addresses_(data.addresses(kRecords)), database_(data.folder() / "search.sqlite") {
    const Path folder = data.folder() / "search";
    std::filesystem::create_directory(folder);
    paths_.setFolder(folder);
    writeSiteFile();
    writeTable();
    PosixFileSystem files;
    files.openRandomAccess(paths_.currentNodesFile)->sync();
    files.openRandomAccess(database_)->sync();
    table_.emplace(database_);
  }

  [[nodiscard]] const WorkingPaths& paths() const { return paths_; }
  [[nodiscard]] SqliteSearchTable& table() { return *table_; }

 private:
  void writeSiteFile() {
    std::ofstream file(paths_.currentNodesFile, std::ios::binary);
    file.exceptions(std::ios::failbit | std::ios::badbit);
    SiteRecord record;
    for (std::size_t i = 0; i < kRecords; ++i) {
      fillField(record, site_record::kSiteAddress, addresses_[i]);
      fillField(record, site_record::kProtocolFlag, "N");
      fillField(record, site_record::kAccessStamp, accessStampText(visitOf(i)) + kStampEnd);
      file.write(record.data(), static_cast<std::streamsize>(record.size()));
    }
  }

  void writeTable() {
    SqliteSearchTable table(database_);
    table.create();
    for (std::size_t i = 0; i < kRecords; ++i) {
      const LocalDateTime visit = visitOf(i);
      table.append(addresses_[i], accessStampText(visit) + kStampEnd, dayOf(visit));
    }
    table.finish();
  }

  const AddressList& addresses_;
  WorkingPaths paths_;
  Path database_;
  std::optional<SqliteSearchTable> table_;
};

// Created by the first benchmark that needs it.
class SharedSites {
 public:
  explicit SharedSites(BenchData& data) : data_(data) {}

  VisitedSites& get() {
    if (!sites_) sites_ = std::make_unique<VisitedSites>(data_);
    return *sites_;
  }

 private:
  BenchData& data_;
  std::unique_ptr<VisitedSites> sites_;
};

using Search = std::function<Found(VisitedSites&)>;

Search siteFileSearch(UserSearchType type) {
  return [type](VisitedSites& sites) {
    PosixFileSystem files;
    return searchSiteFile(files, sites.paths(), westernCodePage(), {type, kText, kDate});
  };
}

Found readBytes(VisitedSites& sites) {
  std::vector<char> block(kLimitBlock);
  const FileDescriptor file(::open(sites.paths().currentNodesFile.c_str(), O_RDONLY | O_CLOEXEC));
  while (::read(file.number(), block.data(), block.size()) > 0) {
    benchmark::DoNotOptimize(block.data());
  }
  return {};
}

// What all contestants of one family must find.
using Answer = std::shared_ptr<std::optional<Found>>;

void requireSame(const Answer& answer, Found found) {
  if (!*answer)
    *answer = std::move(found);
  else if (**answer != found)
    throw std::runtime_error("two searches find different addresses");
}

void registerOne(const char* name, const std::shared_ptr<SharedSites>& sites, const Answer& answer,
                 const Search& search) {
  benchmark::RegisterBenchmark(nameOf(name, kRecords).c_str(),
                               [sites, answer, search](benchmark::State& state) {
                                 VisitedSites& searched = sites->get();
                                 Found found;
                                 for ([[maybe_unused]] auto _ : state) found = search(searched);
                                 state.counters["found"] = static_cast<double>(found.size());
                                 if (answer) requireSame(answer, std::move(found));
                               })
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime()
      ->Repetitions(kRepetitions)
      ->ReportAggregatesOnly(true);
}

// Looks up addresses of all depths in a tree that has all their levels.
void locate(benchmark::State& state, BenchData& data) {
  const AddressList& addresses = data.addresses(kNodes);
  SiteTree tree;
  tree.addRoot();
  std::size_t count = 0;
  while (tree.size() < kNodes) tree.addMissingLevels(addressLevels(addresses[count++]), 'N');
  std::mt19937_64 random(1);
  for ([[maybe_unused]] auto _ : state) {
    const NodeId node = tree.find(addresses[static_cast<std::size_t>(random() % count)]);
    if (node == kNoNode) throw std::runtime_error("an address of the tree is not found");
    benchmark::DoNotOptimize(node);
  }
}

}  // namespace

void registerSearchBenchmarks(BenchData& data) {
  const auto sites = std::make_shared<SharedSites>(data);
  const auto byText = std::make_shared<std::optional<Found>>();
  registerOne("search_text/site_file", sites, byText, siteFileSearch(UserSearchType::Url));
  registerOne("search_text/sqlite_like", sites, byText,
              [](VisitedSites& searched) { return searched.table().likeText(kPattern); });
  const auto byDate = std::make_shared<std::optional<Found>>();
  registerOne("search_date/site_file", sites, byDate, siteFileSearch(UserSearchType::Date));
  registerOne("search_date/sqlite", sites, byDate,
              [](VisitedSites& searched) { return searched.table().sinceDay(kDay); });
  const auto byBoth = std::make_shared<std::optional<Found>>();
  registerOne("search_both/site_file", sites, byBoth, siteFileSearch(UserSearchType::Both));
  registerOne("search_both/sqlite_like", sites, byBoth, [](VisitedSites& searched) {
    return searched.table().likeTextSinceDay(kPattern, kDay);
  });
  registerOne("search/limit_read_bytes", sites, nullptr, readBytes);
  benchmark::RegisterBenchmark(nameOf("locate/site_tree", kNodes).c_str(),
                               [&data](benchmark::State& state) { locate(state, data); })
      ->Unit(benchmark::kMicrosecond)
      ->UseRealTime()
      ->Repetitions(kRepetitions)
      ->ReportAggregatesOnly(true);
}

}  // namespace quorrix::bench
