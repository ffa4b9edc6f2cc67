// A box to choose a volume from: a drive, or the mount point of a disk or share.
#pragma once

#include <QComboBox>
#include <vector>

#include "platform/file_system.h"

namespace quorrix {

class DriveList final : public QComboBox {
  Q_OBJECT

 public:
  // `files` must outlive the list, which is empty if the volumes cannot be determined.
  DriveList(FileSystem& files, QWidget* parent);

  // The root of the chosen volume, which need not be readable. Empty if none is chosen.
  [[nodiscard]] const Path& drive() const { return drive_; }

  // Chooses a volume without emitting changed(). If there is no such volume, throws
  // kDeviceUnavailable and keeps the current choice.
  void setDrive(const Path& drive);

  // Chooses the listed volume that contains `path`, without emitting changed(). Does
  // nothing if no volume does.
  void setDriveOf(const Path& path);

  // Reads the volumes again, because one may have been added or removed. The chosen
  // volume stays chosen.
  void showPopup() override;

 signals:
  // The user has chosen another volume.
  void changed();

 private:
  void chooseRow(int row);
  void show(const std::vector<Path>& volumes);
  void showAnew();

  FileSystem& files_;
  std::vector<Path> rows_;
  Path drive_;
};

}  // namespace quorrix
