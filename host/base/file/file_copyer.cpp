#include "base/file/file_copyer.h"

#include <atomic>
#include <filesystem>
#include <system_error>

#include <unistd.h>

#include "base/log/log.h"

namespace base {
namespace file {

namespace {

namespace fs = std::filesystem;

// A name beside the target that no other copy in this process (or another
// process) picks at the same time.
fs::path TemporaryPathFor(fs::path const& target) {
  static std::atomic<unsigned> counter{0};
  fs::path temp = target;
  temp += ".part-" + std::to_string(::getpid()) + "-" + std::to_string(counter.fetch_add(1));
  return temp;
}

bool CopyThroughTemporary(std::string const& source, std::string const& target) {
  std::error_code ec;
  const fs::path from(source);
  const fs::path to(target);
  if (source.empty() || target.empty() || !fs::is_regular_file(from, ec)) {
    TXLOG_WARN << "[file copy] no regular file at " << source;
    return false;
  }
  if (to.has_parent_path()) {
    fs::create_directories(to.parent_path(), ec);
    if (ec) {
      TXLOG_WARN << "[file copy] cannot create " << to.parent_path().string() << ": " << ec.message();
      return false;
    }
  }
  const fs::path temp = TemporaryPathFor(to);
  if (!fs::copy_file(from, temp, fs::copy_options::overwrite_existing, ec) || ec) {
    TXLOG_WARN << "[file copy] " << source << " -> " << temp.string() << " failed: " << ec.message();
    fs::remove(temp, ec);
    return false;
  }
  // rename() replaces the target in one step, so a reader sees the old file or the whole new one.
  fs::rename(temp, to, ec);
  if (ec) {
    TXLOG_WARN << "[file copy] cannot move into " << target << ": " << ec.message();
    std::error_code ignored;
    fs::remove(temp, ignored);
    return false;
  }
  return true;
}

}  // namespace

void FileCopyer::FileCopy(std::string const& source, std::string const& target, std::function<void(bool)> done,
                          std::shared_ptr<threading::Looper> work_looper,
                          std::shared_ptr<threading::Looper> reply_looper) {
  if (!work_looper) work_looper = threading::LooperThread::FileLooper();
  if (!reply_looper) reply_looper = threading::LooperThread::CurrentLooper();

  auto reply = [done = std::move(done), reply_looper](bool ok) {
    if (!done) return;
    if (!reply_looper->PostTask([done, ok] { done(ok); })) {
      TXLOG_WARN << "[file copy] reply looper " << reply_looper->name() << " has stopped; result dropped";
    }
  };
  const bool posted = work_looper->PostTask([source, target, reply] { reply(CopyThroughTemporary(source, target)); });
  if (!posted) {
    TXLOG_WARN << "[file copy] work looper " << work_looper->name() << " has stopped; " << source << " not copied";
    reply(false);
  }
}

}  // namespace file
}  // namespace base
