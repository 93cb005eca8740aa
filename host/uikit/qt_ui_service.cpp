#include "uikit/qt_ui_service.h"

#include <QCheckBox>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QMessageBox>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QTimer>
#include <QUrl>

#include "uikit/tx_qt_ui_util.h"

QtUIService::QtUIService(QObject* parent) : QObject(parent) {}

QtUIService::~QtUIService() {
  for (auto& [id, box] : open_alerts_) {
    if (box) box->deleteLater();
  }
}

void QtUIService::ShowToast(framework::ToastRequest const& request) {
  RecordingUIService::ShowToast(request);
  QWidget* window = TXQtUiUtil::ActiveMainWindow();
  if (!window) return;
  if (toast_) toast_->deleteLater();
  auto* label = new QLabel(QString::fromStdString(request.text), window);
  // Texts carry people's names and file names: shown as they are, never as markup.
  label->setTextFormat(Qt::PlainText);
  label->setObjectName("talvex_toast");
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignCenter);
  label->setStyleSheet(
      "QLabel#talvex_toast { background: rgba(20,20,24,220); color: white; border-radius: 8px;"
      " padding: 10px 18px; font-size: 13px; }");
  label->setMaximumWidth(qMax(200, window->width() / 2));
  label->adjustSize();
  label->move((window->width() - label->width()) / 2, window->height() - label->height() - 96);
  label->show();
  label->raise();
  toast_ = label;
  auto* effect = new QGraphicsOpacityEffect(label);
  label->setGraphicsEffect(effect);
  QTimer::singleShot(static_cast<int>(request.duration_ms), label, [label, effect] {
    auto* fade = new QPropertyAnimation(effect, "opacity", label);
    fade->setDuration(300);
    fade->setStartValue(1.0);
    fade->setEndValue(0.0);
    QObject::connect(fade, &QPropertyAnimation::finished, label, &QObject::deleteLater);
    fade->start();
  });
}

long QtUIService::ShowAlert(framework::AlertRequest const& request, framework::AlertCallback callback) {
  const long id = RecordingUIService::ShowAlert(request, callback);
  auto* box = new QMessageBox(TXQtUiUtil::ActiveMainWindow());
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setWindowTitle(QString::fromStdString(request.title));
  box->setTextFormat(Qt::PlainText);
  box->setText(QString::fromStdString(request.content.empty() ? request.title : request.content));
  QPushButton* positive = box->addButton(
      QString::fromStdString(request.positive_text.empty() ? "OK" : request.positive_text), QMessageBox::AcceptRole);
  if (!request.positive_color.empty()) {
    positive->setStyleSheet(QString("color: %1;").arg(QString::fromStdString(request.positive_color)));
  }
  if (!request.negative_text.empty()) {
    box->addButton(QString::fromStdString(request.negative_text), QMessageBox::RejectRole);
  }
  QCheckBox* check = nullptr;
  if (request.has_check) {
    check = new QCheckBox(QString::fromStdString(request.check_state_text), box);
    check->setChecked(request.check_state);
    box->setCheckBox(check);
  }
  if (request.top_most) box->setWindowFlag(Qt::WindowStaysOnTopHint);
  QObject::connect(box, &QMessageBox::buttonClicked, box, [this, id, box, positive, check](QAbstractButton* b) {
    Variant data(base::variant::kVariantTypeMap);
    if (check) data.Set("check_state", check->isChecked());
    open_alerts_.erase(id);
    Answer(id, b == positive ? framework::kAlertButtonPositive : framework::kAlertButtonNegative, data);
  });
  open_alerts_[id] = box;
  box->open();
  return id;
}

void QtUIService::DisposeAlerts(uint64_t owner) {
  RecordingUIService::DisposeAlerts(owner);
  for (auto it = open_alerts_.begin(); it != open_alerts_.end();) {
    bool match = owner == 0;
    for (auto const& alert : alerts()) {
      if (alert.id == it->first && alert.request.owner == owner) match = true;
    }
    if (match) {
      if (it->second) it->second->close();
      it = open_alerts_.erase(it);
    } else {
      ++it;
    }
  }
}

void QtUIService::OpenFile(std::string const& path) {
  RecordingUIService::OpenFile(path);
  QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(path)));
}

void QtUIService::NavigateToFilePath(std::string const& path, std::string const& extra, bool select) {
  RecordingUIService::NavigateToFilePath(path, extra, select);
  QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(QString::fromStdString(path)).absolutePath()));
}
