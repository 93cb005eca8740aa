// Copying, reading and parsing one chat message record held as a Variant, as a
// QVariantMap and as a JSON document.
#include <benchmark/benchmark.h>

#include <QJsonDocument>
#include <QString>
#include <QVariant>
#include <QVariantMap>

#include <nlohmann/json.hpp>

#include "base/variant/variant.h"

using base::variant::Variant;

namespace {

// A received text message with 25 keys, shaped like the records the chat panel lists.
Variant MakeRecord() {
  Variant r;
  r["msg_id"] = "8f14e45f-ceea-467a-9575-7a1b6e2f0c3d";
  r["chat_type"] = 1;
  r["message_time"] = 1718000000123LL;
  Variant content(base::variant::kVariantTypeArray);
  for (int i = 0; i < 3; ++i) {
    Variant block;
    block["type"] = 2;
    block["text"] = "Let us move the review to Thursday, the build is not ready yet.";
    content.Add(block);
  }
  r["msg_content"] = content;
  r["sender_app_id"] = 200000001;
  r["sender_app_uid"] = "144115212345678901";
  r["sender_nick"] = "Ann Lee";
  r["sender_avatar"] = "https://avatars.example.invalid/a/144115212345678901.png";
  r["receiver_app_id"] = 200000001;
  r["receiver_app_uid"] = "144115298765432109";
  r["receiver_nick"] = "Bo Chen";
  r["receiver_type"] = 2;
  r["conv_type"] = 1;
  r["conv_id"] = "conv-98765";
  r["meeting_id"] = "1234567890123456789";
  r["status"] = 3;
  r["item_type"] = 1;
  r["is_self"] = false;
  r["is_private"] = true;
  r["is_revoked"] = false;
  r["seq"] = 4211;
  r["client_seq"] = 77;
  r["template_type"] = 2;
  Variant file;
  file["status"] = 0;
  file["file_size"] = 0;
  r["file_info"] = file;
  r["reply_to"] = "";
  return r;
}

QVariant ToQVariant(Variant const& v) {
  switch (v.type()) {
    case base::variant::kVariantTypeBool:
      return v.AsBoolean();
    case base::variant::kVariantTypeInteger:
      return QVariant::fromValue<qlonglong>(v.AsInteger());
    case base::variant::kVariantTypeDouble:
      return v.AsDouble();
    case base::variant::kVariantTypeString:
      return QString::fromStdString(v.AsStr());
    case base::variant::kVariantTypeArray: {
      QVariantList list;
      for (auto const& item : v.AsArray()) list.append(ToQVariant(item));
      return list;
    }
    case base::variant::kVariantTypeMap: {
      QVariantMap map;
      for (auto const& [key, item] : v.AsMap()) map.insert(QString::fromStdString(key), ToQVariant(item));
      return map;
    }
    default:
      return QVariant();
  }
}

const Variant& RecordVariant() {
  static const Variant record = MakeRecord();
  return record;
}
const QVariantMap& RecordQt() {
  static const QVariantMap record = ToQVariant(RecordVariant()).toMap();
  return record;
}
const nlohmann::json& RecordJson() {
  static const nlohmann::json record = nlohmann::json::parse(RecordVariant().ToJson());
  return record;
}
const std::string& RecordText() {
  static const std::string text = RecordVariant().ToJson();
  return text;
}

// --- copy ---------------------------------------------------------------------------

void BM_Copy_Variant(benchmark::State& state) {
  const Variant& record = RecordVariant();
  for (auto _ : state) {
    Variant copy = record;
    benchmark::DoNotOptimize(copy);
  }
}
BENCHMARK(BM_Copy_Variant);

void BM_Copy_QVariantMap(benchmark::State& state) {
  const QVariantMap& record = RecordQt();
  for (auto _ : state) {
    QVariantMap copy = record;
    benchmark::DoNotOptimize(copy);
  }
}
BENCHMARK(BM_Copy_QVariantMap);

void BM_Copy_Json(benchmark::State& state) {
  const nlohmann::json& record = RecordJson();
  for (auto _ : state) {
    nlohmann::json copy = record;
    benchmark::DoNotOptimize(copy);
  }
}
BENCHMARK(BM_Copy_Json);

// A copy that is then written: the price of copy-on-write's detach.
void BM_CopyAndWrite_Variant(benchmark::State& state) {
  const Variant& record = RecordVariant();
  for (auto _ : state) {
    Variant copy = record;
    copy["status"] = 4;
    benchmark::DoNotOptimize(copy);
  }
}
BENCHMARK(BM_CopyAndWrite_Variant);

void BM_CopyAndWrite_QVariantMap(benchmark::State& state) {
  const QVariantMap& record = RecordQt();
  for (auto _ : state) {
    QVariantMap copy = record;
    copy.insert(QStringLiteral("status"), 4);
    benchmark::DoNotOptimize(copy);
  }
}
BENCHMARK(BM_CopyAndWrite_QVariantMap);

// --- typed read by key ---------------------------------------------------------------

void BM_ReadInteger_Variant(benchmark::State& state) {
  const Variant& record = RecordVariant();
  for (auto _ : state) benchmark::DoNotOptimize(record.GetInteger("message_time"));
}
BENCHMARK(BM_ReadInteger_Variant);

void BM_ReadInteger_QVariantMap(benchmark::State& state) {
  const QVariantMap& record = RecordQt();
  for (auto _ : state) benchmark::DoNotOptimize(record.value(QStringLiteral("message_time")).toLongLong());
}
BENCHMARK(BM_ReadInteger_QVariantMap);

void BM_ReadInteger_Json(benchmark::State& state) {
  const nlohmann::json& record = RecordJson();
  for (auto _ : state) benchmark::DoNotOptimize(record.value("message_time", int64_t{0}));
}
BENCHMARK(BM_ReadInteger_Json);

void BM_ReadString_Variant(benchmark::State& state) {
  const Variant& record = RecordVariant();
  for (auto _ : state) benchmark::DoNotOptimize(record.GetCStr("sender_nick"));
}
BENCHMARK(BM_ReadString_Variant);

void BM_ReadString_QVariantMap(benchmark::State& state) {
  const QVariantMap& record = RecordQt();
  for (auto _ : state) benchmark::DoNotOptimize(record.value(QStringLiteral("sender_nick")).toString());
}
BENCHMARK(BM_ReadString_QVariantMap);

void BM_ReadString_Json(benchmark::State& state) {
  const nlohmann::json& record = RecordJson();
  for (auto _ : state) {
    auto it = record.find("sender_nick");
    benchmark::DoNotOptimize(it != record.end() && it->is_string() ? it->get_ref<std::string const&>().c_str() : "");
  }
}
BENCHMARK(BM_ReadString_Json);

// A missing key, the common "absent optional field" case.
void BM_ReadMissing_Variant(benchmark::State& state) {
  const Variant& record = RecordVariant();
  for (auto _ : state) benchmark::DoNotOptimize(record.GetInteger("not_there", -1));
}
BENCHMARK(BM_ReadMissing_Variant);

void BM_ReadMissing_QVariantMap(benchmark::State& state) {
  const QVariantMap& record = RecordQt();
  for (auto _ : state) benchmark::DoNotOptimize(record.value(QStringLiteral("not_there"), -1).toLongLong());
}
BENCHMARK(BM_ReadMissing_QVariantMap);

// --- parse ----------------------------------------------------------------------------

void BM_Parse_Variant(benchmark::State& state) {
  const std::string& text = RecordText();
  for (auto _ : state) {
    Variant v;
    benchmark::DoNotOptimize(v.FromJsonStr(text.data(), static_cast<std::ptrdiff_t>(text.size())));
    benchmark::DoNotOptimize(v);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_Parse_Variant);

void BM_Parse_QJsonToVariantMap(benchmark::State& state) {
  const QByteArray text = QByteArray::fromStdString(RecordText());
  for (auto _ : state) {
    QVariantMap map = QJsonDocument::fromJson(text).toVariant().toMap();
    benchmark::DoNotOptimize(map);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_Parse_QJsonToVariantMap);

void BM_Parse_Json(benchmark::State& state) {
  const std::string& text = RecordText();
  for (auto _ : state) {
    nlohmann::json json = nlohmann::json::parse(text);
    benchmark::DoNotOptimize(json);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_Parse_Json);

}  // namespace

BENCHMARK_MAIN();
