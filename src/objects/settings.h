#pragma once

#include <QString>
#include <QStringList>

#include "objects/mail_standards.h"
#include "objects/setting_keys.h"
#include "objects/user_care.h"
#include "storage/context.h"

namespace vorn {

/// Where the message that is chosen in a list is shown.
enum class PanePlace { Nowhere = 0, Under = 1, Right = 2 };

/// How much room a message has in a list.
enum class RowHeight { Normal = 0, Roomy = 1, Dense = 2 };

/// The language of the interface from the next start on.
enum class LanguageChoice { System = 0, Japanese = 1, English = 2 };

/// What has a font of its own.
enum class FontUse { List, Read, Written };

/// The content types that are shown as text while the settings say nothing.
QStringList DefaultTextTypes();

/// A font that the user chose: an empty family and 0 points are the usual ones.
struct FontChoice {
  QString family;
  int points = 0;
};

/// The settings of the logged-in profile, by the names that their object "logo" has for them; the
/// object is loaded when it is not yet. What it does not say, or where it does not exist, is as
/// documented: off, if nothing else is told here. How folders are listed say `ListSettings`, how
/// new mail is announced `NoticeSettings`, how messages are written `EditSettings`.
class Settings {
 public:
  explicit Settings(Context& context);

  const DiskPtr& Bag() const { return bag_; }

  PanePlace ReadingPane() const;
  void SetReadingPane(PanePlace place) {
    bag_->Let(setting::kReadingPane, static_cast<int>(place));
  }
  RowHeight Rows() const;
  /// Whether a message that is only HTML opens as HTML.
  bool IsHtmlFirst() const { return bag_->Flag(setting::kHtmlFirst); }
  /// Whether tool bars have icons alone.
  bool HasIconToolbar() const { return bag_->Flag(setting::kToolbarIcon); }
  /// On by default.
  bool ShowsStatusBar() const { return bag_->Flag(setting::kStatusBar, true); }
  bool ShowsTaskTray() const { return bag_->Flag(setting::kTaskTray); }
  /// Whether bookmarks open in the desktop's browser.
  bool OpensWebOutside() const { return bag_->Flag(setting::kWebOutside); }
  /// Whether scripts run only at sites where the user allowed them.
  bool AsksForScripts() const { return bag_->Flag(setting::kScriptsAsked); }
  /// Whether the program comes to the front when it is started again.
  bool ComesForward() const { return bag_->Flag(setting::kComesForward); }
  LanguageChoice Language() const;

  /// The minutes between two automatic checks; 0 without them.
  int CheckMinutes() const;
  /// Whether what happens again and again with an account is one event.
  bool FoldsEvents() const { return bag_->Flag(setting::kEventsFolded); }
  /// Whether a message has the time at which its server took it in, in place of now.
  bool TakesServersTime() const { return bag_->Flag(setting::kReceivedTime); }
  /// Whether receipts are sent to those who ask for them, and edited before.
  bool SendsReceipts() const { return bag_->Flag(setting::kReceipts); }
  bool EditsReceipts() const { return bag_->Flag(setting::kEditReceipts); }

  /// Whether text is wrapped when it is sent.
  bool WrapsLines() const { return bag_->Flag(setting::kWrapLines); }
  MailStandards Standards() const {
    return MailStandards::All(bag_->Flag(setting::kStandardHeaders));
  }
  /// Whether no address is selected before the user searches.
  bool SearchesAddresses() const { return bag_->Flag(setting::kAddressSearch); }
  UserCare Care() const { return UserCare::All(bag_->Flag(setting::kCareful)); }

  /// The content types that are shown as text, `DefaultTextTypes` by default.
  QStringList TextTypes() const;
  FontChoice Font(FontUse use) const;

 private:
  DiskPtr bag_;
};

}  // namespace vorn
