// The tree of one data folder inside an exported page: a list of levels. A level with others below
// it can be folded, and has its own sites first.
#pragma once

#include <string>
#include <string_view>

#include "data_tool/folder_tree.h"
#include "data_tool/json_entries.h"
#include "data_tool/output.h"
#include "data_tool/site_details.h"

namespace quorrix {

class HtmlTree {
 public:
  // All must outlive this.
  HtmlTree(const FolderTree& tree, const SiteDetailIndex& details, Passwords passwords,
           Output& output)
      : tree_(tree),
        levels_(tree.levels()),
        details_(details),
        passwords_(passwords),
        output_(output) {}

  // Writes nothing if the tree is empty. Returns whether it is not.
  bool write();

 private:
  void addLevelsBelow(NodeId above);
  void addBranch(NodeId level);
  void addKept(NodeId level, std::string_view name);
  void addOutsiders();
  void addSite(const SiteEntry& site, std::string_view name);
  void addDetails(const SiteDetails& details);
  void addPurchase(const PurchaseEntry& purchase);
  void addDetail(const char* name, const std::string& text);

  [[nodiscard]] std::string_view nameOf(NodeId level) const;

  const FolderTree& tree_;
  const SiteTree& levels_;
  const SiteDetailIndex& details_;
  Passwords passwords_;
  Output& output_;
};

}  // namespace quorrix
