#include "main_window/load_wait_dialog.h"

#include <QLabel>
#include <QVBoxLayout>

#include "shell/centre_over.h"

namespace quorrix {

// Without a close button: it goes by itself.
LoadWaitDialog::LoadWaitDialog(QWidget& owner)
    : QWidget(&owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
  setObjectName(QStringLiteral("LoadWaitDialog"));
  setWindowTitle(QStringLiteral("Quorrix"));
  auto* const label = new QLabel(tr("Loading data. Please wait..."), this);
  label->setObjectName(QStringLiteral("Label1"));
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignCenter);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(40, 24, 40, 24);
  layout->addWidget(label);
  adjustSize();
  setFixedSize(size());
  centreOver(*this, owner);
}

}  // namespace quorrix
