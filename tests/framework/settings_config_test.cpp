#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <cctype>
#include <memory>
#include <string>
#include <vector>

#include "framework/config/configure_model.h"
#include "framework/config/configure_service.h"
#include "framework/resource/resource.h"
#include "framework/settings/settings_model.h"
#include "framework/viewmodel/view_model.h"
#include "support/test_util.h"

namespace {

using framework::Resource;

class FilesTest : public testing::Test {
 protected:
  std::string MakeFile(std::string const& name, std::string const& text) {
    QFile file(QString::fromStdString(Path(name)));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.data(), static_cast<qint64>(text.size()));
    return Path(name);
  }
  std::string Path(std::string const& name) const { return dir_.filePath(QString::fromStdString(name)).toStdString(); }
  std::string ReadFile(std::string const& path) {
    QFile file(QString::fromStdString(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string("<none>");
  }
  QTemporaryDir dir_;
};

// --- string table ---------------------------------------------------------------

using ResourceTest = FilesTest;

TEST_F(ResourceTest, AClientTableWinsOverTheBuiltInTableEvenBeforeTheFirstLookup) {
  // Take an id the built-in table has (when it has one) and give it our text.
  QFile builtin(":/talvex/strings/en.json");
  ASSERT_TRUE(builtin.open(QIODevice::ReadOnly));
  const QByteArray bytes = builtin.readAll();
  Variant table;
  ASSERT_TRUE(table.FromJsonStr(bytes.constData(), bytes.size()));
  const std::string key = table.AsMap().empty() ? "0x7e57" : table.AsMap().begin()->first;
  const uint32_t id = std::isdigit(static_cast<unsigned char>(key[0]))
                          ? static_cast<uint32_t>(std::stoul(key, nullptr, 0))
                          : framework::NameId(key.c_str());

  ASSERT_TRUE(Resource::GetInstance()->LoadTable(MakeFile("client.json", "{\"" + key + "\": \"Client text\"}")));
  EXPECT_EQ(Resource::GetInstance()->GetString(id), "Client text");
}

TEST_F(ResourceTest, TextsAreReadByHexOrDecimalIdAndBadEntriesAreSkipped) {
  auto* resource = Resource::GetInstance();
  talvex_test::LogCapture log;
  ASSERT_TRUE(resource->LoadTable(MakeFile("strings.json", R"({
    "0x1a2b3c4d": "Hex text", "305419896": "Decimal text", "0X00000010": "Upper hex",
    "chat.test.greeting": "Named text", "12abc": "skipped", "0x1ffffffff": "too large", "0x20": 5
  })")));
  EXPECT_EQ(resource->GetString(0x1a2b3c4d), "Hex text");
  EXPECT_EQ(resource->GetString(305419896), "Decimal text");
  EXPECT_EQ(resource->GetString(0x10), "Upper hex");
  EXPECT_EQ(resource->GetString(framework::NameId("chat.test.greeting")), "Named text");
  EXPECT_FALSE(resource->HasString(0x20));
  EXPECT_FALSE(resource->HasString(12));
  for (char const* bad : {"12abc", "0x1ffffffff", "0x20"}) {
    EXPECT_TRUE(log.Contains(std::string("string table entry skipped: ") + bad)) << bad;
  }

  // A later table replaces what an earlier one said; a bad one changes nothing.
  ASSERT_TRUE(resource->LoadTable(MakeFile("strings2.json", R"({"0x1a2b3c4d": "Newer"})")));
  EXPECT_FALSE(resource->LoadTable(Path("missing.json")));
  EXPECT_FALSE(resource->LoadTable(MakeFile("array.json", "[1, 2]")));
  EXPECT_FALSE(resource->LoadTable(MakeFile("broken.json", "{\"0x1\": ")));
  EXPECT_EQ(talvex_common::utils::GetLocalizedString(0x1a2b3c4d), "Newer");
  EXPECT_EQ(resource->GetString(305419896), "Decimal text");
}

TEST_F(ResourceTest, AnUnknownIdYieldsAnEmptyTextAndOneWarning) {
  talvex_test::LogCapture log;
  EXPECT_EQ(Resource::GetInstance()->GetString(0xdead0001), "");
  EXPECT_EQ(Resource::GetInstance()->GetString(0xdead0001), "");
  EXPECT_EQ(log.Count("no text for string id 0xdead0001"), 1u);
}

TEST(StringFormatterTest, NamedPlaceholdersAreFilledEverywhere) {
  using framework::StringFormatter;
  EXPECT_EQ(StringFormatter("{who} sent {count} files to {who}").Arg("who", "Ann").Arg("count", int64_t{3}).Str(),
            "Ann sent 3 files to Ann");
  EXPECT_EQ(StringFormatter("{a}{b}").Arg("a", "{a}{b}").Arg("b", "x").Str(), "{a}xx");
  EXPECT_EQ(StringFormatter("no placeholder").Arg("x", "y").Str(), "no placeholder");
  EXPECT_EQ(StringFormatter("[{x}]").Arg("x", static_cast<char const*>(nullptr)).Str(), "[]");
  EXPECT_EQ(StringFormatter("{x").Arg("x", "y").Str(), "{x");

  Resource::GetInstance()->SetString(0x600d, "Hello {name}");
  EXPECT_EQ(talvex_common::utils::FormatString(0x600d).Arg("name", "Bo").Str(), "Hello Bo");
}

// --- remote configuration -----------------------------------------------------------

using ConfigureTest = FilesTest;

Variant Defaults() {
  Variant defaults(base::variant::kVariantTypeMap);
  defaults["im"] = Variant(Variant::Map{{"max_len", 500}, {"emoji", true}});
  defaults["bullet"].Set("speed", 1.5);
  return defaults;
}

TEST_F(ConfigureTest, TheFileIsLaidOverTheDefaults) {
  framework::ConfigureService config;
  config.SetDefaults(Defaults());
  ASSERT_TRUE(config.LoadFile(MakeFile("config.json", R"({"im": {"max_len": 1000, "new_key": "x"}, "bullet": 3})")));
  EXPECT_EQ(config.Query("im", "max_len").AsInt32(), 1000);
  EXPECT_EQ(config.Query("im", "new_key").AsStr(), "x");
  EXPECT_TRUE(config.Query("im", "emoji").AsBoolean());  // only in the defaults
  EXPECT_DOUBLE_EQ(config.Query("bullet", "speed").AsDouble(), 1.5);  // the file's section is no map
  EXPECT_TRUE(config.Query("im", "absent").IsNull());
  EXPECT_TRUE(config.Query("absent", "max_len").IsNull());
}

TEST_F(ConfigureTest, AMissingOrMalformedFileLeavesTheDefaults) {
  framework::ConfigureService config;
  config.SetDefaults(Defaults());
  talvex_test::LogCapture log;
  EXPECT_FALSE(config.LoadFile(Path("missing.json")));
  EXPECT_FALSE(config.LoadFile(MakeFile("broken.json", R"({"im": {"max_len": 1000)")));
  EXPECT_FALSE(config.LoadFile(MakeFile("list.json", R"([{"im": {"max_len": 1000}}])")));
  EXPECT_TRUE(log.Contains("configuration file is not a JSON object", base::log::kLogError));
  EXPECT_EQ(config.Query("im", "max_len").AsInt32(), 500);

  config.SetDefaults(Variant("not a map"));
  EXPECT_TRUE(config.Query("im", "max_len").IsNull());
}

TEST_F(ConfigureTest, QueriesFallBackToTheDefaultOfAnotherKind) {
  using talvex_common::utils::QueryConfigureService;
  auto* config = talvexsdk::utils::service::GetConfigureService();
  config->Set("cfg_test", "count", Variant(12));
  config->Set("cfg_test", "name", Variant("abc"));
  config->Set("cfg_test", "ratio", Variant(0.5));

  EXPECT_EQ(QueryConfigureService("cfg_test", "count").AsInt32(), 12);
  EXPECT_EQ(QueryConfigureService("cfg_test", "count", Variant(1.0)).AsInt32(), 12);  // numbers mix
  EXPECT_DOUBLE_EQ(QueryConfigureService("cfg_test", "ratio", Variant(1)).AsDouble(), 0.5);
  EXPECT_EQ(QueryConfigureService("cfg_test", "name", Variant(false)), Variant(false));
  EXPECT_EQ(QueryConfigureService("cfg_test", "count", Variant("text")).AsStr(), "text");
  EXPECT_EQ(QueryConfigureService("cfg_test", "absent", Variant(9)).AsInt32(), 9);
  EXPECT_TRUE(QueryConfigureService("cfg_test", "absent").IsNull());
}

TEST_F(ConfigureTest, TheConfigModelHandsOutTheAskedLayoutOrTheDefaultOne) {
  framework::ConfigureService config;
  framework::ConfigureModel model(&config);
  const Variant card_layouts(Variant::Map{{"default", "default card"}, {"spring", "spring card"}});
  config.Set("dyna_layout", "card_qt", card_layouts);
  config.Set("dyna_layout", "card_web", Variant(Variant::Map{{"default", Variant("web card")}}));

  auto ask = [&model](std::string const& key, bool use_default, Variant* out) {
    // 7 is not a name: skipped.
    Variant params(Variant::Map{{"dyna_layout_key", key},
                                {"keys", Variant::Array{"card_web", "card_qt", "card_absent", 7}},
                                {"use_default_layout", use_default}});
    return model.Invoke(framework::ConfigureModel::kMethodGetDynamicLayout, &params, out);
  };
  Variant out;
  ASSERT_TRUE(ask("spring", true, &out));
  EXPECT_EQ(out, Variant(Variant::Map{{"card_qt", "spring card"}, {"card_web", "web card"}}))
      << "a name without the asked key falls back";
  ASSERT_TRUE(ask("", true, &out));
  EXPECT_EQ(out.GetString("card_qt"), "default card");
  EXPECT_FALSE(ask("winter", false, &out)) << "no default stands in when it may not";
  ASSERT_TRUE(ask("spring", false, &out));
  EXPECT_EQ(out, Variant(Variant::Map{{"card_qt", "spring card"}})) << "without the default only the asked layout";

  talvex_test::LogCapture log;
  Variant not_a_map("card_qt");
  EXPECT_FALSE(model.Invoke(framework::ConfigureModel::kMethodGetDynamicLayout, nullptr, &out));
  EXPECT_FALSE(model.Invoke(framework::ConfigureModel::kMethodGetDynamicLayout, &not_a_map, &out));
  EXPECT_EQ(log.Count("dynamic layout asked without params"), 2u);
  EXPECT_FALSE(model.Invoke(3, &not_a_map, &out)) << "the model knows one method";
  EXPECT_EQ(out.GetString("card_qt"), "spring card") << "a refused call leaves the result alone";

  // The host's model reads the host's configuration.
  talvexsdk::utils::service::GetConfigureService()->Set("dyna_layout", "card_qt", card_layouts);
  Variant params(Variant::Map{{"keys", Variant::Array{"card_qt"}}});
  ASSERT_TRUE(talvexsdk::utils::service::GetConfigureModel()->Invoke(7, &params, &out));
  EXPECT_EQ(out.GetString("card_qt"), "default card");
}

// --- local settings (application model 517) -------------------------------------------------

class SettingsTest : public FilesTest {
 protected:
  static Variant Params(char const* key, Variant value, char const* value_key = "value") {
    return Variant(Variant::Map{{"key", key}, {value_key, std::move(value)}});
  }
  static Variant Read(framework::SettingsModel& model, char const* key, Variant def) {
    Variant params = Params(key, std::move(def), "def_value"), result("untouched");
    EXPECT_TRUE(model.Invoke(3, &params, &result));
    return result;
  }
  static bool Write(framework::SettingsModel& model, char const* key, Variant value) {
    Variant params = Params(key, std::move(value));
    return model.Invoke(4, &params, nullptr);
  }
};

TEST_F(SettingsTest, ValuesAreReadWithDefaultsAndWrittenToTheFile) {
  const std::string path = Path("nested/settings.json");
  framework::SettingsModel model(path);
  EXPECT_EQ(Read(model, "im.msg_input_height", Variant(80)).AsInt32(), 80);
  EXPECT_TRUE(Read(model, "im.msg_input_height", Variant()).IsNull());

  EXPECT_TRUE(Write(model, "im.msg_input_height", Variant(120)));
  EXPECT_TRUE(Write(model, "bullet.enabled", Variant(false)));
  Variant all;
  EXPECT_TRUE(model.Invoke(1, nullptr, &all));
  EXPECT_EQ(all.Size(), 2u);
  EXPECT_FALSE(model.Invoke(9, nullptr, &all));

  // Another model over the same file sees what was written.
  framework::SettingsModel reopened(path);
  EXPECT_EQ(Read(reopened, "im.msg_input_height", Variant(80)).AsInt32(), 120);
  EXPECT_FALSE(Read(reopened, "bullet.enabled", Variant(true)).AsBoolean());
}

TEST_F(SettingsTest, ChangesAreAnnouncedOnlyWhenSomethingChanged) {
  framework::SettingsModel model(Path("settings.json"));
  std::vector<std::string> events;
  model.Subscribe(0, 1, std::make_shared<framework::EventHandler>([&](Variant const* v) {
    events.push_back(v ? v->GetString("key") + "=" + v->Get("value").ToString() : "null");
  }));
  Write(model, "k", Variant("a"));
  Write(model, "k", Variant("a"));
  Write(model, "k", Variant("b"));
  Write(model, "other", Variant(1));
  EXPECT_EQ(events, (std::vector<std::string>{"k=a", "k=b", "other=1"}));
}

TEST_F(SettingsTest, BadParametersChangeNothing) {
  const std::string path = Path("settings.json");
  framework::SettingsModel model(path);
  ASSERT_TRUE(Write(model, "k", Variant("kept")));
  const std::string saved = ReadFile(path);
  int events = 0;
  model.Subscribe(0, 1, std::make_shared<framework::EventHandler>([&](Variant const*) { ++events; }));

  Variant not_a_map("k"), no_key(Variant::Map{{"value", "x"}, {"def_value", "def"}}),
      number_key(Variant::Map{{"key", 5}, {"value", "x"}});
  // A read without a usable key answers the default it was given, if any.
  std::vector<std::string> reads;
  for (Variant const* params : std::vector<Variant const*>{nullptr, &not_a_map, &no_key, &number_key}) {
    EXPECT_FALSE(model.Invoke(4, params, nullptr));
    Variant result("untouched");
    EXPECT_TRUE(model.Invoke(3, params, &result));
    reads.push_back(result.IsNull() ? "null" : result.AsStr());
  }
  EXPECT_EQ(reads, (std::vector<std::string>{"untouched", "untouched", "def", "null"}));
  EXPECT_TRUE(model.Invoke(3, nullptr, nullptr));

  EXPECT_EQ(events, 0);
  EXPECT_EQ(ReadFile(path), saved);
  EXPECT_EQ(Read(model, "k", Variant()).AsStr(), "kept");
}

TEST_F(SettingsTest, ADamagedFileStartsEmptyAndTheDefaultFileLivesInTheConfigDirectory) {
  talvex_test::LogCapture log;
  framework::SettingsModel damaged(MakeFile("damaged.json", "{\"k\": "));
  EXPECT_TRUE(log.Contains("settings file is damaged", base::log::kLogError));
  EXPECT_EQ(Read(damaged, "k", Variant("def")).AsStr(), "def");
  EXPECT_TRUE(Write(damaged, "k", Variant("v")));
  framework::SettingsModel repaired(damaged.path());
  EXPECT_EQ(Read(repaired, "k", Variant()).AsStr(), "v");

  framework::SettingsModel standard;
  EXPECT_EQ(standard.path(), qgetenv("XDG_CONFIG_HOME").toStdString() + "/talvex/settings.json");
}

}  // namespace
