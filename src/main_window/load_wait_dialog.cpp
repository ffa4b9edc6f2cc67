#include "main_window/load_wait_dialog.h"

#include <QLabel>
#include <QVBoxLayout>

#include "shell/centre_over.h"
#include "shell/controls.h"

namespace quorrix {

// Without a close button, because the dialog closes by itself.
LoadWaitDialog::LoadWaitDialog(QWidget& owner)
    : QWidget(&owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
  setObjectName(QStringLiteral("LoadWaitDialog"));
  setWindowTitle(QStringLiteral("Quorrix"));
  QLabel* const label = makeLabel("Label1", QStringLiteral("Loading data. Please wait..."), this);
  label->setAlignment(Qt::AlignCenter);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(40, 24, 40, 24);
  layout->addWidget(label);
  adjustSize();
  setFixedSize(size());
  centreOver(*this, owner);
}

}  // namespace quorrix
