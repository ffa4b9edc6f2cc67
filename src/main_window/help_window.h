// Quorrix Help: the manual with a table of contents, buttons to go back and forward, and
// a search. Not modal; the main window has at most one.
#pragma once

#include <QTextDocument>
#include <QUrl>
#include <QWidget>
#include <functional>
#include <string>

#include "shell/guarded.h"

class QLabel;
class QLayout;
class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace quorrix {

class HelpBrowser;

class HelpWindow final : public QWidget {
  Q_OBJECT

 public:
  // `openAddress` is called with the web address of a link that the user follows.
  HelpWindow(std::function<void(const QUrl&)> openAddress, SlotRunner run);

  // If the page is already shown, the reading position and the table of contents stay as
  // they are.
  void showPage(const std::string& page);

 private:
  QLayout* rowOfControls();
  void addShortcuts();
  void fillContents();
  void goToEntry(const QTreeWidgetItem* entry);
  void startFind();
  void find(QTextDocument::FindFlags direction);
  void tell(const QString& text);

  SlotRunner run_;
  QTreeWidget* contents_;
  HelpBrowser* browser_;
  QLineEdit* findBox_;
  QLabel* findResult_;
};

}  // namespace quorrix
