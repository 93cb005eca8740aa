#include "base/util/string_util.h"

#include <QCollator>
#include <QString>
#include <QTextBoundaryFinder>

#include <cstdint>

namespace util {
namespace stringhelp {

namespace {
// One collator of the system's locale for both the comparison and the keys,
// so that the two always agree.
QCollator& Collator() {
  static thread_local QCollator collator{QLocale::system()};
  return collator;
}
QString FromUtf8(std::string const& text) { return QString::fromUtf8(text.data(), static_cast<int>(text.size())); }
}  // namespace

int CompareLocalizedString(std::string const& a, std::string const& b) {
  return Collator().compare(FromUtf8(a), FromUtf8(b));
}

// The collator's own sort keys are not used: in the C locale they don't
// compare equal texts as equal on every Qt 5 build.
LocalizedSortKey::LocalizedSortKey(std::string const& text) : text_(FromUtf8(text)) {}

int LocalizedSortKey::Compare(LocalizedSortKey const& other) const { return Collator().compare(text_, other.text_); }

bool Equals(std::string const& a, std::string const& b, bool ignore_case) {
  if (!ignore_case) return a == b;
  return QString::compare(QString::fromUtf8(a.data(), static_cast<int>(a.size())),
                          QString::fromUtf8(b.data(), static_cast<int>(b.size())), Qt::CaseInsensitive) == 0;
}

bool StartsWith(std::string const& text, std::string const& prefix, bool ignore_case) {
  if (!ignore_case) return text.compare(0, prefix.size(), prefix) == 0;
  return QString::fromUtf8(text.data(), static_cast<int>(text.size()))
      .startsWith(QString::fromUtf8(prefix.data(), static_cast<int>(prefix.size())), Qt::CaseInsensitive);
}

std::wstring StringToWString(std::string const& utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size())).toStdWString();
}

std::string UnicodeToUtf8(std::wstring const& text) { return QString::fromStdWString(text).toStdString(); }

}  // namespace stringhelp
}  // namespace util

namespace {

// Decodes the code point at `i`; returns its length in bytes, or 0 when the
// bytes there are not a well-formed UTF-8 sequence (overlong forms,
// surrogates and values above U+10FFFF included).
size_t DecodeUtf8(std::string const& s, size_t i, uint32_t& cp) {
  const auto byte = [&](size_t k) { return static_cast<unsigned char>(s[k]); };
  const unsigned char lead = byte(i);
  size_t len;
  uint32_t min;
  if (lead < 0x80) {
    cp = lead;
    return 1;
  } else if ((lead & 0xE0) == 0xC0) {
    len = 2;
    cp = lead & 0x1F;
    min = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    len = 3;
    cp = lead & 0x0F;
    min = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    len = 4;
    cp = lead & 0x07;
    min = 0x10000;
  } else {
    return 0;
  }
  if (i + len > s.size()) return 0;
  for (size_t k = 1; k < len; ++k) {
    if ((byte(i + k) & 0xC0) != 0x80) return 0;
    cp = (cp << 6) | (byte(i + k) & 0x3F);
  }
  if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
  return len;
}

bool IsCjkIdeograph(uint32_t cp) {
  return (cp >= 0x4E00 && cp <= 0x9FFF) ||    // unified ideographs
         (cp >= 0x3400 && cp <= 0x4DBF) ||    // extension A
         (cp >= 0xF900 && cp <= 0xFAFF) ||    // compatibility ideographs
         (cp >= 0x20000 && cp <= 0x2FA1F) ||  // extensions B-F and compatibility supplement
         (cp >= 0x30000 && cp <= 0x323AF);    // extensions G-H
}

}  // namespace

size_t GetUtf8Length(std::string const& utf8) {
  size_t count = 0;
  uint32_t cp = 0;
  for (size_t i = 0; i < utf8.size(); ++count) {
    const size_t len = DecodeUtf8(utf8, i, cp);
    i += len ? len : 1;
  }
  return count;
}

size_t GetChineseStringCount(std::string const& utf8) {
  size_t count = 0;
  uint32_t cp = 0;
  for (size_t i = 0; i < utf8.size();) {
    const size_t len = DecodeUtf8(utf8, i, cp);
    if (len && IsCjkIdeograph(cp)) ++count;
    i += len ? len : 1;
  }
  return count;
}

size_t GetStringCharCount(std::string const& utf8) {
  if (utf8.empty()) return 0;
  const QString text = QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()));
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  size_t count = 0;
  while (finder.toNextBoundary() != -1) ++count;
  return count;
}
