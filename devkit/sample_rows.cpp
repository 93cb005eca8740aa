#include "devkit/sample_rows.h"

#include <QStringList>

namespace devkit {
namespace {

// A small linear congruential generator: the rows must not depend on the
// standard library's distributions, which differ between builds.
class Lcg {
 public:
  explicit Lcg(uint32_t seed) : state_(seed ? seed : 1) {}
  uint32_t Next() {
    state_ = state_ * 1664525u + 1013904223u;
    return state_ >> 8;
  }
  int Below(int n) { return static_cast<int>(Next() % static_cast<uint32_t>(n)); }

 private:
  uint32_t state_;
};

const QStringList& Words() {
  static const QStringList words = {
      "the",      "slides",     "are",      "shared",  "now",      "can",      "everyone", "see",
      "my",       "screen",     "I",        "think",   "we",       "should",   "move",     "on",
      "to",       "next",       "item",     "budget",  "review",   "draft",    "release",  "notes",
      "thanks",   "great",      "question", "about",   "timeline", "please",   "mute",     "your",
      "microphone", "link",     "in",       "chat",    "agenda",   "meeting",  "recording", "starts",
      "minutes",  "Friday",     "deadline", "team",    "design",   "feedback", "agree",    "yes",
      "no",       "maybe",      "later",    "today",   "tomorrow", "numbers",  "look",     "good",
      "customer", "call",       "follow",   "up",      "email",    "document", "version",  "two"};
  return words;
}

const QStringList& Senders() {
  static const QStringList senders = {"Ada Moreno", "Ben Okafor", "Chen Li", "Dana Weiss", "Eli Haddad",
                                      "Fay Larsen"};
  return senders;
}

QString MakeText(Lcg& rng) {
  // Mostly short replies, some sentences, now and then a paragraph.
  const int roll = rng.Below(100);
  int words = 1 + rng.Below(4);
  if (roll >= 55) words = 5 + rng.Below(14);
  if (roll >= 85) words = 20 + rng.Below(45);
  if (roll >= 97) words = 70 + rng.Below(60);
  QString text;
  for (int i = 0; i < words; ++i) {
    QString word = Words()[rng.Below(Words().size())];
    if (i == 0) word[0] = word[0].toUpper();
    if (i) text += ' ';
    text += word;
    if (i + 1 < words && rng.Below(12) == 0) text += ',';
  }
  text += rng.Below(5) == 0 ? "?" : ".";
  return text;
}

}  // namespace

QVector<SampleRow> MakeSampleRows(int count, uint32_t seed) {
  Lcg rng(seed);
  QVector<SampleRow> rows;
  rows.reserve(count);
  int minutes = 9 * 60;
  for (int i = 0; i < count; ++i) {
    SampleRow row;
    row.key = QString("m%1").arg(i);
    if (i > 0 && rng.Below(14) == 0) {
      minutes = (minutes + 1 + rng.Below(9)) % (24 * 60);
      row.kind = SampleRow::kTimeTip;
      row.text = QString("%1:%2").arg(minutes / 60, 2, 10, QChar('0')).arg(minutes % 60, 2, 10, QChar('0'));
    } else {
      row.kind = SampleRow::kMessage;
      row.sender = Senders()[rng.Below(Senders().size())];
      row.text = MakeText(rng);
    }
    rows.push_back(row);
  }
  return rows;
}

}  // namespace devkit
