// Points the user's directories (HOME and the XDG ones) at sub-folders of
// `root`, made if missing, so that a test, fuzz or benchmark process never
// reads or writes the real user's settings, caches or chat files.
#pragma once

#include <QDir>
#include <QString>

namespace devkit {

inline void UseScratchHome(QString const& root) {
  const struct {
    char const* variable;
    char const* folder;
  } kDirectories[] = {{"HOME", "home"},
                      {"XDG_CACHE_HOME", "cache"},
                      {"XDG_CONFIG_HOME", "config"},
                      {"XDG_STATE_HOME", "state"},
                      {"XDG_DATA_HOME", "data"}};
  for (auto const& dir : kDirectories) {
    QDir(root).mkpath(dir.folder);
    qputenv(dir.variable, (root + "/" + dir.folder).toUtf8());
  }
}

}  // namespace devkit
