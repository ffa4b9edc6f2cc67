#include "records/purchase_date_text.h"

#include <QDate>
#include <QRegularExpression>
#include <QStringBuilder>
#include <QTime>

#include "datafiles/access_stamp.h"
#include "datafiles/record_layouts.h"
#include "shell/plain_text.h"

namespace quorrix {
namespace {

constexpr std::size_t kRoom = purchase_record::kDateStamp.width - kFieldMargin;

// Letters in quotation marks are not part of the pattern's language. Some locales put the
// zone in brackets, or a comma before it.
QString withoutTimeZone(const QString& pattern) {
  static const QRegularExpression kZone(QStringLiteral("('[^']*')|,?\\s*(?:\\(t+\\)|\\[t+\\]|t+)"));
  QString result = pattern;
  return result.replace(kZone, QStringLiteral("\\1")).trimmed();
}

// Qt does not know the parts of the day, such as "in the afternoon", and writes the letter
// of the pattern instead.
bool hasPartOfDay(QString pattern) {
  static const QRegularExpression kQuoted(QStringLiteral("'[^']*'"));
  return pattern.remove(kQuoted).contains(QLatin1Char('B'), Qt::CaseInsensitive);
}

// Some locales put narrow blanks between the parts, which no code page has.
QString withPlainBlanks(QString text) {
  static const QRegularExpression kNarrowBlank(QStringLiteral("[\\x{2009}\\x{202F}]"));
  return text.replace(kNarrowBlank, QStringLiteral(" "));
}

}  // namespace

QString purchaseDateText(const LocalDateTime& moment, const QLocale& locale,
                         const CodePage& codePage) {
  const QDate date(moment.year, moment.month, moment.day);
  const QTime time(moment.hour, moment.minute, moment.second);
  const QString pattern = withoutTimeZone(locale.timeFormat(QLocale::LongFormat));
  QString text = withPlainBlanks(locale.toString(date, QLocale::ShortFormat) % QLatin1Char(' ') %
                                 locale.toString(time, pattern));
  const auto stored = codePage.exactFromUtf8(text.toStdString());
  if (stored && stored->size() <= kRoom && !hasPartOfDay(pattern)) return text;
  return toQString(codePage, accessStampText(moment));
}

}  // namespace quorrix
