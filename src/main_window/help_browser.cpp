#include "main_window/help_browser.h"

#include <QEvent>
#include <QImage>
#include <QScrollBar>
#include <QTextBlock>

namespace quorrix {
namespace {

// Not the address of a file; it is the base of the page's own links.
QUrl pageAddress() { return QUrl(QStringLiteral("quorrix:/manual")); }

constexpr int kMargin = 12;  // pixels

// For a picture that is not part of the page. Without a replacement, Qt would try its
// name as a file name.
QImage emptyPicture() {
  QImage picture(1, 1, QImage::Format_ARGB32);
  picture.fill(Qt::transparent);
  return picture;
}

QString anchorOf(const QTextBlock& block) {
  for (auto part = block.begin(); !part.atEnd(); ++part) {
    const QStringList names = part.fragment().charFormat().anchorNames();
    if (!names.isEmpty()) return names.front();
  }
  return {};
}

}  // namespace

HelpBrowser::HelpBrowser(std::function<void(const QUrl&)> openAddress, QWidget* parent)
    : QTextBrowser(parent), openAddress_(std::move(openAddress)) {
  setOpenLinks(false);
  document()->setDocumentMargin(kMargin);
  connect(this, &QTextBrowser::anchorClicked, this, &HelpBrowser::follow);
}

bool HelpBrowser::showPage(const std::string& page) {
  const QByteArray bytes = QByteArray::fromStdString(page);
  if (bytes == page_) return false;
  page_ = bytes;
  if (source().isEmpty()) {
    setSource(pageAddress(), QTextDocument::HtmlResource);
  } else {
    reload();
  }
  clearHistory();
  return true;
}

std::vector<HelpBrowser::Heading> HelpBrowser::headings() const {
  std::vector<Heading> headings;
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    const int level = block.blockFormat().headingLevel();
    const QString anchor = level > 0 ? anchorOf(block) : QString();
    if (!anchor.isEmpty()) headings.push_back({level, block.text(), anchor});
  }
  return headings;
}

void HelpBrowser::goTo(const QString& anchor) {
  QUrl place = pageAddress();
  place.setFragment(anchor);
  setSource(place, QTextDocument::HtmlResource);
}

void HelpBrowser::follow(const QUrl& link) {
  const QUrl target = pageAddress().resolved(link);
  if (target.matches(pageAddress(), QUrl::RemoveFragment)) {
    setSource(target, QTextDocument::HtmlResource);
  } else if (target.scheme() == QStringLiteral("http") ||
             target.scheme() == QStringLiteral("https")) {
    openAddress_(target);
  }
}

QVariant HelpBrowser::loadResource(int type, const QUrl& name) {
  if (name.matches(pageAddress(), QUrl::RemoveFragment)) return QString::fromUtf8(page_);
  if (type != QTextDocument::ImageResource) return QByteArray("");
  // A null result leaves the picture to the document, which reads data: addresses.
  if (name.scheme() == QStringLiteral("data")) return {};
  return emptyPicture();
}

void HelpBrowser::changeEvent(QEvent* event) {
  QTextBrowser::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) showInNewColours();
}

// Links get their colour when the page is read, so the page is read again.
void HelpBrowser::showInNewColours() {
  if (source().isEmpty()) return;
  const int place = verticalScrollBar()->value();
  reload();
  verticalScrollBar()->setValue(place);
}

}  // namespace quorrix
