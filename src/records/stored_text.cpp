#include "records/stored_text.h"

#include <algorithm>

#include "shell/plain_text.h"

namespace quorrix {
namespace {

bool breaksLine(QChar character) {
  return character == QChar::ParagraphSeparator || character == QChar::LineSeparator ||
         character == QLatin1Char('\n');
}

}  // namespace

std::string storedText(QString text) {
  for (const QChar lineBreak : {QChar(QChar::ParagraphSeparator), QChar(QChar::LineSeparator)}) {
    text.replace(lineBreak, QLatin1Char('\n'));
  }
  return fromQString(text.replace(QLatin1Char('\n'), QStringLiteral("\r\n")));
}

qsizetype startOfExcess(const QString& text, qsizetype end, std::size_t excess) {
  while (excess > 0 && end > 0) {
    const QChar character = text[--end];
    if (character.isLowSurrogate() && end > 0 && text[end - 1].isHighSurrogate()) --end;
    excess -= std::min<std::size_t>(excess, breaksLine(character) ? 2 : 1);
  }
  return end;
}

}  // namespace quorrix
