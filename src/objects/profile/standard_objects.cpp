#include "objects/profile/standard_objects.h"

#include <initializer_list>
#include <utility>

#include "objects/any_object.h"
#include "objects/bookmark_object.h"
#include "objects/folder_object.h"
#include "objects/layouts_object.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/placement.h"
#include "objects/profile/version_serial.h"
#include "objects/reply_line.h"
#include "objects/save_object.h"
#include "objects/setting_keys.h"
#include "storage/message_state.h"
#include "storage/session/session_result.h"
#include "storage/ui.h"

namespace vorn {
namespace {

using Values = std::initializer_list<std::pair<QString, QVariant>>;

struct StandardFolder {
  const SerialId& serialId;
  QString name;
  QString draw;
  QString sql;
  QString toolTip;
};

// Profiles from this version on have an event log.
constexpr qint32 kEventLogVersion = 8000;

void SetAll(Disk& object, Values values) {
  for (const auto& [key, value] : values) object.Let(key, value);
}

DiskPtr NewObject(const SerialId& serialId, const QString& type, const QString& name,
                  const QString& toolTip, const QString& draw) {
  auto object = std::make_shared<Disk>(serialId);
  AnyObject::Begin(*object, type, name, draw);
  AnyObject::SetToolTip(*object, toolTip);
  return object;
}

Result<> SaveNew(Context& context, const DiskPtr& object) {
  const Result<> saved = SaveObject(context, DatabaseKind::Profile, *object);
  if (saved) context.Objects.Add(object);
  return saved;
}

Result<> CreateFolders(Context& context) {
  const StandardFolder folders[] = {
      {fixed_serial::kInbox, Ui::tr("受信", "folder"), QStringLiteral("activedown"),
       QStringLiteral("STATUS = %1").arg(kStatusReceived),
       Ui::tr("受信メッセージが保存されているフォルダです。")},
      {fixed_serial::kOutbox, Ui::tr("送信", "folder"), QStringLiteral("activeup"),
       QStringLiteral("STATUS = %1").arg(kStatusSent),
       Ui::tr("送信済みメッセージが保存されているフォルダです。")},
      {fixed_serial::kEditWait, Ui::tr("待ち", "folder"), QStringLiteral("activewait"),
       QStringLiteral("STATUS = %1 OR STATUS = %2").arg(kStatusEdit).arg(kStatusWaiting),
       Ui::tr("編集中および送信待ちのメッセージが保存されているフォルダです。")},
      {fixed_serial::kDust, Ui::tr("くずかご", "folder"), QStringLiteral("dust"), kInDust,
       Ui::tr("くずかごに入れられたメッセージが保存されているフォルダです。")},
  };
  for (const StandardFolder& folder : folders) {
    if (LoadObject(context, folder.serialId) != nullptr) continue;
    const DiskPtr object =
        NewObject(folder.serialId, object_type::kFolder, folder.name, folder.toolTip, folder.draw);
    AnyObject::SetSystem(*object, true);
    FolderObject::SetConditions(*object, true, folder.sql, {});
    if (const Result<> saved = SaveNew(context, object); !saved) return saved;
  }
  return {};
}

// How a new profile looks: pages in tabs, in a window that leaves a quarter of the screen, and
// messages in a table.
Result<> CreateLook(Context& context) {
  const auto make = [&context](const SerialId& serialId, void (*fill)(Disk&)) -> Result<> {
    if (LoadObject(context, serialId) != nullptr) return {};
    const auto object = std::make_shared<Disk>(serialId);
    fill(*object);
    return SaveNew(context, object);
  };
  const Result<> placed = make(fixed_serial::kMainPlacement, [](Disk& placement) {
    Placement::SetArrangement(placement, Arrangement::Tabs);
    Placement::SetShare(placement, 75);
  });
  if (!placed) return placed;
  return make(fixed_serial::kLayout,
              [](Disk& layouts) { LayoutsObject::SetShared(layouts, QStringLiteral("table")); });
}

// The look of new profiles that an earlier one has not: keys of the settings.
QList<std::pair<QString, QVariant>> LookSettings() {
  return {{setting::kReadingPane, 1},      {setting::kHtmlFirst, true},
          {setting::kReceivedTime, true},  {setting::kShownOnce, true},
          {setting::kEventsFolded, true},  {setting::kReplyLine, UsualReplyLine()},
          {setting::kSignatureAbove, true}};
}

// Whether the profile has all of that look but for what came to it later and takes nothing away,
// which it then gets.
bool FollowLook(Disk& settings) {
  if (settings.Get(setting::kEventsFolded).isValid()) return false;
  for (const auto& [key, value] : LookSettings()) {
    if (key != setting::kEventsFolded && !settings.Get(key).toBool()) return false;
  }
  settings.Let(setting::kEventsFolded, true);
  return true;
}

// The first states of the settings. Where a user of today needs another behaviour than the one an
// absent key stands for, the first state turns it on.
Result<> CreateSettings(Context& context) {
  DiskPtr settings = LoadObject(context, fixed_serial::kSettings);
  if (settings != nullptr) {
    const bool isFollowing = FollowLook(*settings);
    if (!isFollowing && settings->Text(setting::kInstalled) == context.VersionText) return {};
    settings->Let(setting::kInstalled, context.VersionText);
    return SaveObject(context, DatabaseKind::Profile, *settings);
  }
  settings = std::make_shared<Disk>(fixed_serial::kSettings);
  SetAll(*settings, {{setting::kTextTypes, QStringLiteral("text/plain")},
                     {setting::kPages, true},
                     {setting::kRows, 100},
                     {setting::kOpensNewest, true},
                     {setting::kPageEscape, true},
                     {setting::kStandardHeaders, true},
                     {setting::kUsualReplies, true},
                     {setting::kAddressSearch, true},
                     {setting::kCareful, true},
                     {setting::kWebOutside, true},
                     {setting::kScriptsAsked, true},
                     {setting::kComesForward, true},
                     {setting::kChecks, true},
                     {setting::kCheckMinutes, 10},
                     {setting::kNotice, true},
                     {setting::kNoticeDialog, false},
                     {setting::kNoticeDesktop, true},
                     {setting::kNoticeSoundAlone, true},
                     {setting::kEditMode, true},
                     {setting::kSubjectReply, QStringLiteral("Re")},
                     {setting::kSubjectForward, QStringLiteral("Fw")},
                     {setting::kQuoteSign, QStringLiteral("> ")},
                     {setting::kToolbarIcon, false},
                     {setting::kInstalled, context.VersionText}});
  for (const auto& [key, value] : LookSettings()) settings->Let(key, value);
  const Result<> saved = SaveNew(context, settings);
  return saved ? CreateLook(context) : saved;
}

Result<> CreateBookmarks(Context& context) {
  const DiskPtr list =
      NewObject(context.Data.NewSerialID(QStringLiteral("_bookmark")), object_type::kBookmark,
                Ui::tr("お気に入り。"), QString(), QStringLiteral("bookmark"));
  // Places of the reserved example domain: the project has no site of its own yet.
  AnyObject::SetDefault(*list, true);
  BookmarkObject::SetLines(*list,
                           {QStringLiteral("https://www.example.com/ ") + Ui::tr("ホームページ"),
                            QStringLiteral("https://www.example.org/ ") + Ui::tr("掲示板")});
  return SaveNew(context, list);
}

Result<> CreateEventLog(Context& context) {
  if (LoadObject(context, fixed_serial::kEventLog) != nullptr) return {};
  const DiskPtr log = NewObject(fixed_serial::kEventLog, object_type::kEvent,
                                Ui::tr("イベント", "log"), QString(), QStringLiteral("event"));
  AnyObject::SetEnabled(*log, true);
  AnyObject::SetSystem(*log, true);
  return SaveNew(context, log);
}

}  // namespace

Result<> CreateStandardObjects(Context& context) {
  const DiskPtr settings = LoadObject(context, fixed_serial::kSettings);
  const qint32 installed =
      settings == nullptr ? 0 : VersionSerialID(settings->Text(setting::kInstalled));
  Result<> made = CreateFolders(context);
  if (made) made = CreateSettings(context);
  if (made && installed == 0) made = CreateBookmarks(context);
  if (made && installed < kEventLogVersion) made = CreateEventLog(context);
  return made;
}

bool HasFormerLook(Context& context) {
  const DiskPtr settings = LoadObject(context, fixed_serial::kSettings);
  return settings != nullptr && !settings->Get(LookSettings().first().first).isValid();
}

Result<> SettleLook(Context& context, bool isNew) {
  const DiskPtr settings = LoadObject(context, fixed_serial::kSettings);
  if (settings == nullptr) return ReasonOf(context.Data);  // why they cannot be read
  return ChangeObject(context, fixed_serial::kSettings, [isNew](Disk& bag) {
    for (const auto& [key, value] : LookSettings()) {
      if (isNew && !bag.Get(key).isValid()) bag.Let(key, value);
    }
    if (!isNew) bag.Let(LookSettings().first().first, 0);
  });
}

}  // namespace vorn
