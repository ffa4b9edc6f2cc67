#include "main_window/about_box.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStringBuilder>
#include <QVBoxLayout>

#include "platform/failure.h"
#include "shell/centre_over.h"
#include "shell/controls.h"
#include "shell/keep_in_front.h"
#include "shell/resources.h"

namespace quorrix {
namespace {

constexpr QSize kIconSize{64, 64};  // pixels
constexpr int kMargin = 20;
constexpr double kTitleScale = 1.6;  // relative to the size of the other texts

struct Script {
  unsigned codePage;
  QLatin1StringView name;
};

constexpr Script kScripts[] = {
    {874, QLatin1StringView("Thai")},      {1250, QLatin1StringView("Central European")},
    {1251, QLatin1StringView("Cyrillic")}, {1252, QLatin1StringView("Western")},
    {1253, QLatin1StringView("Greek")},    {1254, QLatin1StringView("Turkish")},
    {1255, QLatin1StringView("Hebrew")},   {1256, QLatin1StringView("Arabic")},
    {1257, QLatin1StringView("Baltic")},   {1258, QLatin1StringView("Vietnamese")},
};

QFont enlarged(QFont font) {
  font.setPointSizeF(font.pointSizeF() * kTitleScale);
  font.setBold(true);
  return font;
}

}  // namespace

QString versionText(const ProgramVersion& version) {
  return QStringLiteral("Version %1.%2.%3")
      .arg(QString::number(version.major), QString::number(version.minor),
           QString::number(version.revision));
}

QString codePageText(const CodePage& codePage) {
  QString name = QString::number(codePage.number());
  for (const auto& [number, script] : kScripts) {
    if (number == codePage.number()) name += QLatin1String(" (") % script % QLatin1Char(')');
  }
  return QStringLiteral("Stores text in code page %1.").arg(name);
}

QString librariesText(const QString& qtVersion) {
  return QStringLiteral(
             "Made with Qt %1, which is used under the GNU Lesser General\n"
             "Public License, version 3. The manual names what else is\n"
             "inside, and where the licences are.")
      .arg(qtVersion);
}

AboutBox::AboutBox(QWidget& mainWindow, const CodePage& codePage)
    : QDialog(&mainWindow),
      mainWindow_(mainWindow),
      picIcon_(makeLabel("picIcon", {}, this)),
      lblTitle_(makeLabel("lblTitle", {}, this)),
      lblVersion_(makeLabel("lblVersion", {}, this)),
      lblCodePage_(makeLabel("lblCodePage", codePageText(codePage), this)),
      lblLibraries_(makeLabel("lblLibraries", {}, this)) {
  setObjectName(QStringLiteral("AboutBox"));
  keepInFront(*this);
  picIcon_->setAccessibleName(QStringLiteral("Icon of Quorrix"));
  lblTitle_->setFont(enlarged(lblTitle_->font()));
  QPushButton* const cmdOK = makeButton("cmdOK", QStringLiteral("OK"), this);
  cmdOK->setDefault(true);
  connect(cmdOK, &QPushButton::clicked, this, &AboutBox::cmdOK_Click);

  auto* const texts = new QVBoxLayout;
  texts->addStretch();
  texts->addWidget(lblTitle_);
  texts->addWidget(lblVersion_);
  texts->addStretch();
  auto* const top = new QHBoxLayout;
  top->setSpacing(kMargin);
  top->addWidget(picIcon_);
  top->addLayout(texts, 1);
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cmdOK);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kMargin);
  layout->addLayout(top);
  layout->addWidget(lblCodePage_);
  layout->addWidget(lblLibraries_);
  layout->addLayout(buttons);
  layout->setSizeConstraint(QLayout::SetFixedSize);
}

void AboutBox::Form_Load() {
  setWindowTitle(QStringLiteral("About Quorrix"));
  lblVersion_->setText(versionText(kProgramVersion));
  lblTitle_->setText(QStringLiteral("Quorrix"));
  lblLibraries_->setText(librariesText(QLatin1String(qVersion())));
  const QIcon icon = applicationIcon();
  if (icon.isNull()) throw Failure(failure::kFileNotFound);
  picIcon_->setPixmap(icon.pixmap(kIconSize, mainWindow_.devicePixelRatioF()));
  adjustSize();
  centreOver(*this, mainWindow_);
}

void AboutBox::cmdOK_Click() { accept(); }

}  // namespace quorrix
