#include "meeting_window.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTextCursor>
#include <QResizeEvent>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QPointer>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "framework/extension/extension.h"
#include "framework/journal/host_journal.h"
#include "framework/meeting/meeting_context.h"
#include "framework/navigation/routing.h"
#include "framework/web/web_host.h"
#include "framework/web/web_plugin.h"
#include "sim/meeting_sim.h"
#include "uikit/extension/extension_host_widget.h"

namespace {

QColor ColorForName(QString const& name) {
  static const QColor palette[] = {QColor("#3b82f6"), QColor("#10b981"), QColor("#f59e0b"),
                                   QColor("#ef4444"), QColor("#8b5cf6"), QColor("#14b8a6")};
  return palette[qHash(name) % (sizeof(palette) / sizeof(palette[0]))];
}

QString Initials(QString const& name) {
  QString out;
  for (QString const& part : name.split(' ', Qt::SkipEmptyParts)) out += part.left(1).toUpper();
  return out.left(2);
}

// "extension:chat.send_image" -> "Send image"; "extension:chat" -> "Chat".
QString ButtonTextFor(QString const& extension_id) {
  QString name = extension_id.section(':', 1);
  name = name.contains('.') ? name.section('.', -1) : name;
  name.replace('_', ' ');
  if (!name.isEmpty()) name[0] = name[0].toUpper();
  return name;
}

QPushButton* ToolbarButton(QString const& text, QWidget* parent) {
  auto* button = new QPushButton(text, parent);
  button->setCursor(Qt::PointingHandCursor);
  button->setMinimumHeight(36);
  return button;
}

}  // namespace

StageWidget::StageWidget(QStringList participants, QWidget* parent)
    : QWidget(parent), participants_(std::move(participants)) {
  setObjectName("meeting_stage");
  setMinimumSize(480, 320);
}

void StageWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rect(), QColor("#101114"));
  const int count = participants_.size();
  if (count == 0) return;
  const int columns = static_cast<int>(std::ceil(std::sqrt(static_cast<double>(count))));
  const int rows = (count + columns - 1) / columns;
  const int gap = 8;
  const double tile_w = (width() - gap * (columns + 1)) / static_cast<double>(columns);
  const double tile_h = (height() - gap * (rows + 1)) / static_cast<double>(rows);
  for (int i = 0; i < count; ++i) {
    const QString& name = participants_[i];
    const QRectF tile(gap + (i % columns) * (tile_w + gap), gap + (i / columns) * (tile_h + gap), tile_w, tile_h);
    QPainterPath path;
    path.addRoundedRect(tile, 10, 10);
    painter.fillPath(path, QColor("#1d1f25"));
    const double d = std::min(tile.width(), tile.height()) * 0.32;
    const QRectF avatar(tile.center().x() - d / 2, tile.center().y() - d / 2 - 8, d, d);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ColorForName(name));
    painter.drawEllipse(avatar);
    QFont font = painter.font();
    font.setPixelSize(static_cast<int>(d * 0.38));
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(avatar, Qt::AlignCenter, Initials(name));
    font.setPixelSize(13);
    font.setBold(false);
    painter.setFont(font);
    painter.setPen(QColor("#d4d4d8"));
    painter.drawText(tile.adjusted(12, 0, -12, -10), Qt::AlignLeft | Qt::AlignBottom, name);
  }
  if (property("sharing").toBool()) {
    // The local user's shared screen takes the stage, with its green frame.
    painter.setPen(QPen(QColor("#22c55e"), 4));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect().adjusted(2, 2, -2, -2));
    QFont font = painter.font();
    font.setPixelSize(14);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(QColor("#22c55e"));
    painter.drawText(rect().adjusted(0, 12, 0, 0), Qt::AlignHCenter | Qt::AlignTop, "You are sharing your screen");
  }
}

namespace {
constexpr char kMeetingPage[] = "talvex://page/inmeeting";

// The meeting page as the client's controllers know it: it hands out its
// window to what floats over it.
class MeetingPageController : public framework::Controller {
 public:
  explicit MeetingPageController(QWidget* window) : window_(window) {}
  bool CallHasResult(std::string const& name, Variant const*, Variant* result) override {
    if (name != "get_qt_window" || !window_ || !result) return false;
    *result = Variant(static_cast<void*>(window_.data()));
    return true;
  }

 private:
  QPointer<QWidget> window_;
};
}  // namespace

MeetingWindow::~MeetingWindow() { framework::ControllerManager::Instance()->IocUnregister(kMeetingPage); }

