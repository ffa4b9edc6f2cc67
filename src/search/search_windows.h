// The search dialog and the results dialog, at most one of each. Creates them, replaces
// one by the other, and closes them. The main window owns this.
#pragma once

#include <QPointer>
#include <functional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/code_page.h"
#include "platform/message_box.h"
#include "search/search_dialog.h"
#include "search/search_results_dialog.h"
#include "sitetree/site_tree.h"

namespace quorrix {

class SearchWindows {
 public:
  // All must outlive this.
  struct Parts {
    const CodePage& codePage;
    SiteTree& tree;
    Clock& clock;
    MessageBox& messageBox;
    QWidget& mainWindow;
    SiteSearch search;
    std::function<void(NodeId)> locate;  // scrolls the tree to the node and selects it
    // Returns the tool tip of an address; must not throw.
    std::function<QString(const std::string&)> describe;
    // Returns the text to copy for an address; must not throw.
    std::function<QString(const std::string&)> withScheme;
  };

  explicit SearchWindows(Parts parts) : parts_(std::move(parts)) {}
  ~SearchWindows();
  SearchWindows(const SearchWindows&) = delete;
  SearchWindows& operator=(const SearchWindows&) = delete;

  // Shows the search dialog. If it is already open, it comes to the front unchanged.
  // Failures are shown in a message box.
  void openSearch();

  // Closes both dialogs when the main window closes.
  void unloadAll();

 private:
  void loadSearch();
  void loadResults(const SearchCriteria& criteria, const std::vector<std::string>& addresses);
  void showResults(const SearchCriteria& criteria, const std::vector<std::string>& addresses);
  void newSearch();

  Parts parts_;
  QPointer<SearchDialog> search_;
  QPointer<SearchResultsDialog> results_;  // loaded, but hidden, during a new search
};

}  // namespace quorrix
