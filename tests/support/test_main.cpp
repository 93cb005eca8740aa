#include <QApplication>
#include <cstdlib>

#include <gtest/gtest.h>

#include "base/log/log.h"
#include "support/test_util.h"

int main(int argc, char** argv) {
  // Widgets need a platform; tests never open a real window.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argc, argv);
  QApplication app(argc, argv);
  talvex_test::IsolateUserDirectories();
  base::log::LogOptions options;
  options.write_file = false;
  options.stderr_level = 0;
  base::log::InitLogging(options);
  base::log::SetLogLevel(base::log::kLogInfo);
  const int rc = RUN_ALL_TESTS();
  base::log::ShutdownLogging();
  return rc;
}
