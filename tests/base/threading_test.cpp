#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QThread>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/file/file_copyer.h"
#include "base/threading/looper.h"
#include "base/timer/tx_timer.h"
#include "base/util/file_util.h"
#include "support/test_util.h"

using base::threading::LooperThread;
namespace timer = talvex_common::utils::timer;

namespace {

bool OnMainThread() { return QThread::currentThread() == QCoreApplication::instance()->thread(); }

std::string ReadFile(std::string const& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void WriteFile(std::string const& path, std::string const& data) { std::ofstream(path, std::ios::binary) << data; }

}  // namespace

TEST(Loopers, MainLooperRunsTasksInOrderWhenTheEventLoopTurns) {
  auto main = LooperThread::MainLooper();
  EXPECT_TRUE(main->BelongsToCurrentThread());
  EXPECT_EQ(LooperThread::CurrentLooper(), main);

  std::vector<int> order;
  bool on_main = true;
  EXPECT_TRUE(main->PostDelayedTask([&] { order.push_back(3); }, 30));
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(main->PostTask([&, i] {
      order.push_back(i);
      on_main = on_main && OnMainThread();
    }));
  }
  EXPECT_TRUE(order.empty()) << "posting never runs a task synchronously";
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return order.size() == 3; }));
  EXPECT_EQ(order, (std::vector<int>{0, 1, 3}));
  EXPECT_TRUE(on_main);
  EXPECT_FALSE(main->PostTask(nullptr));
}

TEST(Loopers, FileLooperWorksOffTheMainThreadAndRepliesOnMain) {
  auto file = LooperThread::FileLooper();
  EXPECT_EQ(LooperThread::FileLooper(), file);
  EXPECT_FALSE(file->BelongsToCurrentThread());

  std::mutex mutex;
  std::vector<int> order;
  std::atomic<bool> worker_ok{false}, reply_on_main{false}, replied{false};
  auto reply_to = LooperThread::CurrentLooper();
  // Posted first, due last; it sends the reply once everything else has run.
  file->PostDelayedTask(
      [&, reply_to] {
        {
          std::lock_guard<std::mutex> lock(mutex);
          order.push_back(99);
        }
        reply_to->PostTask([&] {
          reply_on_main = OnMainThread();
          replied = true;
        });
      },
      200);
  for (int i = 0; i < 50; ++i) {
    file->PostTask([&, i] {
      std::lock_guard<std::mutex> lock(mutex);
      order.push_back(i);
    });
  }
  file->PostTask([&] {
    worker_ok = !OnMainThread() && LooperThread::FileLooper()->BelongsToCurrentThread() &&
                LooperThread::CurrentLooper() == LooperThread::FileLooper();
  });
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return replied.load(); }));
  EXPECT_TRUE(worker_ok);
  EXPECT_TRUE(reply_on_main);
  std::lock_guard<std::mutex> lock(mutex);
  std::vector<int> expected(50);
  for (int i = 0; i < 50; ++i) expected[i] = i;
  expected.push_back(99);
  EXPECT_EQ(order, expected);
}

TEST(Loopers, ShutdownDrainsQueuedTasksAndAThrowingTaskDoesNotStopTheLooper) {
  auto file = LooperThread::FileLooper();
  std::atomic<int> done{0};
  file->PostTask([] { throw std::runtime_error("broken task"); });
  for (int i = 0; i < 100; ++i) file->PostTask([&done] { ++done; });
  std::atomic<bool> delayed_ran{false};
  file->PostDelayedTask([&delayed_ran] { delayed_ran = true; }, 60000);

  LooperThread::ShutdownFileLooper();
  EXPECT_EQ(done.load(), 100);
  EXPECT_FALSE(delayed_ran.load());
  EXPECT_FALSE(file->PostTask([&done] { ++done; }));

  auto fresh = LooperThread::FileLooper();
  EXPECT_NE(fresh, file);
  std::atomic<bool> ran{false};
  EXPECT_TRUE(fresh->PostTask([&ran] { ran = true; }));
  EXPECT_TRUE(talvex_test::WaitUntil([&] { return ran.load(); }));
}

