#include "chat/ui/desktop/view/file/file_preview_view.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/log/log.h"
#include "chat/ui/desktop/view/chat/chat_file_item.h"
#include "chat/util/utils.h"
#include "chat/viewmodel/file_preview_view_model.h"
#include "chat/viewmodel/view_model_types.h"
#include "framework/module/providers.h"
#include "framework/resource/resource.h"
#include "uikit/tx_qt_ui_util.h"

namespace {

using VM = chat::FilePreviewViewModel;
constexpr int kIconSize = 64;
constexpr int kProgressScale = 1000;

QString Field(Variant const& data, char const* key) {
  return QString::fromStdString(data.GetString(std::string("FilePreviewUIDataFields_") + key));
}
bool Flag(Variant const& data, char const* key) {
  return data.GetBoolean(std::string("FilePreviewUIDataFields_") + key);
}
QString Text(char const* name) {
  return QString::fromStdString(talvex_common::utils::GetLocalizedString(framework::NameId(name)));
}

QPushButton* Button(char const* name, QWidget* parent, bool primary) {
  auto* button = new QPushButton(parent);
  button->setObjectName(name);
  button->setCursor(Qt::PointingHandCursor);
  button->setMinimumWidth(96);
  button->setStyleSheet(primary ? "QPushButton { background: #1A73E8; color: white; border: none; border-radius: 4px;"
                                  " padding: 6px 18px; } QPushButton:focus { border: 2px solid #0B4FB3; }"
                                : "QPushButton { background: white; color: #1F2329; border: 1px solid #DCDFE3;"
                                  " border-radius: 4px; padding: 6px 18px; }");
  return button;
}

}  // namespace

FilePreviewWidget::FilePreviewWidget(QWidget* parent) : QWidget(parent) {
  setObjectName("FilePreviewWidget");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(24, 24, 24, 20);
  layout->setSpacing(10);

  icon_ = new QLabel(this);
  icon_->setObjectName("file_preview_icon");
  icon_->setFixedSize(kIconSize, kIconSize);
  icon_->setScaledContents(true);
  layout->addWidget(icon_, 0, Qt::AlignHCenter);
  name_ = new QLabel(this);
  name_->setObjectName("file_preview_name");
  name_->setTextFormat(Qt::PlainText);
  name_->setAlignment(Qt::AlignHCenter);
  name_->setWordWrap(true);
  name_->setStyleSheet("color: #1F2329; font-size: 15px; font-weight: bold;");
  layout->addWidget(name_);
  size_ = new QLabel(this);
  size_->setObjectName("file_preview_size");
  size_->setAlignment(Qt::AlignHCenter);
  size_->setStyleSheet("color: #8A8F99; font-size: 12px;");
  layout->addWidget(size_);

  progress_ = new QProgressBar(this);
  progress_->setObjectName("file_preview_progress");
  progress_->setRange(0, kProgressScale);
  progress_->setTextVisible(false);
  progress_->setFixedHeight(6);
  progress_->setStyleSheet("QProgressBar { background: #E8EAED; border: none; border-radius: 3px; }"
                           "QProgressBar::chunk { background: #1A73E8; border-radius: 3px; }");
  layout->addWidget(progress_);
  process_ = new QLabel(this);
  process_->setObjectName("file_preview_process");
  process_->setAlignment(Qt::AlignHCenter);
  process_->setStyleSheet("color: #5C6166; font-size: 12px;");
  layout->addWidget(process_);
  state_ = new QLabel(this);
  state_->setObjectName("file_preview_state");
  state_->setAlignment(Qt::AlignHCenter);
  state_->setWordWrap(true);
  state_->setStyleSheet("color: #D54941; font-size: 13px;");
  layout->addWidget(state_);
  layout->addStretch(1);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  cancel_ = Button("file_preview_cancel", this, false);
  main_ = Button("file_preview_main", this, true);
  open_ = Button("file_preview_open", this, true);
  open_->setText(Text("chat.file_preview.open"));
  buttons->addWidget(cancel_);
  buttons->addWidget(main_);
  buttons->addWidget(open_);
  buttons->addStretch(1);
  layout->addLayout(buttons);
  connect(main_, &QPushButton::clicked, this, &FilePreviewWidget::MainClicked);
  // Opening a file on disk is the main action of that state.
  connect(open_, &QPushButton::clicked, this, &FilePreviewWidget::MainClicked);
  connect(cancel_, &QPushButton::clicked, this, &FilePreviewWidget::CancelClicked);
  SetUIData(Variant());
}

