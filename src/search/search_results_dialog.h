// Search Results: the addresses that a search found, which the user can locate in the
// tree one after another. Not modal, and in front of the other windows.
#pragma once

#include <QDialog>
#include <functional>
#include <string>
#include <vector>

#include "platform/code_page.h"
#include "platform/message_box.h"
#include "search/search_criteria.h"
#include "sitetree/site_tree.h"

class QLabel;

namespace quorrix {

class LiteralLabel;
class ResultList;

class SearchResultsDialog final : public QDialog {
  Q_OBJECT

 public:
  // All must outlive the dialog.
  struct Parts {
    const CodePage& codePage;
    SiteTree& tree;
    MessageBox& messageBox;
    QWidget& mainWindow;
    std::function<void(NodeId)> locate;  // scrolls the tree to the node and selects it
    // Returns the tool tip of an address; must not throw.
    std::function<QString(const std::string&)> describe;
    // Returns the text to copy for an address; must not throw.
    std::function<QString(const std::string&)> withScheme;
    std::function<void()> newSearch;  // replaces this dialog by a new search
  };

  explicit SearchResultsDialog(Parts parts);

  // Must be called before the dialog is shown.
  void Form_Load(const SearchCriteria& criteria, const std::vector<std::string>& addresses);

  // Moves the window to the top left corner of the screen. `size` is in pixels and
  // includes the frame. A large font can make the window larger.
  void placeInCorner(const QSize& size);

 private:
  void OKButton_Click();
  void NewSearchButton_Click();
  void CancelButton_Click();

  Parts parts_;
  LiteralLabel* Label4_;
  LiteralLabel* Label6_;
  ResultList* List1_;
  QLabel* count_;
};

}  // namespace quorrix
