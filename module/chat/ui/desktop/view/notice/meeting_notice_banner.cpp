#include "chat/ui/desktop/view/notice/meeting_notice_banner.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPointer>
#include <QTextLayout>
#include <QToolButton>
#include <QVBoxLayout>

#include "chat/viewmodel/meeting_notice_banner_view_model.h"
#include "framework/viewmodel/stateful_view_model.h"
#include "uikit/tx_qt_ui_util.h"

namespace {
using VM = chat::MeetingNoticeBannerViewModel;
QString Q(std::string const& text) { return QString::fromStdString(text); }
}  // namespace

MeetingNoticeBanner::MeetingNoticeBanner(QWidget* parent) : QFrame(parent) {
  setObjectName("meeting_notice_banner");
  setAttribute(Qt::WA_StyledBackground);
  setFocusPolicy(Qt::TabFocus);
  setCursor(Qt::PointingHandCursor);
  setStyleSheet(
      "QFrame#meeting_notice_banner { background: #E9F3FF; border: none; border-bottom: 1px solid #CFE3FF; }"
      "QFrame#meeting_notice_banner:focus { border: 1px solid #198CFF; }"
      "QLabel#notice_banner_title { color: #1F2329; font-weight: bold; font-size: 13px; }"
      "QLabel#notice_banner_updated { color: #198CFF; font-size: 12px; }"
      "QLabel#notice_banner_meta { color: #8A8F99; font-size: 12px; }"
      "QLabel#notice_banner_text { color: #1F2329; font-size: 13px; }"
      "QToolButton#notice_banner_close { border: none; color: #8A8F99; font-size: 14px; padding: 0 4px; }"
      "QToolButton#notice_banner_close:hover { color: #1F2329; }");
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(12, 8, 8, 8);
  row->setSpacing(8);
  icon_ = new QLabel(this);
  icon_->setPixmap(TXQtUiUtil::GetHdpiImage(":/images/chat/meeting_notice"));
  icon_->setAlignment(Qt::AlignTop);
  row->addWidget(icon_, 0, Qt::AlignTop);

  auto* column = new QVBoxLayout;
  column->setSpacing(2);
  auto* head = new QHBoxLayout;
  head->setSpacing(6);
  title_ = new QLabel(this);
  title_->setObjectName("notice_banner_title");
  title_->setTextFormat(Qt::PlainText);
  updated_ = new QLabel(this);
  updated_->setObjectName("notice_banner_updated");
  updated_->setTextFormat(Qt::PlainText);
  updated_->hide();
  meta_ = new QLabel(this);
  meta_->setObjectName("notice_banner_meta");
  meta_->setTextFormat(Qt::PlainText);
  head->addWidget(title_);
  head->addWidget(updated_);
  meta_->setMinimumWidth(1);
  meta_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  meta_->installEventFilter(this);
  head->addWidget(meta_, 1);
  column->addLayout(head);
  text_ = new QLabel(this);
  text_->setObjectName("notice_banner_text");
  text_->setTextFormat(Qt::PlainText);
  text_->setWordWrap(false);
  text_->setMinimumWidth(1);
  text_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  text_->installEventFilter(this);
  column->addWidget(text_);
  row->addLayout(column, 1);

  close_ = new QToolButton(this);
  close_->setObjectName("notice_banner_close");
  close_->setText(QString::fromUtf8("\u2715"));
  close_->setCursor(Qt::ArrowCursor);
  close_->setFocusPolicy(Qt::TabFocus);
  row->addWidget(close_, 0, Qt::AlignTop);
  connect(close_, &QToolButton::clicked, this, &MeetingNoticeBanner::CloseClicked);
  hide();
}

MeetingNoticeBanner::~MeetingNoticeBanner() {
  if (view_model_) view_model_->DidDetached();
}

