#include "archives/file_list.h"

#include "archives/shown_path.h"
#include "platform/failure.h"

namespace quorrix {

FileList::FileList(FileSystem& files, const Path& start, QWidget* parent)
    : QListWidget(parent), files_(files) {
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setUniformItemSizes(true);
  try {
    setPath(start);
  } catch (const Failure&) {
    return;  // the list starts empty; the user did not choose this folder
  }
}

void FileList::setPath(const Path& path) {
  names_ = files_.fileNames(path);
  clear();
  for (const Path& name : names_) addItem(rowTextOfPath(name));
}

}  // namespace quorrix
