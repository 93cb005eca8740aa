#include "sim/scripted_participants.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QTimer>

#include "base/log/log.h"
#include "framework/chat/chat_file_utils.h"
#include "framework/chat/chat_utils.h"
#include "sim/chat_records.h"
#include "sim/meeting_sim.h"

namespace sim {

namespace {

const Sender kPeople[] = {
    {"u-avery", "Avery Quinn"},
    {"u-jordan", "Jordan Blake"},
    {"u-sam", "Sam Rivera"},
    {"u-morgan", "Morgan Ellis"},
    {"u-host", "Riley Chen (Host)"},
};
const Sender kSelf{"u-self", "Alex Morgan"};

Variant Element(std::initializer_list<std::pair<char const*, Variant>> fields) {
  Variant element(base::variant::kVariantTypeMap);
  for (auto const& [key, value] : fields) element.Set(key, value);
  return element;
}

}  // namespace

ScriptedParticipants::ScriptedParticipants(MeetingSimulator& meeting, QObject* parent)
    : QObject(parent), meeting_(meeting) {
  timer_ = new QTimer(this);
  connect(timer_, &QTimer::timeout, this, &ScriptedParticipants::RunStep);
  BuildScript();
}

ScriptedParticipants::~ScriptedParticipants() = default;

void ScriptedParticipants::JoinMeeting() {
  std::vector<Variant> people;
  for (auto const& person : kPeople) {
    people.push_back(Variant::Map{{"user_id", person.user_id},
                                  {"app_uid", person.user_id},
                                  {"app_id", person.app_id},
                                  {"nickname", person.nickname},
                                  {"role", person.user_id == "u-host" ? "host" : "member"}});
  }
  meeting_.members().AddMembers(std::move(people));
}

void ScriptedParticipants::Start(int step_ms) {
  meeting_.faces().Load();
  timer_->start(step_ms);
}

void ScriptedParticipants::Stop() { timer_->stop(); }

void ScriptedParticipants::RunStep() {
  if (next_step_ >= steps_.size()) {
    timer_->stop();
    return;
  }
  steps_[next_step_++]();
}

std::string ScriptedParticipants::Text(int who, std::string const& text) {
  const std::string id = meeting_.messages().Post(TextRecord(meeting_.meeting().meeting_id(), kPeople[who], text));
  if (!id.empty()) posted_.push_back(id);
  return id;
}

bool ScriptedParticipants::DrawPicture(std::string const& path, int width, int height, int seed) {
  QImage image(width, height, QImage::Format_RGB32);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  // A sky, hills and a sun, coloured by the seed: something a person might share.
  static const QColor skies[][2] = {{QColor("#7FB8F0"), QColor("#E8F2FC")},
                                    {QColor("#F3A76B"), QColor("#FCE3C4")},
                                    {QColor("#5C6BC0"), QColor("#C5CAE9")}};
  auto const& sky = skies[seed % 3];
  QLinearGradient gradient(0, 0, 0, height);
  gradient.setColorAt(0, sky[0]);
  gradient.setColorAt(1, sky[1]);
  painter.fillRect(image.rect(), gradient);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(255, 244, 200));
  painter.drawEllipse(QPointF(width * 0.75, height * 0.3), height * 0.09, height * 0.09);
  const QColor hills[] = {QColor("#6BAF6B"), QColor("#4E8F55"), QColor("#3B7345")};
  for (int i = 0; i < 3; ++i) {
    QPainterPath path;
    const double base = height * (0.62 + 0.1 * i);
    path.moveTo(0, height);
    path.lineTo(0, base);
    for (int x = 0; x <= width; x += width / 8) {
      path.lineTo(x, base - height * 0.08 * ((x / (width / 8) + i + seed) % 3));
    }
    path.lineTo(width, height);
    painter.setBrush(hills[i]);
    painter.drawPath(path);
  }
  painter.end();
  QDir().mkpath(QFileInfo(QString::fromStdString(path)).absolutePath());
  return image.save(QString::fromStdString(path), "PNG");
}

