#include "archives/file_list.h"

#include "archives/shown_path.h"

namespace quorrix {

FileList::FileList(FileSystem& files, QWidget* parent) : QListWidget(parent), files_(files) {
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setUniformItemSizes(true);
}

void FileList::setPath(const Path& path) {
  names_ = files_.fileNames(path);
  path_ = path;
  clear();
  for (const Path& name : names_) addItem(rowTextOfPath(name));
}

}  // namespace quorrix
