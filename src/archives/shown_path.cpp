#include "archives/shown_path.h"

#include "shell/plain_text.h"

namespace quorrix {
namespace {

constexpr char16_t kSignOfNul = 0x2400;  // those of the other control characters follow
constexpr char16_t kFirstPrintable = 0x20;

}  // namespace

QString textOfPath(const Path& path) {
  const std::u8string bytes = path.u8string();  // on Linux whatever they are
  return fromPlatformText(std::string(bytes.begin(), bytes.end()));
}

QString rowTextOfPath(const Path& path) {
  QString text = textOfPath(path);
  for (QChar& character : text) {
    if (character < kFirstPrintable) character = QChar(kSignOfNul + character.unicode());
  }
  return text;
}

std::string messageTextOfPath(const Path& path) { return fromQString(textOfPath(path)); }

// Joined as text: a path's own += can lose a component of a name with separators.
Path joinedPath(const Path& folder, const QString& name) {
  const QByteArray bytes = name.toUtf8();
  Path::string_type joined = folder.native();
  if (!joined.ends_with(Path::preferred_separator)) joined += Path::preferred_separator;
  return joined + Path(std::u8string(bytes.begin(), bytes.end())).native();
}

}  // namespace quorrix