bool ScriptedParticipants::DrawGoodsPicture(std::string const& path, int side) {
  QImage image(side, side, QImage::Format_RGB32);
  image.fill(QColor("#FDF1E4"));
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  // A mug on a soft shadow: body, handle and a stripe.
  const double s = side;
  painter.setBrush(QColor(0, 0, 0, 28));
  painter.drawEllipse(QRectF(s * 0.22, s * 0.78, s * 0.5, s * 0.08));
  painter.setBrush(QColor("#198CFF"));
  painter.drawRoundedRect(QRectF(s * 0.25, s * 0.3, s * 0.42, s * 0.5), s * 0.06, s * 0.06);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor("#198CFF"), s * 0.06));
  painter.drawEllipse(QRectF(s * 0.6, s * 0.4, s * 0.18, s * 0.24));
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor("#FFFFFF"));
  painter.drawRect(QRectF(s * 0.25, s * 0.46, s * 0.42, s * 0.07));
  painter.end();
  QDir().mkpath(QFileInfo(QString::fromStdString(path)).absolutePath());
  return image.save(QString::fromStdString(path), "PNG");
}

std::string ScriptedParticipants::GoodsCard(int who) {
  const std::string meeting_id = meeting_.meeting().meeting_id();
  const std::string picture = talvex::ChatUtils::GetOriginalPicFileName("demo-goods-mug", meeting_id);
  const std::string icon = talvex::ChatUtils::GetOriginalPicFileName("demo-shop-icon", meeting_id);
  if (!DrawGoodsPicture(picture, 144) || !DrawPicture(icon, 32, 32, 1)) {
    TXLOG_WARN << "demo goods pictures not written";
  }
  Variant goods(base::variant::kVariantTypeMap);
  goods.Set("goods_name", "Talvex team mug, 350 ml, dishwasher safe");
  goods.Set("goods_image", picture);
  goods.Set("original_price", 18);
  goods.Set("current_price", 12.5);
  goods.Set("discount_type", 1);
  Variant app(base::variant::kVariantTypeMap);
  app.Set("name", "Team Shop");
  app.Set("icon", icon);
  app.Set("open_app_id", "demo-shop");
  app.Set("ext_data", std::move(goods));
  Variant ext(base::variant::kVariantTypeMap);
  ext.Set("title", "Offer for today's attendees");
  ext.Set("description", "A mug for your next meeting");
  ext.Set("confirm_btn_text", "Buy now");
  ext.Set("notify_desc", "New offer");
  ext.Set("card_layout_type", 2);
  ext.Set("app_info", app.ToJson());
  const std::string id = meeting_.messages().Post(ChatRecord(meeting_id, kPeople[who], 7, Variant(), false, ext));
  if (!id.empty()) posted_.push_back(id);
  return id;
}

std::string ScriptedParticipants::Image(int who, int width, int height, int seed) {
  const std::string meeting_id = meeting_.meeting().meeting_id();
  const std::string image_id = "demo-image-" + std::to_string(++image_count_);
  // The picture arrives already downloaded: it lies where the client keeps chat images.
  if (!DrawPicture(talvex::ChatUtils::GetOriginalPicFileName(image_id, meeting_id), width, height, seed)) {
    TXLOG_WARN << "demo picture not written";
    return std::string();
  }
  Variant content(base::variant::kVariantTypeArray);
  content.Add(Element({{"image_elem_orig_url", Variant("https://images.talvex.example/" + image_id)},
                       {"image_elem_orig_id", Variant(image_id)},
                       {"image_elem_orig_pic_width", Variant(width)},
                       {"image_elem_orig_pic_height", Variant(height)},
                       {"image_elem_thumb_url", Variant("https://images.talvex.example/thumb/" + image_id)},
                       {"image_elem_thumb_id", Variant(image_id + "-thumb")}}));
  const std::string id = meeting_.messages().Post(ChatRecord(meeting_id, kPeople[who], 4, content));
  if (!id.empty()) posted_.push_back(id);
  return id;
}

std::string ScriptedParticipants::File(int who, std::string const& name, int64_t size) {
  Variant ext(base::variant::kVariantTypeMap);
  Variant info(base::variant::kVariantTypeMap);
  info.Set("name", name);
  info.Set("size", size);
  info.Set("status", 5);
  info.Set("progress", 0.0);
  info.Set("id", "demo-file-" + name);
  ext.Set("file_info", info);
  const std::string id =
      meeting_.messages().Post(ChatRecord(meeting_.meeting().meeting_id(), kPeople[who], 8, Variant(), false, ext));
  if (!id.empty()) posted_.push_back(id);
  return id;
}

