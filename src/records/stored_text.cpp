#include "records/stored_text.h"

#include <QRegularExpression>

#include "shell/plain_text.h"

namespace quorrix {

QString inLines(QString text) {
  static const QRegularExpression lineBreak(QStringLiteral("\\r\\n|[\\r\\x{2028}\\x{2029}]"));
  return text.replace(lineBreak, QStringLiteral("\n"));
}

std::string storedText(const CodePage& codePage, const QString& text) {
  return fromQString(codePage, inLines(text).replace(QLatin1Char('\n'), QStringLiteral("\r\n")));
}

QString asReadBack(const CodePage& codePage, const QString& text) {
  return toQString(codePage, fromQString(codePage, inLines(text)));
}

QString cutToStore(const CodePage& codePage, const QString& text, std::size_t room) {
  qsizetype length = 0;
  for (std::size_t stored = 0; length < text.size(); ++length) {
    const QChar character = text[length];
    stored += character == QLatin1Char('\n') ? 2U : codePage.storedLength(character.unicode());
    if (stored > room) break;
  }
  if (length < text.size()) {
    while (length > 0 && text[length].isMark()) --length;
  }
  return text.left(length);
}

}  // namespace quorrix