void MeetingNoticeBanner::Bind(std::shared_ptr<framework::StatefulViewModel> view_model) {
  if (view_model_) {
    view_model_->UnbindAllProps();
    view_model_->DidDetached();
  }
  disconnect(this, &MeetingNoticeBanner::OpenClicked, this, nullptr);
  disconnect(this, &MeetingNoticeBanner::CloseClicked, this, nullptr);
  view_model_ = std::move(view_model);
  if (!view_model_) {
    SetBanner(Variant());
    return;
  }
  QPointer<MeetingNoticeBanner> self = this;
  view_model_->BindProp(VM::kPropBanner, [self](Variant const* banner, Variant const*) {
    if (self && banner) self->SetBanner(*banner);
  });
  std::weak_ptr<framework::StatefulViewModel> weak = view_model_;
  auto dispatch = [weak](uint32_t action) {
    if (auto model = weak.lock()) model->Handle(action);
  };
  connect(this, &MeetingNoticeBanner::OpenClicked, this, [dispatch] { dispatch(VM::kActionOpen); });
  connect(this, &MeetingNoticeBanner::CloseClicked, this, [dispatch] { dispatch(VM::kActionDismiss); });
  view_model_->DidCreated(nullptr);
  view_model_->DidAttached(nullptr);
}

void MeetingNoticeBanner::SetBanner(Variant const& banner) {
  if (!banner.IsMap() || !banner.GetBoolean("visible")) {
    full_text_.clear();
    full_meta_.clear();
    hide();
    return;
  }
  title_->setText(Q(banner.GetString("title")));
  updated_->setText(Q(banner.GetString("updated_text")));
  updated_->setVisible(banner.GetBoolean("updated"));
  QStringList meta;
  for (char const* key : {"sender", "time"}) {
    if (!banner.GetString(key).empty()) meta << Q(banner.GetString(key));
  }
  full_meta_ = meta.join(QString::fromUtf8(" \u00b7 "));
  full_text_ = Q(banner.GetString("text")).simplified();
  setToolTip(Q(banner.GetString("open_tips")));
  close_->setToolTip(Q(banner.GetString("close_tips")));
  close_->setAccessibleName(Q(banner.GetString("close_tips")));
  setAccessibleName(Q(banner.GetString("title")));
  setAccessibleDescription(full_text_);
  show();
  UpdateText();
}

QString MeetingNoticeBanner::ElideToLines(QString const& text, QFont const& font, int width, int lines) {
  if (width <= 0 || lines <= 0 || text.isEmpty()) return QString();
  QTextLayout layout(text, font);
  QStringList kept;
  layout.beginLayout();
  while (kept.size() < lines) {
    QTextLine line = layout.createLine();
    if (!line.isValid()) break;
    line.setLineWidth(width);
    if (kept.size() == lines - 1) {
      // The last line takes whatever is left, cut to fit.
      const QString rest = text.mid(line.textStart());
      kept << QFontMetrics(font).elidedText(rest, Qt::ElideRight, width);
      break;
    }
    kept << text.mid(line.textStart(), line.textLength()).trimmed();
  }
  layout.endLayout();
  return kept.join('\n');
}

void MeetingNoticeBanner::UpdateText() {
  if (!text_) return;
  // The style sheet's fonts are the ones to measure with.
  text_->ensurePolished();
  meta_->ensurePolished();
  text_->setText(ElideToLines(full_text_, text_->font(), text_->width(), kMaxLines));
  meta_->setText(ElideToLines(full_meta_, meta_->font(), meta_->width(), 1));
  meta_->setToolTip(TXQtUiUtil::PlainToolTip(full_meta_));
}

void MeetingNoticeBanner::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->pos())) {
    emit OpenClicked();
    return;
  }
  QFrame::mouseReleaseEvent(event);
}

void MeetingNoticeBanner::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      emit OpenClicked();
      return;
    case Qt::Key_Escape:
    case Qt::Key_Delete:
      emit CloseClicked();
      return;
    default:
      QFrame::keyPressEvent(event);
  }
}

bool MeetingNoticeBanner::eventFilter(QObject* watched, QEvent* event) {
  // The text is cut to the label's own width once the layout has set it.
  if ((watched == text_ || watched == meta_) && event->type() == QEvent::Resize) UpdateText();
  return QFrame::eventFilter(watched, event);
}
