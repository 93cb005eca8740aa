#include "sim/models/chat_file_model.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "base/log/log.h"
#include "base/util/file_util.h"
#include "framework/chat/chat_file_utils.h"
#include "sim/models/chat_message_model.h"

namespace sim {

namespace {
constexpr int kNotDownloaded = 5;
constexpr int kWaiting = 6;
constexpr int kDownloading = 7;
constexpr int kFailed = 8;
constexpr int kDownloaded = 9;
constexpr int kCanceled = 10;

// Where a finished download lands: the name, or "name (n).ext" when taken.
QString FreeName(QString const& folder, QString const& given) {
  // The sender's name for the file, never a way out of the folder.
  const QString name = QString::fromStdString(util::file::SafePathComponent(given.toStdString()));
  const QFileInfo info(name);
  const QString suffix = info.suffix().isEmpty() ? QString() : "." + info.suffix();
  QString path = QDir(folder).filePath(name);
  for (int n = 1; QFile::exists(path); ++n) {
    path = QDir(folder).filePath(QString("%1 (%2)%3").arg(info.completeBaseName()).arg(n).arg(suffix));
  }
  return path;
}
}  // namespace

struct ChatFileModel::Transfer {
  std::unique_ptr<talvex_common::utils::timer::TXTimer> timer;
  QFile part;
  QString name;
  int64_t size = 0;
  int step = 0;
  bool fail = false;
  int fail_code = 0;
  std::string fail_message;
};

ChatFileModel::ChatFileModel() : SimModel(kId) {
  SetMethod(4, [this](Variant const* params, Variant*) { return StartDownload(params); });
  SetMethod(5, [this](Variant const* message, Variant*) {
    if (message && message->IsMap()) EndTransfer(message->GetString("msg_id"), true);
    return SetStatus(message, kCanceled);
  });
  SetMethod(6, [this](Variant const* message, Variant*) { return SetStatus(message, 0) && SetStatus(message, 3); });
  SetMethod(7, [this](Variant const* message, Variant*) { return SetStatus(message, 2); });
  SetMethod(14, [](Variant const* params, Variant* result) {
    if (!params || !params->IsMap()) return false;
    Variant answer(base::variant::kVariantTypeMap);
    answer.Set("file_path", params->GetString("file_path"));
    answer.Set("is_inhibit", talvex::ChatFileUtils::IsInhibitedExtension(params->GetString("file_path")));
    if (result) *result = std::move(answer);
    return true;
  });
  SetMethod(16, [](Variant const* params, Variant* result) {
    if (!params || !params->IsMap()) return false;
    Variant answer(base::variant::kVariantTypeMap);
    answer.Set("is_support", !talvex::ChatFileUtils::IsInhibitedExtension(params->GetString("file_name")));
    if (result) *result = std::move(answer);
    return true;
  });
}

ChatFileModel::~ChatFileModel() {
  while (!transfers_.empty()) EndTransfer(transfers_.begin()->first, true);
}

void ChatFileModel::FailNextDownload(int code, std::string message) {
  fail_code_ = code;
  fail_message_ = std::move(message);
}

bool ChatFileModel::StartDownload(Variant const* params) {
  if (!params || !params->IsMap() || !params->Get("file_info").IsMap()) {
    TXLOG_ERROR << "[sim] download without file_info";
    return false;
  }
  const std::string msg_id = params->GetString("msg_id");
  auto record = messages_ ? messages_->FindMessage(msg_id) : nullptr;
  if (!record) {
    TXLOG_ERROR << "[sim] download of an unknown message " << msg_id;
    return false;
  }
  if (transferring(msg_id)) return true;
  Variant const& info = record->Get("ext_content").Get("file_info");
  const int status = info.GetInt32("status", kNotDownloaded);
  if (status != kNotDownloaded && status != kFailed && status != kCanceled && status != kWaiting) {
    TXLOG_WARN << "[sim] nothing to download in state " << status;
    return false;
  }
  auto transfer = std::make_unique<Transfer>();
  transfer->name = QString::fromStdString(info.GetString("name", info.GetString("title", "file")));
  transfer->size = info.GetInteger("size");
  const QString folder = QString::fromStdString(talvex::ChatFileUtils::GetChatFileDateDirPath());
  QDir().mkpath(folder);
  transfer->part.setFileName(QDir(folder).filePath(QString::fromStdString(util::file::SafePathComponent(msg_id)) + ".part"));
  if (!transfer->part.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
    TXLOG_ERROR << "[sim] can't write " << transfer->part.fileName().toStdString();
    return false;
  }
  transfer->fail = fail_code_ != 0;
  transfer->fail_code = fail_code_;
  transfer->fail_message = fail_message_;
  fail_code_ = 0;
  fail_message_.clear();
  transfer->timer = talvex_common::utils::timer::CreateTimer([this, msg_id] { Step(msg_id); });
  transfer->timer->Start(step_ms_, 1);
  transfers_[msg_id] = std::move(transfer);
  Advance(msg_id, kWaiting, 0);
  return true;
}

void ChatFileModel::Step(std::string const& msg_id) {
  auto it = transfers_.find(msg_id);
  if (it == transfers_.end()) return;
  Transfer& transfer = *it->second;
  ++transfer.step;
  if (transfer.fail && transfer.step * 2 > steps_) {
    const int code = transfer.fail_code;
    const std::string message = transfer.fail_message;
    const double progress = static_cast<double>(transfer.step - 1) / steps_;
    EndTransfer(msg_id, true);
    Advance(msg_id, kFailed, progress, std::string(), code, message);
    FailTransfer(code);
    return;
  }
  // Each step writes its share of the file.
  const int64_t target = transfer.size * transfer.step / steps_;
  const int64_t chunk = std::max<int64_t>(0, target - transfer.part.size());
  transfer.part.write(QByteArray(static_cast<int>(std::min<int64_t>(chunk, 64 << 20)), 'x'));
  if (transfer.step < steps_) {
    Advance(msg_id, kDownloading, static_cast<double>(transfer.step) / steps_);
    return;
  }
  transfer.part.close();
  const QString path = FreeName(QFileInfo(transfer.part.fileName()).absolutePath(), transfer.name);
  const bool moved = transfer.part.rename(path);
  EndTransfer(msg_id, !moved);
  if (moved) {
    Advance(msg_id, kDownloaded, 1.0, path.toStdString());
  } else {
    Advance(msg_id, kFailed, 1.0, std::string(), 21003, "the file could not be saved");
  }
}

void ChatFileModel::EndTransfer(std::string const& msg_id, bool remove_part) {
  auto it = transfers_.find(msg_id);
  if (it == transfers_.end()) return;
  it->second->timer->Stop();
  if (it->second->part.isOpen()) it->second->part.close();
  if (remove_part && QFileInfo(it->second->part.fileName()).suffix() == "part") it->second->part.remove();
  transfers_.erase(it);
}

void ChatFileModel::RevokeFile(std::string const& msg_id) {
  auto record = messages_ ? messages_->FindMessage(msg_id) : nullptr;
  if (!record) return;
  EndTransfer(msg_id, true);
  Variant payload = Variant::Map{{"file_id", record->Get("ext_content").Get("file_info").GetString("id")},
                                 {"msg_id", msg_id}};
  FireEvent(4, &payload);
  messages_->Revoke(msg_id);
}

bool ChatFileModel::Advance(std::string const& msg_id, int status, double progress, std::string const& path,
                            int err_code, std::string const& err_msg) {
  if (!messages_) return false;
  const bool changed = messages_->Update(msg_id, [&](Variant& record) {
    Variant& info = record["ext_content"]["file_info"];
    const int64_t size = info.GetInteger("size");
    info.Set("status", status);
    info.Set("progress", progress);
    info.Set("err_code", err_code);
    info.Set("err_msg", err_msg);
    if (!path.empty()) info.Set("path", path);
    if (static_cast<Variant const&>(record).Get("ui_msg_content").IsMap()) {
      Variant& content = record["ui_msg_content"];
      content.Set("status", status);
      content.Set("progress", progress);
      content.Set("err_code", err_code);
      content.Set("err_msg", err_msg);
      if (!path.empty()) content.Set("path", path);
      std::string sub_title = talvex::ChatFileUtils::DisplayFileSize(size);
      if (status == kDownloading) {
        sub_title = talvex::ChatFileUtils::DisplayFileSize(static_cast<int64_t>(size * progress)) + "/" + sub_title;
      }
      content.Set("sub_title", sub_title);
    }
  });
  if (!changed) return false;
  auto record = messages_->FindMessage(msg_id);
  Variant payload = Variant::Map{{"file_message", Variant::Map{{"msg_id", msg_id}}},
                                 {"file_info", record->Get("ext_content").Get("file_info")}};
  FireEvent(0, &payload);
  return true;
}

bool ChatFileModel::SetStatus(Variant const* message, int status) {
  if (!message || !message->IsMap()) return false;
  const std::string msg_id = message->GetString("msg_id");
  auto record = messages_ ? messages_->FindMessage(msg_id) : nullptr;
  if (!record) return false;
  return Advance(msg_id, status, record->Get("ext_content").Get("file_info").GetDouble("progress"));
}

}  // namespace sim
