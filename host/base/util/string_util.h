#pragma once

#include <QString>
#include <cstddef>
#include <string>

namespace util {
namespace stringhelp {

// Locale-aware ordering: <0, 0, >0.
int CompareLocalizedString(std::string const& a, std::string const& b);
// A text made ready for ordering once: comparing two keys orders them as
// CompareLocalizedString would, without decoding the UTF-8 again on every
// comparison. For sorting many names.
class LocalizedSortKey {
 public:
  explicit LocalizedSortKey(std::string const& text);
  int Compare(LocalizedSortKey const& other) const;

 private:
  QString text_;
};
bool Equals(std::string const& a, std::string const& b, bool ignore_case = false);
bool StartsWith(std::string const& text, std::string const& prefix, bool ignore_case = false);
std::wstring StringToWString(std::string const& utf8);
std::string UnicodeToUtf8(std::wstring const& text);

}  // namespace stringhelp
}  // namespace util

// Characters (code points), not bytes; invalid bytes count one each.
size_t GetUtf8Length(std::string const& utf8);
// Code points in the CJK ideograph blocks.
size_t GetChineseStringCount(std::string const& utf8);
// User-perceived characters (grapheme clusters).
size_t GetStringCharCount(std::string const& utf8);
