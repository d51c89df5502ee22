#pragma once

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
};

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
