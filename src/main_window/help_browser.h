// Shows the manual and loads nothing else: no file and no address that the page names is
// ever loaded, and pictures are part of the page.
#pragma once

#include <QTextBrowser>
#include <functional>
#include <string>
#include <vector>

namespace quorrix {

class HelpBrowser final : public QTextBrowser {
  Q_OBJECT

 public:
  struct Heading {
    int level;  // 1 to 6
    QString text;
    QString anchor;
  };

  // `openAddress` is called with the http or https address of a link that the user
  // follows.
  HelpBrowser(std::function<void(const QUrl&)> openAddress, QWidget* parent);

  // Shows the page, HTML in UTF-8, from its beginning, and returns true. Returns false
  // and changes nothing if this page is already shown.
  bool showPage(const std::string& page);

  // The headings of the page that have an anchor, in page order.
  [[nodiscard]] std::vector<Heading> headings() const;

  void goTo(const QString& anchor);

 protected:
  QVariant loadResource(int type, const QUrl& name) override;
  void changeEvent(QEvent* event) override;

 private:
  void follow(const QUrl& link);
  void showInNewColours();

  std::function<void(const QUrl&)> openAddress_;
  QByteArray page_;
};

}  // namespace quorrix