MeetingWindow::MeetingWindow(sim::MeetingSimulator& meeting, QWidget* parent) : QWidget(parent), meeting_(meeting) {
  framework::ControllerManager::Instance()->IocRegister(
      kMeetingPage, [this] { return std::make_shared<MeetingPageController>(this); });
  setObjectName("meeting_window");
  setProperty("talvex_main_window", true);
  setWindowTitle("Meeting " + QString::fromStdString(meeting.meeting().meeting_id()));
  setStyleSheet(
      "QWidget#meeting_window { background: #0b0c0f; }"
      "QWidget#meeting_toolbar { background: #17181c; border-top: 1px solid #26272d; }"
      "QWidget#meeting_toolbar QPushButton { background: #26272d; color: #e4e4e7; border: none;"
      "  border-radius: 6px; padding: 6px 14px; font-size: 13px; }"
      "QWidget#meeting_toolbar QPushButton:hover { background: #32333a; }"
      "QPushButton#leave_button { background: #dc2626; color: white; }"
      "QWidget#side_panel { background: #f7f7f8; }"
      "QTabWidget#side_tabs::pane { border: none; border-left: 1px solid #26272d; background: white; }"
      "QTabWidget#side_tabs QTabBar::tab { background: #17181c; color: #a1a1aa; padding: 8px 18px;"
      "  border: none; font-size: 13px; }"
      "QTabWidget#side_tabs QTabBar::tab:selected { background: white; color: #18181b; font-weight: 600; }"
      "QLabel#panel_title { font-size: 15px; font-weight: 600; color: #18181b; }"
      "QLabel#module_state { color: #047857; font-size: 12px; }"
      "QTreeWidget, QPlainTextEdit { background: white; border: 1px solid #e4e4e7; border-radius: 6px;"
      "  font-size: 12px; color: #27272a; }");

  auto* root = new QHBoxLayout(this);
  root->setContentsMargins(0, 0, 0, 0);
  root->setSpacing(0);
  auto* left = new QVBoxLayout();
  left->setContentsMargins(0, 0, 0, 0);
  left->setSpacing(0);
  stage_ = new StageWidget({"Avery Quinn", "Jordan Blake", "Sam Rivera", "Morgan Ellis", "Riley Chen", "Taylor Brooks"},
                           this);
  // The names the client gives them: what floats over the meeting looks for both.
  stage_->setObjectName("MediaRoomWidget");
  left->addWidget(stage_, 1);
  overlay_container_ = new QWidget(stage_);
  overlay_container_->setObjectName("emojiPanelContainer");
  overlay_container_->setAttribute(Qt::WA_TransparentForMouseEvents);
  // It covers the stage: what floats over it measures its room by it.
  stage_->installEventFilter(this);
  left->addWidget(BuildToolbar());
  root->addLayout(left, 1);
  tabs_ = new QTabWidget(this);
  tabs_->setObjectName("side_tabs");
  tabs_->setFixedWidth(380);
  tabs_->setDocumentMode(true);
  chat_panel_ = new ExtensionHostWidget("contributes:app.chat_full", tabs_);
  tabs_->addTab(chat_panel_, "Chat");
  tabs_->addTab(BuildSidePanel(), "Module");
  root->addWidget(tabs_);
  resize(1280, 760);
}

QWidget* MeetingWindow::BuildToolbar() {
  auto* bar = new QWidget(this);
  bar->setObjectName("meeting_toolbar");
  bar->setAttribute(Qt::WA_StyledBackground);
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(16, 10, 16, 10);
  layout->setSpacing(8);
  for (const char* text : {"Mute", "Stop video", "Share screen", "Participants"}) {
    QPushButton* button = ToolbarButton(text, bar);
    layout->addWidget(button);
    if (QString(text) == "Share screen") {
      button->setObjectName("share_button");
      button->setCheckable(true);
      connect(button, &QPushButton::toggled, this, &MeetingWindow::ToggleScreenShare);
    }
  }
  extension_buttons_ = new QHBoxLayout();
  extension_buttons_->setSpacing(8);
  layout->addLayout(extension_buttons_);
  layout->addStretch(1);
  auto* leave = ToolbarButton("Leave", bar);
  leave->setObjectName("leave_button");
  connect(leave, &QPushButton::clicked, this, &QWidget::close);
  layout->addWidget(leave);
  return bar;
}

