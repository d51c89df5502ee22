#include "transfer/smtp/outgoing_body.h"

namespace vorn {
namespace {

constexpr qsizetype kBodySliceBytes = 256 * 1024;
constexpr qsizetype kEndMarkBytes = 5;

}  // namespace

void OutgoingBody::Begin() {
  wire_ += ".\r\n";
  hasBegun_ = true;
}

QByteArray OutgoingBody::NextSlice() {
  if (!IsUnderWay()) return {};
  const qsizetype rest = wire_.size() - sent_;
  const qsizetype slice = rest < kBodySliceBytes + kEndMarkBytes ? rest : kBodySliceBytes;
  sent_ += slice;
  return wire_.sliced(sent_ - slice, slice);
}

}  // namespace vorn
