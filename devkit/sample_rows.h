#pragma once

#include <QString>
#include <QVector>
#include <cstdint>

namespace devkit {

// One row of sample chat: a message bubble or a time tip between messages.
struct SampleRow {
  enum Kind { kMessage = 0, kTimeTip = 1 };
  QString key;
  Kind kind = kMessage;
  QString sender;
  QString text;
};

// `count` rows of chat-like texts, from a one-word reply to a long
// paragraph, with a time tip now and then. The same seed gives the same rows.
QVector<SampleRow> MakeSampleRows(int count, uint32_t seed = 7);

}  // namespace devkit
