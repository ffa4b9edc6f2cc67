// A list of folders: the ancestors of the open folder from the root down, the open
// folder, and its subfolders. A single click selects; a double click, or Enter, opens.
// The arrow keys also select, so that the user can move past folders without opening
// them.
#pragma once

#include <QListWidget>
#include <functional>
#include <vector>

#include "platform/file_system.h"

namespace quorrix {

class FolderList final : public QListWidget {
  Q_OBJECT

 public:
  // Opens the root of `start`. The list is empty if that cannot be read. `files` must
  // outlive the list.
  FolderList(FileSystem& files, const Path& start, QWidget* parent);

  // The folder that is open, whatever is selected.
  [[nodiscard]] const Path& path() const { return path_; }

  // Opens a folder and reads it, even if it is open already. Throws Failure if it cannot
  // be read; the previous folder then stays open. Also throws what the callback of
  // onChange() throws; the new folder is then open.
  void setPath(const Path& path);

  // The same, but the previous folder stays open after any failure.
  void setPathOrStay(const Path& path);

  // Opens the highlighted folder unless it is already open. Returns false if it cannot be
  // opened; openFailed() has then been emitted.
  [[nodiscard]] bool openHighlighted();

  void highlightOpenFolder();

  // `changed` is called when another folder has been opened, by the user or by setPath().
  // It is not a signal because it may throw.
  void onChange(std::function<void()> changed) { changed_ = std::move(changed); }

 signals:
  // The user could not open a folder; `number` is the failure number.
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