TEST(Loopers, ALooperReleasedFromItsOwnTaskEndsCleanly) {
  std::atomic<bool> ran{false};
  {
    auto fresh = LooperThread::FileLooper();
    // The task ends up owning the last reference to the looper it runs on.
    fresh->PostTask([keep = fresh, &ran]() mutable {
      LooperThread::ShutdownFileLooper();
      keep.reset();
      ran = true;
    });
  }
  EXPECT_TRUE(talvex_test::WaitUntil([&] { return ran.load(); }));
  talvex_test::SpinFor(20);
}

class FileCopyTest : public testing::Test {
 protected:
  void SetUp() override {
    dir_ = talvex_test::TempRoot() + "/copy-" + testing::UnitTest::GetInstance()->current_test_info()->name();
    ASSERT_TRUE(util::file::EnsureDirExist(dir_));
  }

  // Copies, waits for the reply and checks it came on `reply_to`; returns
  // the reported outcome.
  bool Copy(std::string const& source, std::string const& target,
            std::shared_ptr<base::threading::Looper> reply_to = LooperThread::MainLooper()) {
    std::atomic<bool> replied{false}, result{false}, on_reply_looper{false};
    base::file::FileCopyer::FileCopy(
        source, target,
        [&](bool ok) {
          on_reply_looper = reply_to->BelongsToCurrentThread();
          result = ok;
          replied = true;
        },
        LooperThread::FileLooper(), reply_to);
    EXPECT_TRUE(talvex_test::WaitUntil([&] { return replied.load(); }));
    EXPECT_TRUE(on_reply_looper);
    return result;
  }

  std::string dir_;
};

TEST_F(FileCopyTest, CopiesARealFileIntoANewDirectory) {
  std::string data(3 * 1024 * 1024 + 17, '\0');
  std::mt19937 random(7);
  for (auto& c : data) c = static_cast<char>(random());
  const std::string source = dir_ + "/photo.bin";
  WriteFile(source, data);

  const std::string target = dir_ + "/received/nested/photo copy.bin";
  ASSERT_TRUE(Copy(source, target));
  EXPECT_EQ(ReadFile(target), data);
  EXPECT_EQ(ReadFile(source), data);

  // Replacing an existing file leaves no temporary beside it.
  WriteFile(source, "second version");
  ASSERT_TRUE(Copy(source, target));
  EXPECT_EQ(ReadFile(target), "second version");
  std::vector<std::string> names;
  for (auto const& entry : std::filesystem::directory_iterator(dir_ + "/received/nested")) {
    names.push_back(entry.path().filename().string());
  }
  EXPECT_EQ(names, std::vector<std::string>{"photo copy.bin"});
}

TEST_F(FileCopyTest, ReportsFailureWithoutTouchingTheTarget) {
  const std::string target = dir_ + "/out.txt";
  EXPECT_FALSE(Copy(dir_ + "/missing.txt", target));
  EXPECT_FALSE(util::file::IsFileExist(target));
  EXPECT_FALSE(Copy(dir_, target));  // a directory is not a file to copy

  WriteFile(target, "kept");
  WriteFile(dir_ + "/src.txt", "new");
  util::file::EnsureDirExist(dir_ + "/blocked");
  EXPECT_FALSE(Copy(dir_ + "/src.txt", dir_ + "/blocked"));  // the target is a directory
  EXPECT_TRUE(util::file::IsDirectory(dir_ + "/blocked"));
  EXPECT_EQ(ReadFile(target), "kept");
}

TEST_F(FileCopyTest, RepliesOnTheLooperItIsGiven) {
  WriteFile(dir_ + "/a.txt", "a");
  EXPECT_TRUE(Copy(dir_ + "/a.txt", dir_ + "/b.txt", LooperThread::FileLooper()));
  EXPECT_EQ(ReadFile(dir_ + "/b.txt"), "a");
}

