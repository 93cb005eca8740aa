#pragma once

#include <QObject>
#include <functional>
#include <string>
#include <vector>

class QTimer;

namespace sim {

class MeetingSimulator;

// People in the simulated meeting who chat on their own: text with links and
// emoji, pictures (drawn at run time into the user's cache), a file to
// download, the meeting's notice (edited a minute after it is published),
// the shop's goods card, a message taken back and one's own message that
// failed to send.
class ScriptedParticipants : public QObject {
  Q_OBJECT

 public:
  explicit ScriptedParticipants(MeetingSimulator& meeting, QObject* parent = nullptr);
  ~ScriptedParticipants() override;

  // The scripted people take their seats in the meeting's member list (the
  // one named "(Host)" as its host).
  void JoinMeeting();
  // Plays the script, one step every `step_ms`.
  void Start(int step_ms = 350);
  void Stop();
  bool finished() const { return next_step_ >= steps_.size(); }
  // How long after publishing the meeting's notice the host edits it
  // (a minute by default).
  void set_notice_edit_delay_ms(int ms) { notice_edit_delay_ms_ = ms; }
  // Messages posted so far, in order.
  std::vector<std::string> const& posted() const { return posted_; }

  // Writes a picture of `width` by `height` to `path`, drawn from `seed`.
  static bool DrawPicture(std::string const& path, int width, int height, int seed);
  // Writes a square product shot of a mug, `side` pixels wide, to `path`.
  static bool DrawGoodsPicture(std::string const& path, int side);

 private:
  void BuildScript();
  void RunStep();
  std::string Text(int who, std::string const& text);
  std::string Image(int who, int width, int height, int seed);
  std::string File(int who, std::string const& name, int64_t size);
  // The meeting's shop posts an offer, drawn in the configured layout.
  std::string GoodsCard(int who);
  // The host publishes `text` followed by `link` as the meeting's notice.
  void PublishNotice(std::string const& text, std::string const& link);

  MeetingSimulator& meeting_;
  QTimer* timer_ = nullptr;
  std::vector<std::function<void()>> steps_;
  size_t next_step_ = 0;
  std::vector<std::string> posted_;
  int image_count_ = 0;
  int notice_edit_delay_ms_ = 60000;
};

}  // namespace sim
