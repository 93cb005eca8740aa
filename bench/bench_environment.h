// What a benchmark of the chat's parts runs in: the user's directories in a
// temporary place, offscreen unless a platform is set, and logging to
// nowhere but the errors (or warnings) it asks for.
#pragma once

#include <QByteArray>
#include <QTemporaryDir>

#include "base/log/log.h"

class BenchEnvironment {
 public:
  explicit BenchEnvironment(int log_level = base::log::kLogWarning) {
    qputenv("XDG_CONFIG_HOME", home_.path().toUtf8());
    qputenv("XDG_CACHE_HOME", home_.path().toUtf8());
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    log_level_ = log_level;
  }
  // After the application exists.
  void InitLogging() const {
    base::log::LogOptions options;
    options.write_file = false;
    options.stderr_level = 0;
    base::log::InitLogging(options);
    base::log::SetLogLevel(log_level_);
  }

 private:
  QTemporaryDir home_;
  int log_level_;
};
