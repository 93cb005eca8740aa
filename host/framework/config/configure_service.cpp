#include "framework/config/configure_service.h"

#include <QFile>

#include "base/log/log.h"

namespace framework {

bool ConfigureService::LoadFile(std::string const& path) {
  file_ = path;
  values_ = Variant(base::variant::kVariantTypeMap);
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly)) {
    TXLOG_NOTICE << "configuration file not found, defaults in use: " << path;
    return false;
  }
  const QByteArray bytes = file.readAll();
  Variant parsed;
  if (!parsed.FromJsonStr(bytes.constData(), bytes.size()) || !parsed.IsMap()) {
    TXLOG_ERROR << "configuration file is not a JSON object, defaults in use: " << path;
    return false;
  }
  values_ = std::move(parsed);
  return true;
}

void ConfigureService::SetDefaults(Variant defaults) {
  defaults_ = defaults.IsMap() ? std::move(defaults) : Variant(base::variant::kVariantTypeMap);
}

Variant ConfigureService::Query(std::string const& section, std::string const& key) const {
  Variant const& value = values_.Get(section).Get(key);
  if (!value.IsNull()) return value;
  return defaults_.Get(section).Get(key);
}

void ConfigureService::Set(std::string const& section, std::string const& key, Variant value) {
  values_[section][key] = std::move(value);
}

}  // namespace framework

namespace talvexsdk {
namespace utils {
namespace service {
framework::ConfigureService* GetConfigureService() {
  static framework::ConfigureService service;
  return &service;
}
}  // namespace service
}  // namespace utils
}  // namespace talvexsdk

namespace talvex_common {
namespace utils {
Variant QueryConfigureService(std::string const& section, std::string const& key, Variant const& def) {
  Variant value = talvexsdk::utils::service::GetConfigureService()->Query(section, key);
  if (value.IsNull()) return def;
  // A default of another kind says what the caller can use; numbers mix.
  if (!def.IsNull() && value.type() != def.type() && !(value.IsNumber() && def.IsNumber())) return def;
  return value;
}
}  // namespace utils
}  // namespace talvex_common
