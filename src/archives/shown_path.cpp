#include "archives/shown_path.h"

#include <QDir>
#include <string>

#include "shell/plain_text.h"

namespace quorrix {
namespace {

constexpr char16_t kSignOfNul = 0x2400;  // those of the other control characters follow
constexpr char16_t kFirstPrintable = 0x20;

// A path consists of wide characters on Windows, some of which have no UTF-8 form, and of
// arbitrary bytes on Linux. Each system uses one of the two overloads.
[[maybe_unused]] QString textOf(const std::wstring& path) { return QString::fromStdWString(path); }
[[maybe_unused]] QString textOf(const std::string& path) {
  return fromUtf8(path).value_or(QString::fromLatin1(path));
}

// Appends a name to a path, in the path's own kind of characters.
[[maybe_unused]] void append(const QString& name, std::wstring& path) {
  path += name.toStdWString();
}
[[maybe_unused]] void append(const QString& name, std::string& path) { path += name.toStdString(); }

}  // namespace

QString textOfPath(const Path& path) { return textOf(path.native()); }

QString rowTextOfPath(const Path& path) {
  QString text = textOfPath(path);
  for (QChar& character : text) {
    if (character < kFirstPrintable) character = QChar(kSignOfNul + character.unicode());
  }
  return text;
}

std::string messageTextOfPath(const Path& path) { return textOfPath(path).toStdString(); }

// Joined as text, because Path's own += can lose a component of a name with separators.
Path joinedPath(const Path& folder, const QString& name) {
  Path::string_type joined = (folder / "").native();
  append(name, joined);
  return joined;
}

Path typedPath(const Path& folder, const QString& text) {
  QString trimmed = text.trimmed();
  if (trimmed == QLatin1String("~") || trimmed.startsWith(QLatin1String("~/"))) {
    trimmed.replace(0, 1, QDir::homePath());
  }
  Path::string_type typed;
  append(trimmed, typed);
  return (folder / Path(typed)).lexically_normal();
}

}  // namespace quorrix
