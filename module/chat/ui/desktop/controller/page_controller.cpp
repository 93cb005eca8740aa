#include "chat/ui/desktop/controller/page_controller.h"

#include <QVBoxLayout>

#include "base/log/log.h"
#include "chat/ui/desktop/view/notice/meeting_notice_view.h"
#include "framework/resource/resource.h"
#include "framework/viewmodel/view_model.h"

namespace chat {

namespace {
constexpr char kChatPanelPoint[] = "contributes:app.chat_full";
}  // namespace

PageController::PageController(std::string scheme, ViewMaker maker, bool fresh_on_show)
    : scheme_(std::move(scheme)), maker_(std::move(maker)), fresh_on_show_(fresh_on_show) {}

PageController::~PageController() { Close(); }

void PageController::Call(std::string const& name, Variant const* params) {
  if (name == "show") {
    Show(params);
  } else if (name == "close") {
    Close();
  } else {
    TXLOG_NOTICE << "page " << scheme_ << ": unknown call " << name;
  }
}

void PageController::Show(Variant const* params) {
  if (view_ && fresh_on_show_) Close();
  if (view_) {
    view_->OnActivate();
    if (QWidget* frame = view_->frame()) {
      frame->show();
      frame->raise();
      frame->activateWindow();
    }
    return;
  }
  view_ = maker_ ? maker_() : nullptr;
  if (!view_) return;
  if (!view_->Build({}, nullptr, params, true)) {
    view_.reset();
    return;
  }
  if (QWidget* frame = view_->frame()) frame->show();
}

void PageController::Close() {
  if (!view_) return;
  auto view = std::move(view_);
  view_.reset();
  view->Dispose();
}

PageWindowView::PageWindowView(std::string object_name, uint32_t title_id, int width, int height)
    : object_name_(std::move(object_name)), title_id_(title_id), width_(width), height_(height) {}

QWidget* PageWindowView::BuildFrame(QWidget* parent, Variant*) {
  auto* window = new QWidget(parent, Qt::Window);
  window->setObjectName(QString::fromStdString(object_name_));
  window->setWindowTitle(QString::fromStdString(talvex_common::utils::GetLocalizedString(title_id_)));
  window->resize(width_, height_);
  return window;
}

void PageWindowView::OnActivate() {
  if (QWidget* frame = this->frame()) frame->raise();
}

QWidget* ChatPageView::BuildFrame(QWidget* parent, Variant* params) {
  QWidget* window = PageWindowView::BuildFrame(parent, params);
  auto* layout = new QVBoxLayout(window);
  layout->setContentsMargins(0, 0, 0, 0);
  panel_ = new ExtensionHostWidget(kChatPanelPoint, window);
  layout->addWidget(panel_);
  if (panel_->Populate() == 0) TXLOG_ERROR << "chat page: nothing is contributed to " << kChatPanelPoint;
  return window;
}

void ChatPageView::OnDispose() {
  if (panel_) panel_->Clear();
}

}  // namespace chat

namespace {
chat::PageController::ViewMaker Window(char const* name, uint32_t title_id, int width, int height) {
  return [=] { return std::make_shared<chat::PageWindowView>(name, title_id, width, height); };
}
chat::PageController::ViewMaker ChatPage(char const* name, uint32_t title_id, int width, int height) {
  return [=] { return std::make_shared<chat::ChatPageView>(name, title_id, width, height); };
}
}  // namespace

ChatController::ChatController()
    : PageController("talvex://page/inmeeting/chat",
                     ChatPage("ChatWindow", framework::NameId("chat.page.chat.title"), 420, 640)) {}

// Every show of the record gives a fresh window.
ChatRecordQTController::ChatRecordQTController()
    : PageController("talvex://page/chat_record_qt", Window("ChatRecordDialog", framework::NameId("chat.page.record.title"), 560, 640), true) {}

MeetingNoticeContoller::MeetingNoticeContoller(framework::module::ModuleRuntime* runtime)
    : PageController(
          "talvex://page/meeting_notice",
          [runtime] { return std::make_shared<QtView::MeetingNoticeView>(runtime); }, true) {}

QtView::EmojiBulletController::EmojiBulletController()
    : PageController("talvex://page/inmeeting/emoji_bullet", Window("EmojiBulletWindow", framework::NameId("chat.page.emoji_bullet.title"), 360, 240)) {}