void ScriptedParticipants::PublishNotice(std::string const& text, std::string const& link) {
  Variant items(base::variant::kVariantTypeArray);
  items.Add(Element({{"item_type", Variant(0)}, {"item_content", Variant(text)}}));
  items.Add(Element({{"item_type", Variant(2)}, {"item_content", Variant(link)}}));
  meeting_.notices().PublishAs(meeting_.context().meeting_id, kPeople[4].user_id, kPeople[4].nickname, 1,
                               items.ToJson());
  // The host's client tells the chat, as every client does after a change.
  Variant content(base::variant::kVariantTypeArray);
  content.Add(Element({{"item_type", Variant(0)}, {"item_content", Variant("Meeting notice: " + text + link)}}));
  const std::string id = meeting_.messages().Post(ChatRecord(meeting_.meeting().meeting_id(), kPeople[4], 6, content));
  if (!id.empty()) posted_.push_back(id);
}

void ScriptedParticipants::BuildScript() {
  auto recalled = std::make_shared<std::string>();
  steps_ = {
      [this] { Text(4, "Welcome, everyone! We'll start in a minute."); },
      [this] { Text(0, "Morning all [Smile] the agenda is at www.talvex-demo.org/agenda"); },
      [this] { Text(1, "Thanks Avery! I've put the slides in the shared folder too."); },
      [this] { Image(2, 960, 600, 0); },
      [this] { Text(2, "That's the view from the offsite venue [Cool]"); },
      [this] { File(1, "Q3-roadmap.pdf", 3 * 1024 * 1024 + 400 * 1024); },
      [this] { Text(1, "It's about 3 MB, open it from the chat when you have a moment."); },
      [this, recalled] { *recalled = Text(3, "oops, wrong chat window"); },
      [this] { Text(0, "Got it, thanks Jordan."); },
      [this, recalled] { meeting_.messages().Revoke(*recalled); },
      [this] {
        // The host publishes the meeting's notice, and edits it a while later.
        PublishNotice(
            "Please keep your microphone muted while others present. Questions go in the chat; we'll take them "
            "at the end of each section. Agenda: ",
            "https://www.talvex-demo.org/agenda");
        QTimer::singleShot(notice_edit_delay_ms_, this, [this] {
          PublishNotice("Change of plan: the Q3 numbers come first, then the offsite. Keep your microphone muted "
                        "while others present. Agenda: ",
                        "https://www.talvex-demo.org/agenda");
        });
      },
      [this] { Text(2, "The roadmap looks good to me."); },
      [this] {
        // One's own message that did not go out.
        Variant record = TextRecord(meeting_.meeting().meeting_id(), kSelf, "Can everyone hear me?", true);
        record.Set("message_status", 3);
        const std::string id = meeting_.messages().Post(record);
        if (!id.empty()) posted_.push_back(id);
      },
      [this] { Text(0, "Yes, loud and clear [ThumbsUp]"); },
      [this] { GoodsCard(4); },
      [this] { Image(1, 600, 800, 2); },
      [this] { Text(3, "Great picture! Details on https://www.talvex-demo.org/offsite"); },
      [this] {
        // The host hands out a red packet, and the local user opens it.
        const Variant host = Variant::Map{{"user_id", kPeople[4].user_id}, {"nickname", kPeople[4].nickname}};
        const Variant self = Variant::Map{{"user_id", kSelf.user_id}, {"nickname", kSelf.nickname}};
        meeting_.red_packets().Open(meeting_.red_packets().Send(host), host, self);
      },
      [this] { meeting_.banners().Notify(1, "Poll open", "Which topic next? Vote in the poll panel."); },
      [this] { Text(2, "Next up: the Q3 numbers."); },
      [this] { Text(0, "Can we keep ten minutes for questions at the end?"); },
      [this] { Text(4, "Yes, we will [ThumbsUp]"); },
  };
}

}  // namespace sim
