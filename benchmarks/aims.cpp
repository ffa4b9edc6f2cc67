#include "aims.h"

#include <array>
#include <iomanip>
#include <optional>
#include <string_view>

namespace quorrix::bench {
namespace {

// The measured value must be below either the time of a peer, multiplied by `timesPeer`,
// or the fixed `bound`. It is in milliseconds, or the value of the named counter.
struct Aim {
  std::string_view what;
  std::string_view measured;
  std::string_view peer;
  double bound;
  std::string_view counter;
  double timesPeer = 1;
};

constexpr std::array kAims{
    Aim{"Loading 100,000 records, ms: faster than SQLite's scan", "load/site_file/100000",
        "load/sqlite_scan/100000", 0, ""},
    Aim{"Loading 1,000,000 records, ms: faster than SQLite's scan", "load/site_file/1000000",
        "load/sqlite_scan/1000000", 0, ""},
    Aim{"Loading 1,000,000 records, ms", "load/site_file/1000000", "", 800, ""},
    Aim{"Tree at 1,000,000 records, bytes a node", "load/site_file/1000000", "", 300,
        "bytes_per_node"},
    Aim{"Visit at 100,000 records, ms: faster than SQLite's WAL, FULL",
        "visit/site_file_synced/100000", "visit/sqlite_wal_full/100000", 0, ""},
    Aim{"Finding the last notes of 32,767, ms", "notes_find/file/32767", "", 5, ""},
    Aim{"Replacing the last notes, ms: faster than SQLite's WAL, FULL",
        "notes_replace/file_synced/32767", "notes_replace/sqlite_wal_full/32767", 0, ""},
    Aim{"Replacing the last notes unsynced, ms", "notes_replace/file_unsynced/32767", "", 5, ""},
    Aim{"Removing the last notes, ms: faster than SQLite's WAL, FULL",
        "notes_remove/file_synced/32767", "notes_remove/sqlite_wal_full/32767", 0, ""},
    Aim{"Removing the last notes unsynced, ms", "notes_remove/file_unsynced/32767", "", 5, ""},
    Aim{"Finding the last user ID of 32,767, ms", "user_id_password_find/file/32767", "", 5, ""},
    Aim{"Replacing the last user ID, ms: faster than SQLite's WAL, FULL",
        "user_id_password_replace/file_synced/32767",
        "user_id_password_replace/sqlite_wal_full/32767", 0, ""},
    Aim{"Replacing the last user ID unsynced, ms", "user_id_password_replace/file_unsynced/32767",
        "", 5, ""},
    Aim{"Removing the last user ID, ms: faster than SQLite's WAL, FULL",
        "user_id_password_remove/file_synced/32767",
        "user_id_password_remove/sqlite_wal_full/32767", 0, ""},
    Aim{"Removing the last user ID unsynced, ms", "user_id_password_remove/file_unsynced/32767", "",
        5, ""},
    Aim{"Finding the last purchase of 32,767, ms", "purchase_find/file/32767", "", 5, ""},
    Aim{"Appending the last purchase, ms: faster than SQLite's WAL, FULL",
        "purchase_append/file_synced/32767", "purchase_append/sqlite_wal_full/32767", 0, ""},
    Aim{"Appending the last purchase unsynced, ms", "purchase_append/file_unsynced/32767", "", 5,
        ""},
    Aim{"Removing the last purchase, ms: faster than SQLite's WAL, FULL",
        "purchase_remove/file_synced/32767", "purchase_remove/sqlite_wal_full/32767", 0, ""},
    Aim{"Removing the last purchase unsynced, ms", "purchase_remove/file_unsynced/32767", "", 5,
        ""},
    Aim{"Deleting 20,000 sites from four files of 100,000, ms", "deletion/files_synced/100000", "",
        2'000, ""},
    Aim{"Archiving 200,000 sites and 32,767 of each record, ms", "archive/files_synced/200000", "",
        3'000, ""},
    Aim{"Loading an archive of the same, ms", "archive_load/files_synced/200000", "", 3'000, ""},
    Aim{"Searching 1,000,000 records by text, ms: three reads", "search_text/site_file/1000000",
        "search/limit_read_bytes/1000000", 0, "", 3},
    Aim{"Searching by text, ms: four times as fast as SQLite's LIKE",
        "search_text/site_file/1000000", "search_text/sqlite_like/1000000", 0, "", 0.25},
    Aim{"Searching 1,000,000 records by date, ms: three reads", "search_date/site_file/1000000",
        "search/limit_read_bytes/1000000", 0, "", 3},
    Aim{"Searching by date, ms: faster than SQLite's scan", "search_date/site_file/1000000",
        "search_date/sqlite/1000000", 0, ""},
    Aim{"Searching 1,000,000 records by both, ms: three reads", "search_both/site_file/1000000",
        "search/limit_read_bytes/1000000", 0, "", 3},
    Aim{"Searching by both, ms: faster than SQLite's scan", "search_both/site_file/1000000",
        "search_both/sqlite_like/1000000", 0, ""},
    Aim{"Locating an address among 1,000,000 nodes, ms", "locate/site_tree/1000000", "", 50, ""},
    Aim{"Listing 1,000,000 sites, ms", "data_list/quorrix_data/1000000", "", 1'500, ""},
    Aim{"Searching them with quorrix-data, ms", "data_search/quorrix_data/1000000", "", 1'500, ""},
    Aim{"Checking them, ms", "data_check/quorrix_data/1000000", "", 1'500, ""},
    Aim{"Exporting them as JSON, ms", "data_export/quorrix_data/1000000", "", 3'000, ""},
    Aim{"Listing 1,000,000 sites, KiB: no more than for 100,000", "data_list/quorrix_data/1000000",
        "data_list/quorrix_data/100000", 0, "peak_kib", 1.1},
    Aim{"Searching them, KiB: the same", "data_search/quorrix_data/1000000",
        "data_search/quorrix_data/100000", 0, "peak_kib", 1.1},
    Aim{"Checking them, KiB: the same", "data_check/quorrix_data/1000000",
        "data_check/quorrix_data/100000", 0, "peak_kib", 1.1},
    Aim{"Exporting them as JSON, KiB: the same", "data_export/quorrix_data/1000000",
        "data_export/quorrix_data/100000", 0, "peak_kib", 1.1},
    Aim{"Show All over 100,000 nodes of all depths, ms", "view/show_all/100000", "", 200, ""},
    Aim{"Show All over 100,000 hosts, ms", "view/show_all_hosts/100000", "", 200, ""},
    Aim{"Expanding the root over 100,000 hosts, ms", "view/expand_root/100000", "", 200, ""},
    Aim{"Deleting a host of 200,000 open nodes, ms", "view/delete_host_when_all_is_open/200000", "",
        300, ""},
    Aim{"A key of type-ahead over 200,000 open nodes, ms",
        "view/type_ahead_when_all_is_open/200000", "", 30, ""},
    Aim{"First rows of 1,000,000 results, ms", "results/first_rows/1000000", "", 100, ""},
    Aim{"End in 1,000,000 results, ms", "results/end/1000000", "", 100, ""},
    Aim{"Down in 1,000,000 results, ms", "results/down/1000000", "", 100, ""},
    Aim{"A key of type-ahead in 1,000,000 results, ms", "results/type_ahead/1000000", "", 100, ""},
};

constexpr std::array<std::string_view, 6> kVisitors{
    "visit/site_file_synced",     "visit/site_file_searched", "visit/sqlite_wal_full",
    "visit/limit_write_and_sync", "visit/site_file_unsynced", "visit/sqlite_wal_off"};

std::optional<double> valueOf(const Medians& medians, std::string_view name,
                              std::string_view counter) {
  const auto median = medians.find(std::string(name));
  if (median == medians.end()) return {};
  if (counter.empty()) return median->second.seconds * 1000;
  const auto found = median->second.counters.find(std::string(counter));
  if (found == median->second.counters.end()) return {};
  return found->second;
}

}  // namespace

void printAims(std::ostream& out, const Medians& medians) {
  out << "\nAims" << std::fixed << '\n';
  for (const Aim& aim : kAims) {
    const auto measured = valueOf(medians, aim.measured, aim.counter);
    auto bound =
        aim.peer.empty() ? std::optional(aim.bound) : valueOf(medians, aim.peer, aim.counter);
    if (!measured || !bound) continue;
    *bound *= aim.timesPeer;
    out << "  " << std::left << std::setw(64) << aim.what << std::right
        << std::setprecision(*measured < 10 ? 3 : 0) << std::setw(8) << *measured
        << (*measured < *bound ? "  met     " : "  MISSED  ") << "below " << *bound << '\n';
  }
}

void printGrowth(std::ostream& out, const Medians& medians) {
  if (!valueOf(medians, "visit/site_file_synced/10000", "")) return;
  out << "\nA visit, microseconds at 10,000, 100,000 and 1,000,000 records" << std::fixed
      << std::setprecision(0) << '\n';
  for (const std::string_view visitor : kVisitors) {
    if (!valueOf(medians, std::string(visitor) + "/10000", "")) continue;
    out << "  " << std::left << std::setw(32) << visitor << std::right;
    std::optional<double> smaller;
    for (const char* const size : {"/10000", "/100000", "/1000000"}) {
      const auto now = valueOf(medians, std::string(visitor) + size, "");
      if (!now) continue;
      out << std::setw(9) << *now * 1000;
      if (smaller) {
        out << " (x" << std::setprecision(1) << *now / *smaller << std::setprecision(0) << ')';
      }
      smaller = now;
    }
    out << '\n';
  }
}

}  // namespace quorrix::bench
