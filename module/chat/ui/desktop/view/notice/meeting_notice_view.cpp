#include "chat/ui/desktop/view/notice/meeting_notice_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

#include "base/log/log.h"
#include "chat/viewmodel/meeting_notice_view_model.h"
#include "chat/viewmodel/view_model_types.h"
#include "framework/module/providers.h"
#include "framework/resource/resource.h"

namespace {

using VM = chat::MeetingNoticeViewModel;
constexpr char kContent[] = "MeetingNoticeMeetingNoticeInfoFields_kArrayNoticeContent";
constexpr char kContentType[] = "MeetingNoticeMeetingNoticeInfoFields_kIntegerNoticeContentType";
constexpr char kContentText[] = "MeetingNoticeMeetingNoticeInfoFields_kStringNoticeContentContent";
constexpr int kLinkItem = 2;

QString Q(std::string const& text) { return QString::fromStdString(text); }

QPushButton* Button(QString const& name, QWidget* parent, bool primary) {
  auto* button = new QPushButton(parent);
  button->setObjectName(name);
  button->setCursor(Qt::PointingHandCursor);
  button->setStyleSheet(primary ? "QPushButton { background: #1A73E8; color: white; border: none; border-radius: 4px;"
                                  " padding: 5px 16px; } QPushButton:disabled { background: #A7C6F5; }"
                                : "QPushButton { background: white; color: #1F2329; border: 1px solid #DCDFE3;"
                                  " border-radius: 4px; padding: 5px 16px; }");
  return button;
}

}  // namespace

MeetingNoticeWidget::MeetingNoticeWidget(QWidget* parent) : QWidget(parent) {
  setObjectName("MeetingNoticeWidget");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(20, 16, 20, 16);
  layout->setSpacing(12);

  auto* header = new QHBoxLayout;
  avatar_ = new QLabel(this);
  avatar_->setObjectName("notice_avatar");
  avatar_->setFixedSize(32, 32);
  avatar_->setAlignment(Qt::AlignCenter);
  avatar_->setStyleSheet("background: #2BA471; color: white; border-radius: 16px; font-weight: bold;");
  sender_ = new QLabel(this);
  sender_->setObjectName("notice_sender");
  sender_->setTextFormat(Qt::PlainText);
  sender_->setStyleSheet("color: #1F2329; font-weight: bold;");
  time_ = new QLabel(this);
  time_->setObjectName("notice_time");
  time_->setStyleSheet("color: #8A8F99;");
  header->addWidget(avatar_);
  header->addWidget(sender_, 1);
  header->addWidget(time_);
  layout->addLayout(header);

  pages_ = new QStackedWidget(this);
  reader_ = new QTextBrowser(pages_);
  reader_->setObjectName("notice_reader");
  reader_->setOpenLinks(false);
  reader_->setFrameShape(QFrame::NoFrame);
  reader_->setAccessibleName(tr("Meeting notice"));
  connect(reader_, &QTextBrowser::anchorClicked, this, [this](QUrl const& url) { emit LinkClicked(url.toString()); });
  auto* edit_page = new QWidget(pages_);
  auto* edit_layout = new QVBoxLayout(edit_page);
  edit_layout->setContentsMargins(0, 0, 0, 0);
  editor_ = new QPlainTextEdit(edit_page);
  editor_->setObjectName("notice_editor");
  editor_->setAccessibleName(tr("Notice text"));
  editor_->setStyleSheet("QPlainTextEdit { border: 1px solid #DCDFE3; border-radius: 4px; padding: 6px; }");
  counter_ = new QLabel(edit_page);
  counter_->setObjectName("notice_counter");
  counter_->setAlignment(Qt::AlignRight);
  edit_layout->addWidget(editor_, 1);
  edit_layout->addWidget(counter_);
  pages_->addWidget(reader_);
  pages_->addWidget(edit_page);
  layout->addWidget(pages_, 1);
  connect(editor_, &QPlainTextEdit::textChanged, this, &MeetingNoticeWidget::UpdateCounter);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  edit_button_ = Button("notice_edit_button", this, true);
  cancel_button_ = Button("notice_cancel_button", this, false);
  publish_button_ = Button("notice_publish_button", this, true);
  buttons->addWidget(edit_button_);
  buttons->addWidget(cancel_button_);
  buttons->addWidget(publish_button_);
  layout->addLayout(buttons);
  connect(edit_button_, &QPushButton::clicked, this, &MeetingNoticeWidget::EditClicked);
  connect(cancel_button_, &QPushButton::clicked, this, [this] { emit CancelClicked(editor_->toPlainText()); });
  connect(publish_button_, &QPushButton::clicked, this, [this] { emit PublishClicked(editor_->toPlainText()); });
  SetNoticeInfo(Variant());
}

bool MeetingNoticeWidget::editing() const { return pages_->currentIndex() == 1; }

void MeetingNoticeWidget::SetUiData(Variant const& data) {
  edit_button_->setText(Q(data.GetString("MeetingNoticeUiDataFields_kStringEditStr")));
  cancel_button_->setText(Q(data.GetString("MeetingNoticeUiDataFields_kStringCancelStr")));
  publish_button_->setText(Q(data.GetString("MeetingNoticeUiDataFields_kStringSendStr")));
  editor_->setPlaceholderText(Q(data.GetString("MeetingNoticeUiDataFields_kStringPlaceholderStr")));
  empty_text_ = Q(data.GetString("empty_notice_tips"));
  over_limit_text_ = Q(data.GetString("notice_len_over_limit_tips"));
  if (QWidget* window = this->window(); window && window != this) {
    window->setWindowTitle(Q(data.GetString("MeetingNoticeUiDataFields_kStringTitleStr")));
  }
}

