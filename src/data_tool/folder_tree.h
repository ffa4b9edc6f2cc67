// The tree of one data folder, as Quorrix shows it: a branch for each host, and a level for each
// further segment of an address. A level has the visits of its own records, of which there may be
// several. This takes far less memory than the entries would.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data_tool/folder_reader.h"
#include "data_tool/site_details.h"
#include "sitetree/site_tree.h"

namespace quorrix {

class FolderTree {
 public:
  // Reads the sites of the folder, and adds the levels that have details.
  FolderTree(FolderReader& folder, const SiteDetailIndex& details);

  [[nodiscard]] const SiteTree& levels() const { return tree_; }

  // Whether the level has records or details of its own.
  [[nodiscard]] bool isKept(NodeId level) const { return kept_[level].isKept; }

  // How many such levels there are below this one, and including it.
  [[nodiscard]] std::size_t keptInBranch(NodeId level) const { return kept_[level].inBranch; }

  // Visits the level's own records, in the order of the file. The entry is valid only during the
  // call.
  void forEachSite(NodeId level, const std::function<void(const SiteEntry&)>& visit) const;

  // Sites and addresses with details that the tree of Quorrix leaves out, because they have too
  // many levels or have the key of its root.
  [[nodiscard]] const std::vector<SiteEntry>& outsiders() const { return outsiders_; }

 private:
  static constexpr std::uint32_t kNoVisit = UINT32_MAX;

  struct Visit {
    std::optional<StampTime> time;
    std::uint32_t next = kNoVisit;  // of the same level
    char protocolFlag = ' ';
    bool isUnusual = false;  // has texts in unusual_
  };

  struct Kept {
    std::uint32_t firstVisit = kNoVisit;
    std::uint32_t lastVisit = kNoVisit;
    std::uint32_t inBranch = 0;
    bool isKept = false;
  };

  // Texts that only damaged records have.
  struct Unusual {
    std::uint32_t visit;
    std::string unknownFlag;
    std::string unreadableStamp;
  };

  void addSite(const SiteEntry& site);
  void addDetails(const SiteDetailIndex& details);
  void count();
  NodeId place(std::string_view address);

  SiteTree tree_;
  std::vector<Kept> kept_;  // by node
  std::vector<Visit> visits_;
  std::vector<Unusual> unusual_;  // sorted by visit
  std::vector<SiteEntry> outsiders_;
};

}  // namespace quorrix
