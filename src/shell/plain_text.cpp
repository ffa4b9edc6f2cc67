#include "shell/plain_text.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QStringList>

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
  return QString::fromStdU16String(codePage.toUtf16(text));
}

std::string fromQString(const CodePage& codePage, const QString& text) {
  std::string stored;
  for (qsizetype begin = 0, end = 0; begin < text.size(); begin = end) {
    end = begin + (text[begin].isHighSurrogate() ? 2 : 1);
    while (end < text.size() && text[end].isMark()) ++end;
    const QString letter = text.mid(begin, end - begin);
    const auto exact = codePage.exactFromUtf8(letter.toStdString());
    stored +=
        exact ? *exact
              : codePage.fromUtf8(letter.normalized(QString::NormalizationForm_C).toStdString());
  }
  return stored;
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
