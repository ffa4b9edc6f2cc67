// A box to choose a volume from: a drive, or where a disk or a share is mounted.
#pragma once

#include <QComboBox>
#include <vector>

#include "platform/file_system.h"

namespace quorrix {

class DriveList final : public QComboBox {
  Q_OBJECT

 public:
  // `files` must outlive the list, which is empty when the volumes cannot be told.
  DriveList(FileSystem& files, QWidget* parent);

  // The root of the volume chosen, readable or not; empty for none.
  [[nodiscard]] const Path& drive() const { return drive_; }

  // Chooses a volume; no signal tells of it. Throws kDeviceUnavailable for one that is
  // not there, and leaves what was chosen.
  void setDrive(const Path& drive);

  // The same for the volume on which `path` lies, if any does.
  void setDriveOf(const Path& path);

  // Reads the volumes again, because one may have come or gone. The chosen one stays chosen.
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
