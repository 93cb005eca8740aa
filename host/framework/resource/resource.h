#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace framework {

// Localised texts by 32-bit id, read from the client's string table: a JSON
// object whose keys are ids ("0x..." or decimal) or names (the id is
// framework::NameId of the name), shipped as a Qt resource.
class Resource {
 public:
  static Resource* GetInstance();
  // "" (and one warning per id) for an unknown id.
  std::string GetString(uint32_t id);
  bool HasString(uint32_t id);
  // Loads a table from a file or ":/" resource path; entries replace older ones.
  bool LoadTable(std::string const& path);
  void SetString(uint32_t id, std::string const& text);
  size_t size();

 private:
  Resource();
  void EnsureLoaded();
  bool ReadTable(std::string const& path);
  std::mutex mutex_;
  std::once_flag loaded_;
  std::map<uint32_t, std::string> texts_;
};

class StringProvider {
 public:
  static StringProvider* GetInstance();
  std::string GetString(uint32_t id) { return Resource::GetInstance()->GetString(id); }
};

// Fills named placeholders, written "{name}" in the text.
class StringFormatter {
 public:
  explicit StringFormatter(std::string text) : text_(std::move(text)) {}
  StringFormatter& Arg(std::string const& name, std::string const& value);
  StringFormatter& Arg(std::string const& name, int64_t value) { return Arg(name, std::to_string(value)); }
  StringFormatter& Arg(std::string const& name, char const* value) { return Arg(name, std::string(value ? value : "")); }
  std::string const& Str() const { return text_; }

 private:
  std::string text_;
};

}  // namespace framework

namespace talvex_common {
namespace utils {
std::string GetLocalizedString(uint32_t id);
framework::StringFormatter FormatString(uint32_t id);
}  // namespace utils
}  // namespace talvex_common
