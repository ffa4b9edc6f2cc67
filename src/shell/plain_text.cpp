#include "shell/plain_text.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QStringList>
#include <algorithm>

namespace quorrix {

namespace {

// On Windows the system's character set may have more than one byte for a character.
QString fromSystemText([[maybe_unused]] const CodePage& codePage, std::string_view text) {
#ifdef _WIN32
  return QString::fromLocal8Bit(text.data(), static_cast<qsizetype>(text.size()));
#else
  return toQString(codePage, text);
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

QString toQString(const CodePage& codePage, std::string_view text) {
  QString result(static_cast<qsizetype>(text.size()), Qt::Uninitialized);
  std::transform(text.begin(), text.end(), result.begin(),
                 [&codePage](char byte) { return QChar(codePage.character(byte)); });
  return result;
}

std::string fromQString(const CodePage& codePage, const QString& text) {
  const auto exact = codePage.exactFromUtf8(text.toStdString());
  if (exact) return *exact;
  return codePage.fromUtf8(text.normalized(QString::NormalizationForm_C).toStdString());
}

std::optional<QString> fromUtf8(std::string_view text) {
  // Stateless, because otherwise a sequence cut off by the end of the text waits for more
  // input and is not an error.
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  QString decoded =
      decoder.decode(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
  return decoder.hasError() ? std::nullopt : std::optional<QString>(std::move(decoded));
}

QString fromPlatformText(const CodePage& codePage, std::string_view text) {
  const std::optional<QString> decoded = fromUtf8(text);
  return decoded ? *decoded : fromSystemText(codePage, text);
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
