// Quorrix Help: the manual with its contents beside it, a way back and forward, and
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
  // `openAddress` gets the web address of a link that the user follows.
  HelpWindow(std::function<void(const QUrl&)> openAddress, SlotRunner run);

  // A page that is shown already stays where the user is reading, and its contents stay
  // as they are.
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
