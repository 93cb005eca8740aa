#include "framework/settings/settings_model.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include "base/log/log.h"
#include "base/util/file_util.h"

namespace framework {

SettingsModel::SettingsModel(std::string path) : ModelImpl(kModelId), path_(std::move(path)) {
  if (path_.empty()) path_ = util::file::MakeFilePath(util::file::UserConfigDir(), "talvex/settings.json");
  Reload();
}

void SettingsModel::Reload() {
  values_ = Variant(base::variant::kVariantTypeMap);
  QFile file(QString::fromStdString(path_));
  if (!file.open(QIODevice::ReadOnly)) return;
  const QByteArray bytes = file.readAll();
  Variant parsed;
  if (!parsed.FromJsonStr(bytes.constData(), bytes.size()) || !parsed.IsMap()) {
    TXLOG_ERROR << "settings file is damaged, starting empty: " << path_;
    return;
  }
  values_ = std::move(parsed);
}

bool SettingsModel::Save() const {
  QDir().mkpath(QFileInfo(QString::fromStdString(path_)).absolutePath());
  QSaveFile file(QString::fromStdString(path_));
  if (!file.open(QIODevice::WriteOnly)) return false;
  const std::string text = values_.ToJson();
  file.write(text.data(), static_cast<qint64>(text.size()));
  return file.commit();
}

bool SettingsModel::Invoke(uint32_t method, Variant const* params, Variant* result) {
  switch (method) {
    case kMethodAll:
      if (result) *result = values_;
      return true;
    case kMethodRead: {
      if (!params || !params->IsMap() || !params->Get("key").IsString()) {
        TXLOG_ERROR << "settings read without a key";
        if (result && params && params->IsMap()) *result = params->Get("def_value");
        return true;
      }
      Variant const& stored = values_.Get(params->Get("key").AsStr());
      if (result) *result = stored.IsNull() ? params->Get("def_value") : stored;
      return true;
    }
    case kMethodWrite: {
      if (!params || !params->IsMap() || !params->Get("key").IsString()) {
        TXLOG_ERROR << "settings write without a key";
        return false;
      }
      const std::string key = params->Get("key").AsStr();
      Variant const& value = params->Get("value");
      if (values_.Get(key) == value && values_.Has(key)) return true;
      values_.Set(key, value);
      if (!Save()) TXLOG_ERROR << "settings not saved: " << path_;
      Variant changed(base::variant::kVariantTypeMap);
      changed.Set("key", key);
      changed.Set("value", value);
      FireEvent(kEventChanged, &changed);
      return true;
    }
    default:
      return false;
  }
}

}  // namespace framework
