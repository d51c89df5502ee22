#include "present/window/page/first_use.h"

#include "mail/store/message_rows.h"
#include "objects/object_types.h"
#include "objects/profile/profile_password.h"
#include "objects/select_objects.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn {

namespace {

struct Step {
  QString name;
  QString text;
};

bool HasAnyAccount(const Context& context) {
  return !SelectObjects(context.Objects, *context.Session, object_type::kAccount)->IsEmpty();
}

// What is bold leads there.
QString Linked(const Step& step) {
  QString text = step.text;
  text.replace(QStringLiteral("<b>"),
               QStringLiteral("<b><a href=\"vorn:") + step.name + QStringLiteral("\">"));
  return QStringLiteral("<li>") + text.replace(QStringLiteral("</b>"), QStringLiteral("</a></b>")) +
         QStringLiteral("</li>");
}

}  // namespace

bool IsFirstUse(Context& context) {
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  const RecordsetPtr rows = mail ? MessageRows(context.Data).All() : nullptr;
  return rows != nullptr && rows->Eof();
}

QString FirstUseText(const Context& context) {
  const QString untilThen =
      CodeFileOf(context, *context.Session).NamesSecret()
          ? Ui::tr(
                "パスワードを決めるまで、このパソコンにあなたとしてログインした人はメールを読めます"
                "。"
                "鍵はデスクトップのキーリングにあります。なくなったときのために、同じ所で回復コード"
                "を"
                "印刷しておいてください。")
          : Ui::tr(
                "パスワードを決めるまで、プロファイルのフォルダを手に入れた人はメールを読めます。");
  QList<Step> steps = {
      {first_step::kAccount,
       Ui::tr("<b>アカウントの追加</b>: メニューの「ファイル」→「新規作成」→「アカウント」"
              "（Alt+F、N、A）。受信サーバーと送信サーバーは「接続を確認」で試せます。")},
      {first_step::kReceive,
       Ui::tr("<b>送受信</b>: メニューの「ツール」→「メッセージ送受信」（Ctrl+M）。")},
      {first_step::kImport,
       Ui::tr("<b>これまでのメール</b>: メニューの「ファイル」→「ファイルから取り込む」"
              "または「フォルダから取り込む」。mbox、Maildir、emlのファイルを読みます。")},
      {first_step::kPassword,
       Ui::tr(
           "<b>パスワード</b>: ツリーの「プロファイル」の下の名前で右クリックし、「プロパティ」。"
           "%1")
           .arg(untilThen)},
      {first_step::kGuide, Ui::tr("<b>使い方</b>: F1キー。")}};
  if (HasOwnPassword(context)) steps.removeAt(steps.size() - 2);
  const bool hasAccount = HasAnyAccount(context);
  if (hasAccount) steps.move(0, steps.size() - 2);  // another one is not what comes next

  QString text = QStringLiteral("<h2>") + Ui::tr("ようこそ") + QStringLiteral("</h2><p>") +
                 (hasAccount ? Ui::tr("メッセージはまだありません。メールを受信してください。")
                             : Ui::tr("メールを受信するには、アカウントを追加してください。")) +
                 QStringLiteral("</p><ul>");
  for (const Step& step : steps) text += Linked(step);
  return text + QStringLiteral("</ul>");
}

}  // namespace vorn
