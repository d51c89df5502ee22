#include "objects/account.h"

#include <algorithm>

#include "objects/object_types.h"
#include "objects/save_object.h"
#include "storage/ui.h"

namespace vorn {
namespace {

bool HasControlCharacter(const QString& text) {
  return std::any_of(text.begin(), text.end(),
                     [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7F; });
}

DiskPtr ToObject(const QString& serialId, const AccountValues& values) {
  auto account = std::make_shared<Disk>(serialId);
  const auto set = [&account](const char16_t* key, const QVariant& value) {
    account->Let(QString::fromUtf16(key), value);
  };
  set(u"FormName", object_type::kAccount);
  set(u"Object", values.name);
  set(u"ToolTipText", QString());
  set(u"Draw", object_type::kAccount);
  set(u"Default", values.isDefault);
  set(u"System", false);
  set(u"Enabled", true);
  set(u"Parent", QString());
  set(u"Mailaddress", values.address);
  set(u"Display", values.display);
  set(u"EventLog", true);
  set(u"InMailServer", values.inServer);
  set(u"InMailServerPort", QString::number(values.inPort));
  set(u"InMailServerUser", values.inUser);
  set(u"InMailServerPassword", values.inPassword);
  set(u"InMailServerPasswordSave", true);
  set(u"InMailServerProtocol", static_cast<int>(values.inProtocol));
  set(u"InMailServerDelete", values.deleteOnServer);
  set(u"InMailServerSecurity", values.inSecurity);
  set(u"OutMailServer", values.outServer.isEmpty() ? values.inServer : values.outServer);
  set(u"OutMailServerPort", QString::number(values.outPort));
  set(u"OutMailServerProtocol", 0);
  set(u"OutMailServerSecurity", values.outSecurity);
  set(u"OutMailServerAuth", !values.outUser.isEmpty());
  set(u"OutMailServerUser", values.outUser);
  set(u"OutMailServerPassword", values.outPassword);
  return account;
}

}  // namespace

QString PortWords() {
  return Ui::tr("ポート番号は1から65535までの数です。");
}

QString ValidateAccount(const Context& context, const AccountValues& values) {
  const auto probe = std::make_shared<Disk>();
  probe->Let(QStringLiteral("Object"), values.name);
  const QString nameError = ValidateObject(context.Objects, *probe);
  if (!nameError.isEmpty()) return nameError;
  if (!values.address.contains(u'@')) {
    return Ui::tr("メールアドレスに「@」がありません。");
  }
  if (values.inServer.isEmpty()) return Ui::tr("受信サーバーが設定されていません。");
  if (values.inUser.isEmpty()) return Ui::tr("受信サーバーのユーザー名が設定されていません。");
  if (!IsPort(values.inPort) || !IsPort(values.outPort)) {
    return PortWords();
  }
  for (const QString& text :
       {values.name, values.address, values.display, values.inServer, values.inUser,
        values.inPassword, values.outServer, values.outUser, values.outPassword}) {
    if (HasControlCharacter(text)) return Ui::tr("使えない文字（制御文字）があります。");
  }
  return {};
}

Result<DiskPtr> CreateAccount(Context& context, const AccountValues& values) {
  const DiskPtr account = ToObject(context.Data.NewSerialID(object_type::kAccount + u'_'), values);
  const Result<> saved = SaveObject(context, DatabaseKind::Profile, *account);
  if (!saved) return saved.Error();
  context.Objects.Add(account);
  return account;
}

}  // namespace vorn