void MeetingNoticeWidget::SetNoticeInfo(Variant const& info) {
  max_length_ = info.GetInt32("MeetingNoticeMeetingNoticeInfoFields_kIntegerMaxLength", 1000);
  const bool can_edit = info.GetBoolean("MeetingNoticeMeetingNoticeInfoFields_kBooleanCanEdit");
  const bool is_edit = info.GetBoolean("MeetingNoticeMeetingNoticeInfoFields_kBooleanIsEdit");
  Variant const& sender = info.Get("sender");
  sender_->setText(Q(sender.GetString("nick_name")));
  avatar_->setText(Q(sender.GetString("avatar_name")));
  avatar_->setVisible(sender.IsMap());
  time_->setText(Q(info.GetString("MeetingNoticeMeetingNoticeInfoFields_kStringSendTimeStr")));

  // The notice's text escaped, its links as links.
  QString html;
  QString plain;
  for (auto const& item : info.Get(kContent).AsArray()) {
    const QString text = Q(item.GetString(kContentText));
    plain += text;
    if (item.GetInt32(kContentType) == kLinkItem) {
      html += QString("<a href=\"%1\">%2</a>").arg(text.toHtmlEscaped(), text.toHtmlEscaped());
    } else {
      html += text.toHtmlEscaped().replace('\n', "<br/>");
    }
  }
  if (html.isEmpty()) html = QString("<span style=\"color:#8A8F99\">%1</span>").arg(empty_text_.toHtmlEscaped());
  reader_->setHtml(html);

  const bool was_editing = editing();
  pages_->setCurrentIndex(is_edit ? 1 : 0);
  // Entering an edit starts from the notice as it stands.
  if (is_edit && !was_editing) editor_->setPlainText(plain);
  edit_button_->setVisible(can_edit && !is_edit);
  cancel_button_->setVisible(is_edit);
  publish_button_->setVisible(is_edit);
  UpdateCounter();
}

void MeetingNoticeWidget::UpdateCounter() {
  const int length = editor_->toPlainText().size();
  const bool over = length > max_length_;
  counter_->setText(over ? QString("%1 (%2/%3)").arg(over_limit_text_).arg(length).arg(max_length_)
                         : QString("%1/%2").arg(length).arg(max_length_));
  counter_->setStyleSheet(over ? "color: #D54941;" : "color: #8A8F99;");
  publish_button_->setEnabled(!over);
}

namespace QtView {

MeetingNoticeView::MeetingNoticeView(framework::module::ModuleRuntime* runtime)
    : chat::PageWindowView("MeetingNoticeDialog", framework::NameId("chat.page.notice.title"), 480, 420),
      runtime_(runtime) {}

QWidget* MeetingNoticeView::BuildFrame(QWidget* parent, Variant* params) {
  QWidget* window = PageWindowView::BuildFrame(parent, params);
  const bool history = params && params->IsMap() && params->GetInt32("template_type") == 3;
  auto* provider = runtime_ ? runtime_->GetViewModelProvider() : nullptr;
  auto model = provider ? provider->CreateViewModel(history ? chat::kViewModelHistoryMeetingNotice
                                                            : chat::kViewModelMeetingNotice)
                        : nullptr;
  if (auto stateful = std::dynamic_pointer_cast<framework::StatefulViewModel>(model)) {
    SetViewModel(stateful);
  } else {
    TXLOG_ERROR << "[notice] no view model for the notice page";
  }
  auto* layout = new QVBoxLayout(window);
  layout->setContentsMargins(0, 0, 0, 0);
  widget_ = new MeetingNoticeWidget(window);
  layout->addWidget(widget_);
  QObject::connect(widget_, &MeetingNoticeWidget::EditClicked, widget_, [this] { Dispatch(VM::kActionStartEdit, Variant()); });
  QObject::connect(widget_, &MeetingNoticeWidget::CancelClicked, widget_,
                   [this](QString const& text) { Dispatch(VM::kActionCancelEdit, Variant(text.toStdString())); });
  QObject::connect(widget_, &MeetingNoticeWidget::PublishClicked, widget_,
                   [this](QString const& text) { Dispatch(VM::kActionSend, Variant(text.toStdString())); });
  QObject::connect(widget_, &MeetingNoticeWidget::LinkClicked, widget_,
                   [this](QString const& url) { Dispatch(VM::kActionShowWebView, Variant(url.toStdString())); });
  return window;
}

void MeetingNoticeView::Dispatch(uint32_t action, Variant const& params) {
  if (auto const& vm = view_model()) vm->Handle(action, &params);
}

void MeetingNoticeView::OnViewModelBoundEx(framework::StatefulViewModel* view_model) {
  QPointer<MeetingNoticeWidget> widget = widget_;
  view_model->BindProp(VM::kPropUiData, [widget](Variant const* data, Variant const*) {
    if (widget && data) widget->SetUiData(*data);
  });
  view_model->BindProp(VM::kPropNoticeInfo, [widget](Variant const* info, Variant const*) {
    if (widget && info) widget->SetNoticeInfo(*info);
  });
  view_model->BindProp(VM::kPropClose, [widget](Variant const*, Variant const*) {
    if (widget && widget->window()) widget->window()->close();
  });
}

}  // namespace QtView
