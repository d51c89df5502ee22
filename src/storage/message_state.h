#pragma once

#include <QString>

namespace vorn {

/// Message states, the values of the column `STATUS`. The negated value marks a message in the
/// dust.
enum MessageStatus : int {
  kStatusEdit = 1,
  kStatusWaiting = 2,
  kStatusSent = 3,
  kStatusReceived = 4
};

/// What the column says of a message.
struct StoredState {
  MessageStatus status = kStatusEdit;
  bool isDust = false;

  static StoredState Of(int stored) {
    return {static_cast<MessageStatus>(stored < 0 ? -stored : stored), stored < 0};
  }
  int Stored() const { return isDust ? -status : status; }
  bool operator==(const StoredState&) const = default;
};

/// The conditions on the column for what is outside the dust bin and in it.
inline const QString kOutsideDust = QStringLiteral("STATUS > 0");
inline const QString kInDust = QStringLiteral("STATUS < 0");

/// What the note of an attempt to send a message says, the values of `send_attempt.STATE`: the
/// attempt is under way, or nobody knows whether the message arrived.
enum AttemptState { kAttemptUnderWay = 1, kAttemptDoubtful = 2 };

/// Positions of a message's flag string, the column `FIELD_FLAG`, counted from 1. What the message
/// itself says ends with the attachments; behind that stands what the user did with it.
enum FlagPosition {
  kFlagCode = 1,
  kFlagPriority,
  kFlagNew,
  kFlagAttachment,
  kFlagAnswered,
  kFlagForwarded,
  kFlagStar
};

}  // namespace vorn
