#include "support/test_util.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>
#include <memory>

namespace talvex_test {
namespace {
std::unique_ptr<QTemporaryDir>& Root() {
  static std::unique_ptr<QTemporaryDir> dir;
  return dir;
}
}  // namespace

void IsolateUserDirectories() {
  auto& root = Root();
  if (!root) {
    root = std::make_unique<QTemporaryDir>(QDir::tempPath() + "/talvex-test-XXXXXX");
  }
  const QString base = root->path();
  for (const char* sub : {"home", "cache", "config", "state", "data"}) QDir(base).mkpath(sub);
  qputenv("HOME", (base + "/home").toUtf8());
  qputenv("XDG_CACHE_HOME", (base + "/cache").toUtf8());
  qputenv("XDG_CONFIG_HOME", (base + "/config").toUtf8());
  qputenv("XDG_STATE_HOME", (base + "/state").toUtf8());
  qputenv("XDG_DATA_HOME", (base + "/data").toUtf8());
}

std::string TempRoot() {
  IsolateUserDirectories();
  return Root()->path().toStdString();
}

bool WaitUntil(std::function<bool()> const& done, int timeout_ms) {
  QElapsedTimer timer;
  timer.start();
  while (!done()) {
    if (timer.elapsed() > timeout_ms) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    QThread::msleep(1);
  }
  return true;
}

void SpinFor(int ms) {
  QElapsedTimer timer;
  timer.start();
  while (timer.elapsed() < ms) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    QThread::msleep(1);
  }
}

LogCapture::LogCapture() {
  base::log::SetLogObserver([this](base::log::LogRecord const& r) { records_.push_back(r); });
}

LogCapture::~LogCapture() { base::log::SetLogObserver(nullptr); }

bool LogCapture::Contains(std::string const& text, int level) const {
  for (auto const& r : records_) {
    if ((level == 0 || r.level == level) && r.text.find(text) != std::string::npos) return true;
  }
  return false;
}

size_t LogCapture::Count(std::string const& text) const {
  size_t n = 0;
  for (auto const& r : records_) n += r.text.find(text) != std::string::npos;
  return n;
}

}  // namespace talvex_test
