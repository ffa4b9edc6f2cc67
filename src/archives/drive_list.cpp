#include "archives/drive_list.h"

#include <algorithm>

#include "archives/shown_path.h"
#include "platform/failure.h"

namespace quorrix {
namespace {

bool liesOn(const Path& volume, const Path& path) {
  return std::mismatch(volume.begin(), volume.end(), path.begin(), path.end()).first ==
         volume.end();
}

}  // namespace

DriveList::DriveList(FileSystem& files, QWidget* parent) : QComboBox(parent), files_(files) {
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  connect(this, &QComboBox::activated, this, &DriveList::chooseRow);
  showAnew();
  if (rows_.empty()) return;
  drive_ = rows_.front();
  setCurrentIndex(0);
}

void DriveList::setDrive(const Path& drive) {
  const std::vector<Path> volumes = files_.volumes();
  if (std::find(volumes.begin(), volumes.end(), drive) == volumes.end()) {
    throw Failure(failure::kDeviceUnavailable);
  }
  drive_ = drive;
  show(volumes);
}

void DriveList::setDriveOf(const Path& path) {
  const Path* nearest = nullptr;
  for (const Path& volume : rows_) {
    const bool isNearer = nearest == nullptr || volume.native().size() > nearest->native().size();
    if (isNearer && liesOn(volume, path)) nearest = &volume;
  }
  if (nearest == nullptr) return;
  drive_ = *nearest;
  show(std::vector<Path>(rows_));
}

void DriveList::showPopup() {
  showAnew();
  QComboBox::showPopup();
}

void DriveList::chooseRow(int row) {
  const Path& chosen = rows_[static_cast<std::size_t>(row)];
  if (chosen == drive_) return;
  drive_ = chosen;
  emit changed();
}

void DriveList::show(const std::vector<Path>& volumes) {
  rows_ = volumes;
  auto chosen = std::find(rows_.begin(), rows_.end(), drive_);
  if (chosen == rows_.end() && !drive_.empty()) chosen = rows_.insert(chosen, drive_);
  const auto row = static_cast<int>(chosen - rows_.begin());
  clear();
  for (const Path& volume : rows_) addItem(rowTextOfPath(volume));
  setCurrentIndex(row);
}

// Called from the constructor and when the user opens the list. A failure cannot be
// reported there; the list then stays unchanged.
void DriveList::showAnew() {
  try {
    show(files_.volumes());
  } catch (...) {
    return;
  }
}

}  // namespace quorrix
