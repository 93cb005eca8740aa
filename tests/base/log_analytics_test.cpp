#include <gtest/gtest.h>

#include <QDir>

#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <nlohmann/json.hpp>

#include "base/analytics/analytics.h"
#include "base/log/log.h"
#include "base/util/file_util.h"
#include "support/test_util.h"

namespace {

namespace ua = talvex_common::utils::analytics;

std::string ReadFile(std::string const& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// Restores the quiet logging set up by the test main when a test is done.
class LogTest : public testing::Test {
 protected:
  void TearDown() override {
    base::log::LogOptions quiet;
    quiet.write_file = false;
    quiet.stderr_level = 0;
    base::log::InitLogging(quiet);
    base::log::SetLogLevel(base::log::kLogInfo);
  }
};

}  // namespace

TEST_F(LogTest, LongLinesAreCutExceptAtVerboseLevel) {
  talvex_test::LogCapture capture;
  base::log::SetLogLevel(base::log::kLogVerbose);
  const std::string long_text(3000, 'a');
  TXLOG_INFO << long_text;
  TXLOG_VERBOSE << long_text;
  TXLOG_ERROR << std::string(1024, 'b');
  // Three-byte characters: the cut must not split one.
  std::string wide;
  for (int i = 0; i < 400; ++i) wide += "中";
  TXLOG_WARN << wide;
  base::log::PrintLog(base::log::kLogInfo, "f.cpp", 1, "F", long_text);

  ASSERT_EQ(capture.records().size(), 5u);
  EXPECT_EQ(capture.records()[0].text, std::string(1024, 'a'));
  EXPECT_EQ(capture.records()[1].text, long_text);
  EXPECT_EQ(capture.records()[2].text, std::string(1024, 'b'));
  EXPECT_EQ(capture.records()[3].text, wide.substr(0, 1023));
  EXPECT_EQ(capture.records()[4].text.size(), 1024u) << "PrintLog holds to the same limit";
}

TEST_F(LogTest, LevelGateSkipsTheWholeStatement) {
  talvex_test::LogCapture capture;
  int evaluated = 0;
  auto operand = [&evaluated] { return ++evaluated; };

  base::log::SetLogLevel(base::log::kLogWarning);
  TXLOG_INFO << "<IM> skipped " << operand();
  TXLOG_NOTICE << "<IM> skipped " << operand();
  EXPECT_EQ(evaluated, 0);
  EXPECT_TRUE(capture.records().empty());

  TXLOG_WARN << "<IM> kept " << operand() << ' ' << true;
  TXLOG_ERROR;
  EXPECT_EQ(evaluated, 1);
  ASSERT_EQ(capture.records().size(), 2u);
  auto const& record = capture.records()[0];
  EXPECT_EQ(record.text, "<IM> kept 1 true");
  EXPECT_EQ(record.level, base::log::kLogWarning);
  EXPECT_NE(record.file.find("log_analytics_test.cpp"), std::string::npos);
  EXPECT_EQ(record.function, "TestBody");
}

TEST_F(LogTest, RotatingFileReceivesLinesAndKeepsItsFileCount) {
  const std::string dir = talvex_test::TempRoot() + "/rotating-logs";
  base::log::LogOptions options;
  options.directory = dir;
  options.file_name = "chat.log";
  options.max_file_bytes = 4096;
  options.max_files = 3;
  options.stderr_level = 0;
  base::log::InitLogging(options);
  ASSERT_EQ(base::log::CurrentLogFile(), dir + "/chat.log");

  for (int i = 0; i < 300; ++i) TXLOG_INFO << "<IM> line " << i << ' ' << std::string(60, 'x');
  TXLOG_NOTICE << "[chat file] last line";

  const std::string current = ReadFile(dir + "/chat.log");
  EXPECT_NE(current.find("[chat file] last line"), std::string::npos);
  EXPECT_NE(current.find("log_analytics_test.cpp"), std::string::npos);
  EXPECT_EQ(QDir(QString::fromStdString(dir)).entryList(QDir::Files),
            (QStringList{"chat.1.log", "chat.2.log", "chat.log"}));

  base::log::ShutdownLogging();
  EXPECT_EQ(base::log::CurrentLogFile(), "");
  TXLOG_ERROR << "after shutdown";
  EXPECT_EQ(ReadFile(dir + "/chat.log").find("after shutdown"), std::string::npos);
}

TEST_F(LogTest, DefaultFileIsUnderTheUserStateDirectory) {
  base::log::LogOptions options;
  options.stderr_level = 0;
  base::log::InitLogging(options);
  EXPECT_EQ(base::log::CurrentLogFile(), util::file::UserStateDir() + "/talvex/logs/talvex.log");
  TXLOG_INFO << "into the default file";
  EXPECT_NE(ReadFile(base::log::CurrentLogFile()).find("into the default file"), std::string::npos);
}

TEST_F(LogTest, StderrTakesLinesAtOrBelowItsLevel) {
  base::log::LogOptions options;
  options.write_file = false;
  options.stderr_level = base::log::kLogWarning;
  base::log::InitLogging(options);
  testing::internal::CaptureStderr();
  TXLOG_ERROR << "visible error";
  TXLOG_WARN << "visible warning";
  TXLOG_INFO << "hidden info";
  const std::string err = testing::internal::GetCapturedStderr();
  EXPECT_NE(err.find("visible error"), std::string::npos);
  EXPECT_NE(err.find("visible warning"), std::string::npos);
  EXPECT_EQ(err.find("hidden info"), std::string::npos);
}

class AnalyticsTest : public testing::Test {
 protected:
  void SetUp() override { base::analytics::ClearRecordedEvents(); }
  void TearDown() override {
    base::analytics::SetJsonLinesFile("");
    base::analytics::ClearRecordedEvents();
  }
};

TEST_F(AnalyticsTest, RecordsEveryFormWithItsProperties) {
  using Props = std::map<std::string, std::string>;
  ua::LogEvent("e#meeting#im_notice_click#click");
  ua::LogEventWithProperty("e#chat#send", "type", "text");
  ua::LogEventWith2Properties("e#chat#send", "type", "image", "count", "2");
  ua::LogEventWithProperties("e#chat#menu", {{"item", "copy"}});
  base::analytics::LogEventWithProperties("e#chat#variant",
                                          Variant(Variant::Map{{"id", 17}, {"ok", true}, {"who", "host"}}));

  const auto all = base::analytics::RecordedEvents();
  ASSERT_EQ(all.size(), 5u);
  EXPECT_EQ(all[0].name, "e#meeting#im_notice_click#click");
  EXPECT_TRUE(all[0].properties.empty());
  EXPECT_GT(all[0].timestamp_ms, 0);
  EXPECT_EQ(all[3].properties, (Props{{"item", "copy"}}));
  EXPECT_EQ(all[4].properties, (Props{{"id", "17"}, {"ok", "true"}, {"who", "host"}}));

  const auto sends = base::analytics::RecordedEvents("e#chat#send");
  ASSERT_EQ(sends.size(), 2u);
  EXPECT_EQ(sends[0].properties, (Props{{"type", "text"}}));
  EXPECT_EQ(sends[1].properties, (Props{{"type", "image"}, {"count", "2"}}));
}

TEST_F(AnalyticsTest, AppendsJsonLinesWhileAFileIsSet) {
  const std::string path = talvex_test::TempRoot() + "/analytics/events.jsonl";
  base::analytics::SetJsonLinesFile(path);
  ua::LogEventWithProperty("e#one", "k", "v \"quoted\"");
  ua::LogEvent("e#two");
  base::analytics::SetJsonLinesFile("");
  ua::LogEvent("e#not-in-file");
  // A file set again later is appended to, not truncated.
  base::analytics::SetJsonLinesFile(path);
  ua::LogEvent("e#three");
  base::analytics::SetJsonLinesFile("");

  std::ifstream in(path);
  std::vector<nlohmann::json> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(nlohmann::json::parse(line));
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0]["name"], "e#one");
  EXPECT_EQ(lines[0]["properties"]["k"], "v \"quoted\"");
  EXPECT_EQ(lines[1]["name"], "e#two");
  EXPECT_TRUE(lines[1]["properties"].empty());
  EXPECT_GT(lines[1]["timestamp_ms"].get<int64_t>(), 0);
  EXPECT_EQ(lines[2]["name"], "e#three");
  EXPECT_EQ(base::analytics::RecordedEvents().size(), 4u);
}

TEST_F(AnalyticsTest, ConcurrentEventsAreAllRecorded) {
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t] {
      for (int i = 0; i < 250; ++i) ua::LogEventWithProperty("e#load", "thread", std::to_string(t));
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(base::analytics::RecordedEvents("e#load").size(), 1000u);
}