TEST(TXTimer, SingleShotFiresOnceOnTheMainThreadAndCanBeStartedAgain) {
  int fired = 0;
  bool on_main = false;
  auto t = timer::CreateTimer([&] {
    ++fired;
    on_main = OnMainThread();
  });
  EXPECT_FALSE(t->IsActive());
  t->Start(5, 0);
  EXPECT_TRUE(t->IsActive());
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return fired == 1; }));
  talvex_test::SpinFor(20);
  EXPECT_EQ(fired, 1);
  EXPECT_TRUE(on_main);
  EXPECT_FALSE(t->IsActive());

  t->Start(5, 0);
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return fired == 2; }));
}

TEST(TXTimer, RepeatsUntilStopped) {
  int fired = 0;
  auto t = timer::CreateTimer([&] { ++fired; });
  t->Start(2, 1);
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return fired >= 3; }));
  t->Stop();
  EXPECT_FALSE(t->IsActive());
  const int at_stop = fired;
  talvex_test::SpinFor(20);
  EXPECT_EQ(fired, at_stop);
}

TEST(TXTimer, NeverFiresAfterStopOrDestruction) {
  int fired = 0;
  auto stopped = timer::CreateTimer([&] { ++fired; });
  stopped->Start(0, 1);
  stopped->Stop();
  auto destroyed = timer::CreateTimer([&] { ++fired; });
  destroyed->Start(0, 0);
  destroyed.reset();
  // Stopped from inside its own callback, and deleted from inside it.
  std::unique_ptr<timer::TXTimer> self_stopping, self_deleting;
  self_stopping = timer::CreateTimer([&] {
    ++fired;
    self_stopping->Stop();
  });
  self_stopping->Start(1, 1);
  self_deleting = timer::CreateTimer([&] {
    ++fired;
    self_deleting.reset();
  });
  self_deleting->Start(1, 1);

  ASSERT_TRUE(talvex_test::WaitUntil([&] { return fired == 2; }));
  talvex_test::SpinFor(20);
  EXPECT_EQ(fired, 2);
  EXPECT_EQ(self_deleting, nullptr);
  EXPECT_FALSE(self_stopping->IsActive());
}

TEST(ManualTimerClock, FiresDueTimersInTimeOrderWithoutWaiting) {
  std::vector<std::string> log;
  std::unique_ptr<timer::TXTimer> follow_up, a, b, repeating;
  auto clock = std::make_unique<timer::ManualTimerClock>();
  auto at = [&](char const* name) { return std::string(name) + "@" + std::to_string(clock->now_ms()); };
  a = timer::CreateTimer([&] {
    log.push_back(at("a"));
    // Started by a callback and due within the same move: fires in it.
    follow_up->Start(50, 0);
  });
  b = timer::CreateTimer([&] { log.push_back(at("b")); });
  repeating = timer::CreateTimer([&] {
    log.push_back(at("r"));
    if (clock->now_ms() >= 300) repeating.reset();
  });
  follow_up = timer::CreateTimer([&] { log.push_back(at("f")); });
  a->Start(200, 0);
  b->Start(150, 0);
  repeating->Start(100, 1);
  EXPECT_EQ(clock->active_count(), 3u);

  clock->Advance(99);
  EXPECT_TRUE(log.empty());
  clock->Advance(301);
  // Equal times fire in the order the timers were started.
  EXPECT_EQ(log, (std::vector<std::string>{"r@100", "b@150", "a@200", "r@200", "f@250", "r@300"}));
  EXPECT_EQ(repeating, nullptr) << "deleted from its own callback";
  EXPECT_EQ(clock->now_ms(), 400);
  EXPECT_EQ(clock->active_count(), 0u);

  b->Start(10, 0);
  b->Stop();
  EXPECT_FALSE(clock->FireNext()) << "a stopped timer never fires";
  b->Start(10, 0);
  EXPECT_TRUE(clock->FireNext());
  EXPECT_EQ(log.back(), "b@410");

  // Timers made on a clock outlive it without firing; new ones use the event loop.
  clock.reset();
  b->Start(0, 0);
  EXPECT_FALSE(b->IsActive());
  int fired = 0;
  auto real = timer::CreateTimer([&] { ++fired; });
  real->Start(0, 0);
  ASSERT_TRUE(talvex_test::WaitUntil([&] { return fired == 1; }));
}
