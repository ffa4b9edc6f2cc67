#include "shell/plain_text.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QStringList>

#include "platform/text_encoding.h"

namespace quorrix {

namespace {

// Decodes the system's character set on Windows, and the logic's single-byte text
// elsewhere.
QString fromSystemText(std::string_view text) {
#ifdef _WIN32
  return QString::fromLocal8Bit(text.data(), static_cast<qsizetype>(text.size()));
#else
  return toQString(text);
#endif
}

constexpr qsizetype kToolTipColumns = 80;

// Breaks a line after a blank or "/" in its second half, or otherwise where it is full.
QStringList broken(QString line) {
  static const QRegularExpression kBreak(QStringLiteral("[ /]"));
  QStringList lines;
  while (line.size() > kToolTipColumns) {
    qsizetype end = line.lastIndexOf(kBreak, kToolTipColumns - 1) + 1;
    if (end <= kToolTipColumns / 2) end = kToolTipColumns;
    if (line[end - 1].isHighSurrogate()) --end;
    lines.append(line.left(end));
    line.remove(0, end);
  }
  lines.append(line);
  return lines;
}

}  // namespace

QString toQString(std::string_view text) {
  const std::string utf8 = utf8FromWindows1252(text);
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

std::string fromQString(const QString& text) {
  return windows1252FromUtf8(text.toUtf8().toStdString());
}

QString fromPlatformText(std::string_view text) {
  // Stateless, because otherwise a sequence cut off by the end of the text waits for more
  // input and is not an error.
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  const QString decoded =
      decoder.decode(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
  return decoder.hasError() ? fromSystemText(text) : decoded;
}

QString asToolTip(const QString& text) {
  QStringList lines;
  for (const QString& line : text.split(QLatin1Char('\n'))) lines += broken(line);
  return QStringLiteral("<p style='white-space:pre'>%1</p>")
      .arg(lines.join(QLatin1Char('\n')).toHtmlEscaped());
}

QString asWindowTitle(const QString& text) {
  QString title = text;
  return title.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
}

}  // namespace quorrix
