#include "framework/resource/resource.h"

#include <QFile>
#include <set>

#include "base/json/json_value.h"
#include "base/log/log.h"
#include "base/variant/variant.h"
#include "framework/viewmodel/view_model.h"

#include <cctype>

namespace framework {

namespace {
constexpr char kDefaultTable[] = ":/talvex/strings/en.json";

// Ids are written "0x1a2b3c", in decimal, or as a name whose hash is the id.
bool ParseId(std::string const& text, uint32_t& id) {
  if (text.empty()) return false;
  if (!std::isdigit(static_cast<unsigned char>(text[0]))) {
    id = NameId(text.c_str());
    return true;
  }
  try {
    size_t used = 0;
    const unsigned long value = std::stoul(text, &used, 0);
    if (used != text.size() || value > 0xffffffffUL) return false;
    id = static_cast<uint32_t>(value);
    return true;
  } catch (...) {
    return false;
  }
}
}  // namespace

Resource::Resource() = default;

Resource* Resource::GetInstance() {
  static Resource resource;
  return &resource;
}

void Resource::EnsureLoaded() {
  std::call_once(loaded_, [this] { ReadTable(kDefaultTable); });
}

bool Resource::LoadTable(std::string const& path) {
  // The built-in table comes first, so that a client's table overrides it
  // even when loaded before the first lookup.
  EnsureLoaded();
  return ReadTable(path);
}

bool Resource::ReadTable(std::string const& path) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly)) {
    TXLOG_WARN << "string table not found: " << path;
    return false;
  }
  const QByteArray bytes = file.readAll();
  Variant table;
  if (!table.FromJsonStr(bytes.constData(), bytes.size()) || !table.IsMap()) {
    TXLOG_ERROR << "string table is not a JSON object: " << path;
    return false;
  }
  std::lock_guard<std::mutex> lock(mutex_);
  for (auto const& [key, value] : table.AsMap()) {
    uint32_t id = 0;
    if (!ParseId(key, id) || !value.IsString()) {
      TXLOG_WARN << "string table entry skipped: " << key;
      continue;
    }
    texts_[id] = value.AsStr();
  }
  return true;
}

std::string Resource::GetString(uint32_t id) {
  EnsureLoaded();
  std::lock_guard<std::mutex> lock(mutex_);
  auto it = texts_.find(id);
  if (it != texts_.end()) return it->second;
  static std::set<uint32_t> reported;
  if (reported.insert(id).second) TXLOG_WARN << "no text for string id 0x" << std::hex << id;
  return {};
}

bool Resource::HasString(uint32_t id) {
  EnsureLoaded();
  std::lock_guard<std::mutex> lock(mutex_);
  return texts_.count(id) > 0;
}

void Resource::SetString(uint32_t id, std::string const& text) {
  EnsureLoaded();
  std::lock_guard<std::mutex> lock(mutex_);
  texts_[id] = text;
}

size_t Resource::size() {
  EnsureLoaded();
  std::lock_guard<std::mutex> lock(mutex_);
  return texts_.size();
}

StringProvider* StringProvider::GetInstance() {
  static StringProvider provider;
  return &provider;
}

StringFormatter& StringFormatter::Arg(std::string const& name, std::string const& value) {
  const std::string placeholder = "{" + name + "}";
  size_t pos = 0;
  while ((pos = text_.find(placeholder, pos)) != std::string::npos) {
    text_.replace(pos, placeholder.size(), value);
    pos += value.size();
  }
  return *this;
}

}  // namespace framework

namespace talvex_common {
namespace utils {
std::string GetLocalizedString(uint32_t id) { return framework::Resource::GetInstance()->GetString(id); }
framework::StringFormatter FormatString(uint32_t id) { return framework::StringFormatter(GetLocalizedString(id)); }
}  // namespace utils
}  // namespace talvex_common