QWidget* MeetingWindow::BuildSidePanel() {
  auto* panel = new QWidget(this);
  panel->setObjectName("side_panel");
  panel->setAttribute(Qt::WA_StyledBackground);
  auto* layout = new QVBoxLayout(panel);
  layout->setContentsMargins(16, 16, 16, 16);
  layout->setSpacing(8);
  auto* title = new QLabel("Chat module", panel);
  title->setObjectName("panel_title");
  layout->addWidget(title);
  module_state_ = new QLabel(panel);
  module_state_->setObjectName("module_state");
  module_state_->setWordWrap(true);
  layout->addWidget(module_state_);
  registry_ = new QTreeWidget(panel);
  registry_->setHeaderHidden(true);
  registry_->setIndentation(14);
  layout->addWidget(registry_, 3);
  journal_ = new QPlainTextEdit(panel);
  journal_->setReadOnly(true);
  journal_->setMaximumBlockCount(400);
  layout->addWidget(journal_, 2);
  layout->addWidget(BuildWebPageSection(panel), 2);
  return panel;
}

QWidget* MeetingWindow::BuildWebPageSection(QWidget* parent) {
  auto* section = new QWidget(parent);
  section->setObjectName("web_page_section");
  auto* layout = new QVBoxLayout(section);
  layout->setContentsMargins(0, 8, 0, 0);
  layout->setSpacing(6);
  auto* title = new QLabel("Web page", section);
  title->setObjectName("panel_title");
  layout->addWidget(title);
  auto* ask = new QPushButton("Read the public chat", section);
  ask->setObjectName("web_page_ask");
  connect(ask, &QPushButton::clicked, this, &MeetingWindow::AskForPublicChat);
  layout->addWidget(ask, 0, Qt::AlignLeft);
  web_answers_ = new QPlainTextEdit(section);
  web_answers_->setObjectName("web_page_answers");
  web_answers_->setReadOnly(true);
  web_answers_->setPlaceholderText("What the chat bridge answers the page shows here.");
  layout->addWidget(web_answers_, 1);
  return section;
}

void MeetingWindow::AskForPublicChat() {
  constexpr char kScheme[] = "com.talvex.jsbridge.meetingchat";
  // A page attaches the bridge once and keeps it while it is open.
  if (!web_page_) {
    auto page = std::make_unique<talvex::WebHost>(talvex::WebHost::Engine::kWebview);
    if (!page->Attach(kScheme)) {
      web_answers_->setPlainText(QString("No web plugin is registered as %1.").arg(kScheme));
      return;
    }
    page->SetCallbackObserver([this](talvex::WebHost::Callback const& answer) {
      const QString request = QString::fromStdString(answer.callback_id);
      if (!answer.success) {
        web_answers_->appendPlainText(QString("Request %1 refused.").arg(request));
        return;
      }
      if (!answer.result.Has("msgList")) {
        web_answers_->appendPlainText(QString("Request %1 accepted; the list is on its way.").arg(request));
        return;
      }
      // The newest few messages, as the page would read them.
      constexpr int kNewest = 3;
      constexpr int kMaxChars = 2000;
      const QByteArray data = QByteArray::fromStdString(answer.result.GetString("msgList"));
      const QJsonArray all = QJsonDocument::fromJson(data).array();
      QJsonArray newest;
      for (int i = std::max(0, all.size() - kNewest); i < all.size(); ++i) newest.append(all[i]);
      QString shown = QString::fromUtf8(QJsonDocument(newest).toJson(QJsonDocument::Indented));
      if (shown.size() > kMaxChars) shown = shown.left(kMaxChars) + "\n…";
      const QString heading = all.size() > kNewest ? QString("Request %1: %2 messages, the newest %3:")
                                                         .arg(request).arg(all.size()).arg(kNewest)
                                                   : QString("Request %1: %2 messages:").arg(request).arg(all.size());
      web_answers_->appendPlainText(heading + "\n" + shown);
      web_answers_->moveCursor(QTextCursor::Start);
    });
    web_page_ = std::move(page);
  }
  web_answers_->clear();
  web_page_->Call("GetPublicChatMsgList", Variant::Map{{"meetingId", talvex_common::utils::GetStrMeetingId()}});
}

void MeetingWindow::RebuildExtensionButtons() {
  while (QLayoutItem* item = extension_buttons_->takeAt(0)) {
    delete item->widget();
    delete item;
  }
  for (auto const& info : framework::extension::GetExtensionService()->GetExtensions("contributes:app.toolbar")) {
    auto* button = ToolbarButton(ButtonTextFor(QString::fromStdString(info.extension_id)), this);
    button->setObjectName(QString::fromStdString(info.extension_id));
    connect(button, &QPushButton::clicked, this, [] {
      framework::Navigator::Of(nullptr, framework::PageStack::kMain).Push("talvex://page/inmeeting/chat");
    });
    extension_buttons_->addWidget(button);
  }
}