void FilePreviewWidget::SetUIData(Variant const& data) {
  const QString title = Field(data, "kStringFileTitle");
  name_->setText(title);
  size_->setText(Field(data, "kStringFileSize"));
  const int icon_type = data.GetInt32("FilePreviewUIDataFields_kIntegerFileIconType");
  icon_->setPixmap(title.isEmpty() ? QPixmap() : TXQtUiUtil::GetHdpiImage(ChatFileItem::IconOf(icon_type)));

  const bool progress = Flag(data, "kBooleanFileProcessVisible");
  const double value = chat::ProgressFraction(data.GetDouble("FilePreviewUIDataFields_kDoubleFileProcessValue"));
  progress_->setValue(static_cast<int>(value * kProgressScale));
  progress_->setVisible(progress);
  process_->setText(Field(data, "kStringFileProcessText"));
  process_->setVisible(progress);
  state_->setText(Field(data, "kStringStateText"));
  state_->setVisible(Flag(data, "kBooleanStateTextVisible"));

  const bool main = Flag(data, "kBooleanMainButtonVisible");
  main_->setText(Field(data, "kStringMainButtonText"));
  main_->setVisible(main);
  cancel_->setText(Field(data, "kStringCancelButtonText"));
  cancel_->setVisible(Flag(data, "kBooleanCancelButtonVisible"));
  const bool on_disk = !Field(data, "kStringFilePath").isEmpty();
  open_->setVisible(!main && !progress && !state_->isVisible() && on_disk && !title.isEmpty());
  setAccessibleName(title);
  setAccessibleDescription(progress ? process_->text() : state_->isVisible() ? state_->text() : size_->text());
}

void FilePreviewWidget::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (main_->isVisible() || open_->isVisible()) {
      emit MainClicked();
      return;
    }
  } else if (event->key() == Qt::Key_Escape) {
    if (cancel_->isVisible()) {
      emit CancelClicked();
    } else if (window()) {
      window()->close();
    }
    return;
  }
  QWidget::keyPressEvent(event);
}

namespace QtView {

FilePreviewView::FilePreviewView(framework::module::ModuleRuntime* runtime)
    : chat::PageWindowView("ChatFilePreviewDialog", framework::NameId("chat.file_preview.title"), 420, 320),
      runtime_(runtime) {}

QWidget* FilePreviewView::BuildFrame(QWidget* parent, Variant* params) {
  QWidget* window = PageWindowView::BuildFrame(parent, params);
  auto* provider = runtime_ ? runtime_->GetViewModelProvider() : nullptr;
  auto model = std::dynamic_pointer_cast<framework::StatefulViewModel>(
      provider ? provider->CreateViewModel(chat::kViewModelFilePreview) : nullptr);
  if (model) {
    SetViewModel(model);
  } else {
    TXLOG_ERROR << "[file] no view model for the file page";
  }
  auto* layout = new QVBoxLayout(window);
  layout->setContentsMargins(0, 0, 0, 0);
  widget_ = new FilePreviewWidget(window);
  widget_->setFocusPolicy(Qt::StrongFocus);
  layout->addWidget(widget_);
  QObject::connect(widget_, &FilePreviewWidget::MainClicked, widget_, [this] { Dispatch(VM::kActionMainButton); });
  QObject::connect(widget_, &FilePreviewWidget::CancelClicked, widget_, [this] { Dispatch(VM::kActionCancel); });
  return window;
}

void FilePreviewView::Dispatch(uint32_t action) {
  if (auto const& vm = view_model()) vm->Handle(action);
}

void FilePreviewView::OnViewModelBoundEx(framework::StatefulViewModel* view_model) {
  QPointer<FilePreviewWidget> widget = widget_;
  view_model->BindProp(
      VM::kPropUIData,
      [widget](Variant const* data, Variant const*) {
        if (widget && data) widget->SetUIData(*data);
      },
      true);
}

}  // namespace QtView
