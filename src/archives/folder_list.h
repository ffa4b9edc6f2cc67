// A list of folders: the open one with all above it, from the root down, and what
// folders it holds. A single click selects; a double click, or Enter, opens. Arrow keys
// select too, so that the user can pass folders without opening them.
#pragma once

#include <QListWidget>
#include <functional>
#include <vector>

#include "platform/file_system.h"

namespace quorrix {

class FolderList final : public QListWidget {
  Q_OBJECT

 public:
  // Opens the root on which `start` lies; when that cannot be read it shows empty.
  // `files` must outlive the list.
  FolderList(FileSystem& files, const Path& start, QWidget* parent);

  // The folder that is open, whatever is selected.
  [[nodiscard]] const Path& path() const { return path_; }

  // Opens a folder and reads it again. Throws Failure when it cannot be read; the folder
  // that was open then stays open. Also throws what `onChange` throws, after opening.
  void setPath(const Path& path);

  // The same, but the folder that was open stays open after every failure.
  void setPathOrStay(const Path& path);

  // Opens the folder that is highlighted, if it is not open already. False when it cannot
  // be opened, which openFailed() has told then.
  [[nodiscard]] bool openHighlighted();

  void highlightOpenFolder();

  // Called when another folder has been opened, by the user or by setPath(). No
  // signal, for it may throw.
  void onChange(std::function<void()> changed) { changed_ = std::move(changed); }

 signals:
  // The user could not open a folder, for the reason with this number.
  void openFailed(int number);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Row {
    Path path;
    int depth;    // folders above it
    bool isOpen;  // the folder that is open or one above it
  };

  bool openRow(int row);
  void open(const Path& path, std::vector<Row> rows);
  void showRows();
  void showWhereNamesBegin(int row);
  [[nodiscard]] std::vector<Row> rowsOf(const Path& path);

  FileSystem& files_;
  Path path_;
  std::vector<Row> rows_;
  std::function<void()> changed_;
};

}  // namespace quorrix