void MeetingWindow::RefreshModuleStatus(QString const& module_state) {
  module_state_->setText(module_state);
  registry_->clear();
  auto section = [this](QString const& title, QStringList const& rows) {
    auto* top = new QTreeWidgetItem(registry_, {QString("%1 (%2)").arg(title).arg(rows.size())});
    QFont font = top->font(0);
    font.setBold(true);
    top->setFont(0, font);
    for (QString const& row : rows) new QTreeWidgetItem(top, {row});
    top->setExpanded(rows.size() <= 6);
  };
  QStringList extensions;
  for (auto const& r : framework::extension::GetExtensionService()->Registrations()) {
    extensions << QString::fromStdString(r.info.extension_id + "  @ " + r.contributes_id);
  }
  section("Extensions", extensions);
  QStringList views;
  for (auto const& e : framework::ExtensionViewService::Instance()->entries()) {
    views << QString::fromStdString(e.extension_id + (e.contributes_id.empty() ? "" : "  @ " + e.contributes_id));
  }
  section("Extension views", views);
  QStringList routes;
  for (auto const& scheme : framework::ControllerManager::Instance()->Schemes()) routes << QString::fromStdString(scheme);
  section("Page routes", routes);
  QStringList plugins;
  for (auto const& p : talvex::GetWebviewPluginEngine()->plugins()) {
    plugins << QString::fromStdString("web view: " + p.scheme_name);
  }
  for (auto const& p : talvex::RegisteredWebPluginsEx()) plugins << QString::fromStdString("bridge: " + p.name);
  section("Web plugins", plugins);
  QStringList apps;
  for (auto const& [id, app] : meeting_.sidebar().apps()) {
    apps << QString::fromStdString(id + "  " + app.GetString("extension_id"));
  }
  section("Sidebar apps", apps);
  QStringList journal;
  for (auto const& entry : framework::HostJournal::Entries()) journal << QString::fromStdString(entry);
  journal_->setPlainText(journal.join('\n'));
  RebuildExtensionButtons();
}

QString MeetingWindow::StatusText() const {
  QStringList lines{module_state_->text()};
  for (int i = 0; i < registry_->topLevelItemCount(); ++i) {
    QTreeWidgetItem* top = registry_->topLevelItem(i);
    lines << top->text(0);
    for (int j = 0; j < top->childCount(); ++j) lines << "  " + top->child(j)->text(0);
  }
  return lines.join('\n');
}

int MeetingWindow::ShowChatPanel() {
  const int built = chat_panel_->Populate();
  tabs_->setCurrentWidget(chat_panel_);
  return built;
}

void MeetingWindow::DisposeChatPanel() { chat_panel_->Clear(); }

int MeetingWindow::ShowFloatingViews() {
  if (!floating_) {
    floating_ = new ExtensionHostWidget("contributes:app.inmeeting_float", this);
    floating_->hide();
    floating_->SetFloatingParent(overlay_container_);
  }
  const int built = floating_->Populate();
  // A nudge, as the window's first placement would give: the views place
  // themselves over it.
  QResizeEvent resize(size(), size());
  QCoreApplication::sendEvent(this, &resize);
  return built;
}

void MeetingWindow::ToggleScreenShare(bool sharing) {
  meeting_.screen_share().SetSelfSharing(sharing);
  stage_->setProperty("sharing", sharing);
  stage_->update();
  if (!floating_ || floating_->views().empty()) return;
  // The client lays its floating views out again for the shared screen: the
  // chat's bullets then stand in a window of their own beside it.
  floating_->Clear();
  floating_->SetBuildParams(Variant(Variant::Map{{"screen_share_emoji", sharing}}));
  ShowFloatingViews();
}

void MeetingWindow::DisposeFloatingViews() {
  if (floating_) floating_->Clear();
}

bool MeetingWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == stage_ && event->type() == QEvent::Resize) overlay_container_->setGeometry(stage_->rect());
  return QWidget::eventFilter(watched, event);
}

QPixmap MeetingWindow::GrabWithOverlays() {
  QPixmap shot = grab();
  QPainter painter(&shot);
  for (QWidget* top : QApplication::topLevelWidgets()) {
    const QString name = top->objectName();
    const bool floating = name == "EmojiFloatWndWidget-InMeeting" || name == "DanmuContainer" ||
                          name == "ChatMemberSelectView";
    if (top == this || !top->isVisible() || !floating) {
      continue;
    }
    painter.drawPixmap(top->frameGeometry().topLeft() - frameGeometry().topLeft(), top->grab());
  }
  return shot;
}

void MeetingWindow::closeEvent(QCloseEvent* event) {
  QWidget::closeEvent(event);
  emit Left();
}
