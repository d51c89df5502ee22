#pragma once

namespace vorn {

/// How the user is kept from slips and surprises. One setting decides all of it; older profiles are
/// without.
struct UserCare {
  bool mayStay;           ///< the end of the program can be called off at an edited message
  bool dropsBlank;        ///< nothing is asked about a new message in which nothing stands
  bool asksToSendAgain;   ///< what was sent goes once more only on the user's word
  bool skipsRefused;      ///< what a server has refused is not offered at each check
  bool asksNothingAlone;  ///< checks that nobody asked for ask nothing
  bool knowsErased;       ///< what was erased is not received once more
  bool knowsFormerFiles;  ///< nor what lies in a file that was used before
  bool hidesDust;         ///< what was thrown away is in the dust bin alone
  bool namesContents;     ///< a folder that is named in a condition stands for what it shows

  static constexpr UserCare All(bool on) {
    return {.mayStay = on,
            .dropsBlank = on,
            .asksToSendAgain = on,
            .skipsRefused = on,
            .asksNothingAlone = on,
            .knowsErased = on,
            .knowsFormerFiles = on,
            .hidesDust = on,
            .namesContents = on};
  }
};

}  // namespace vorn
