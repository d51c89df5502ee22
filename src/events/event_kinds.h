#pragma once

namespace vorn {

enum EventLevel { kEventInformation = 0, kEventError = 1 };

/// What an event refers to.
enum EventMode { kEventObject = 0, kEventMessage = 1 };

}  // namespace vorn
