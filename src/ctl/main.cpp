// vornctl: the command line over the same libraries and the same store, for scripts.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QStringEncoder>
#include <csignal>
#include <cstdio>
#include <tuple>

#include "ctl/command.h"
#include "desktop/desktop_secrets.h"
#include "frame/language_texts.h"
#include "frame/process_privacy.h"
#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "frame/ui_language.h"
#include "objects/any_object.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/profile/lost_files.h"
#include "objects/shown_object.h"
#include "storage/base/shown_text.h"
#include "storage/known_damage.h"
#include "storage/ui.h"

namespace vorn::ctl {
namespace {

constexpr qsizetype kMostInComplaint = 20000;  // may name many messages
QString Usage() {
  return Ui::tr(
             "使い方: vornctl [--data フォルダ] [--profile 名前] [--password-fd 番号]\n"
             "      [--create] [--reconnect ファイル]... [--former-password-fd 番号] コマンド\n"
             "\n") +
         Ui::tr(
             "  account add --name 名前 --address アドレス [--display 表示名]\n"
             "      --in-server サーバー [--in-port ポート] --in-user ユーザー --in-password-fd "
             "番号\n"
             "      [--in-protocol pop3|apop] [--in-security none|starttls|tls] "
             "[--delete-on-server]\n"
             "      [--out-server サーバー] [--out-port ポート] [--out-security "
             "none|starttls|tls]\n"
             "      [--out-user ユーザー --out-password-fd 番号] [--default]\n"
             "  receive [--account 名前] [--json]\n"
             "  send [ファイル]... [--account 名前] [--json]\n"
             "  doubtful [list [--json] | again メッセージ | sent メッセージ]\n"
             "  list フォルダ [--json]\n"
             "  page フォルダ [--page 番号] --out ファイル\n"
             "  rules list|add 条件|test ファイル|- [--json]\n"
             "  import パス... [--folder フォルダ] [--json]      （mbox、Maildir、eml）\n"
             "  export フォルダ [--format mbox|maildir|eml] --out パス [--overwrite] [--json]\n"
             "  check [--accept-damage] [--json]\n"
             "  inspect ファイル|- [--json]\n"
             "  open 0-6 ファイル|-|メッセージ [--json]\n"
             "  compose --from アドレス --to アドレス [--cc アドレス] [--bcc アドレス] --subject "
             "件名\n"
             "      --body-file ファイル [--attach ファイル]... [--charset "
             "jis|euc|sjis|utf8|auto]\n"
             "      [--mime base64|qp|uu] --out ファイル\n"
             "\n") +
         Ui::tr(
             "フォルダは「受信」などの名前かシリアル番号です。パスワードは引数に書かず、ファイル記"
             "述"
             "子から\n"
             "読み込みます。プロファイルのファイルがなくなったときは、--reconnect "
             "でつなぎ直すか、--create で\n"
             "空のファイルを作ります。終了コード: 0 成功、1 失敗、2 使い方の誤り、3 "
             "ログインの失敗、\n"
             "4 読み込めないメッセージを除いて終了");
}

struct Command {
  QString name;
  int (*run)(Context&, const Arguments&);
  QSet<QString> options;
};

const QList<Command>& Commands() {
  static const QList<Command> commands = {
      {QStringLiteral("account add"), AddAccount,
       CredentialOptions() + QSet<QString>{QStringLiteral("name"), QStringLiteral("address"),
                                           QStringLiteral("display"), QStringLiteral("in-server"),
                                           QStringLiteral("in-port"), QStringLiteral("in-protocol"),
                                           QStringLiteral("delete-on-server"),
                                           QStringLiteral("default"), QStringLiteral("in-security"),
                                           QStringLiteral("out-server"), QStringLiteral("out-port"),
                                           QStringLiteral("out-security")}},
      {QStringLiteral("receive"), Receive, {QStringLiteral("account"), QStringLiteral("json")}},
      {QStringLiteral("send"), Send, {QStringLiteral("account"), QStringLiteral("json")}},
      {QStringLiteral("doubtful"), Doubtful, {QStringLiteral("json")}},
      {QStringLiteral("list"), ListFolder, {QStringLiteral("json")}},
      {QStringLiteral("import"), Import, {QStringLiteral("folder"), QStringLiteral("json")}},
      {QStringLiteral("export"),
       Export,
       {QStringLiteral("format"), QStringLiteral("out"), QStringLiteral("overwrite"),
        QStringLiteral("json")}},
      {QStringLiteral("check"),
       CheckFiles,
       {QStringLiteral("json"), QStringLiteral("accept-damage")}},
      {QStringLiteral("rules"), Rules, {QStringLiteral("json")}},
      {QStringLiteral("open"), OpenStored, {QStringLiteral("json")}},
      {QStringLiteral("page"), WritePage, {QStringLiteral("page"), QStringLiteral("out")}},
  };
  return commands;
}

// Empty without the option.
Result<QString> TakePassword(const Arguments& arguments, const QString& option) {
  return arguments.Has(option) ? ReadSecret(arguments, option) : QString();
}

// Opens the data folder, making a first profile when there is none, and logs in.
Result<> LogInToProfile(Context& context, const Arguments& arguments) {
  const Result<QString> password = TakePassword(arguments, QStringLiteral("password-fd"));
  if (!password) return password.Error();
  const Result<QString> former = TakePassword(arguments, QStringLiteral("former-password-fd"));
  if (!former) return former.Error();
  const QString folder = ChooseAppFolder(arguments.Text(QStringLiteral("data")),
                                         QCoreApplication::applicationDirPath());
  const auto unreadable =
      arguments.Has(QStringLiteral("create")) ? UnreadableList::SetAside : UnreadableList::Keep;
  if (const Result<> started = StartUp(context, folder, unreadable); !started) return started;
  if (context.Objects.IsEmpty()) {
    const Result<DiskPtr> made = CreateFirstProfile(context);
    if (!made) return made.Error().Behind(Ui::tr("プロファイルを作成できません。"));
  }
  for (const QString& notice : context.Notices) Complain(notice, 0);
  const LostFileChoice choice{arguments.Has(QStringLiteral("create")),
                              arguments.All(QStringLiteral("reconnect")),
                              former->isEmpty() ? QStringList() : QStringList{*former}};
  const Result<> loggedIn =
      LogIn(context, arguments.Text(QStringLiteral("profile")), *password, choice);
  if (loggedIn) return loggedIn;
  StorageError reason = loggedIn.Error();
  if (reason.kind == StorageError::Kind::NotFound) {
    reason.text += Ui::tr(
        "\nファイルをつなぎ直すときは --reconnect ファイル を、新しい空の"
        "ファイルを作るときは --create を付けてください。--reconnect は、そのファイルの複製を今の"
        "パスワードに合わせて元の場所に置き、指定したファイルは変えません。");
  }
  if (!choice.reconnect.isEmpty() && choice.former.isEmpty() &&
      reason.kind == StorageError::Kind::WrongPassword) {
    reason.text += Ui::tr(
        "\nそのファイルのときのパスワードか回復コードを --former-password-fd で渡してください。");
  }
  return reason;
}

// What the command met on its way and may not have shown.
bool TellDamage(Context& context) {
  const QStringList files = context.Data.Damage().Files();
  const bool isKept = KeepDamage(context);
  for (const QString& file : files) {
    const auto damage = FindDamage(context, file);
    Complain(DamageWords(damage.value_or(KnownDamage{QFileInfo(file).fileName(), {}, {}, false})) +
                 Ui::tr("vornctl check で調べてください。"),
             0);
  }
  if (!isKept) Complain(Ui::tr("壊れていることを記録できません。"), 0);
  return !files.isEmpty();
}

int RunCommand(const Command& command, const Arguments& arguments) {
  const QSet<QString> everywhere = {
      QStringLiteral("data"),   QStringLiteral("profile"),   QStringLiteral("password-fd"),
      QStringLiteral("create"), QStringLiteral("reconnect"), QStringLiteral("former-password-fd")};
  const QStringList unknown = arguments.Unknown(command.options + everywhere);
  if (!unknown.isEmpty()) {
    return Complain(Ui::tr("--%1 は使えません。").arg(unknown.first()), kExitUsage);
  }
  Context context;
  context.Secrets = DesktopSecrets();
  const Result<> loggedIn = LogInToProfile(context, arguments);
  if (!loggedIn) return Complain(loggedIn.Error().text, kExitLogin);
  const int code = command.run(context, arguments);
  const bool isDamaged = TellDamage(context);
  std::ignore = NoteFiles(context);  // tried again by the next command
  context.Data.CloseAll();
  return code == kExitOk && isDamaged ? kExitPartly : code;
}

int Run(const QStringList& line) {
  const Arguments arguments(
      line, {QStringLiteral("json"), QStringLiteral("delete-on-server"), QStringLiteral("default"),
             QStringLiteral("accept-damage"), QStringLiteral("overwrite"), QStringLiteral("create"),
             QStringLiteral("help"), QStringLiteral("version")});
  if (!arguments.Error().isEmpty()) return Complain(arguments.Error(), kExitUsage);
  if (arguments.Has(QStringLiteral("version"))) {
    Print(QStringLiteral("vornctl " VORN_VERSION));
    return kExitOk;
  }
  if (arguments.Has(QStringLiteral("help"))) {
    Print(Usage());
    return kExitOk;
  }
  const QString words = arguments.Words().join(u' ');
  const QString first = words.section(u' ', 0, 0);
  if (first == u"inspect") return Inspect(arguments);
  if (first == u"open" && !IsStoredMessage(arguments)) return OpenFile(arguments);
  if (first == u"compose") return Compose(arguments);
  for (const Command& command : Commands()) {
    if (words == command.name || words.startsWith(command.name + u' ')) {
      return RunCommand(command, arguments);
    }
  }
  return Complain(Usage(), kExitUsage);
}

}  // namespace

void Print(const QString& text) {
  QFile out;
  if (!out.open(stdout, QIODevice::WriteOnly)) return;
  constexpr qsizetype kPiece = 1 << 20;  // a text may be large
  QStringEncoder encode(QStringEncoder::Utf8);
  for (qsizetype at = 0; at < text.size(); at += kPiece) {
    out.write(encode(QStringView(text).mid(at, kPiece)));
  }
  out.write("\n");
}

Result<QByteArray> ReadFile(const QString& name) {
  QFile file(name);
  const bool opened =
      name == u"-" ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
  if (opened) return file.readAll();
  return StorageError{StorageError::Kind::Other, Ui::tr("「%1」を読み込めません。").arg(name)};
}

int Complain(const QString& sentence, int code) {
  QFile out;
  if (out.open(stderr, QIODevice::WriteOnly))
    out.write(ShownText(sentence, kMostInComplaint).toUtf8() + '\n');
  return code;
}

QJsonArray ToJson(const QList<UnreadableMessage>& messages) {
  QJsonArray array;
  for (const UnreadableMessage& message : messages) {
    array.append(QJsonObject{{QStringLiteral("serialId"), message.serialId.Text()},
                             {QStringLiteral("subject"), message.subject},
                             {QStringLiteral("timestamp"), message.timestamp}});
  }
  return array;
}

Result<SerialId> FindFolder(Context& context, const QString& nameOrSerial) {
  const DiskPtr named = FindObjectByName(context, object_type::kFolder, nameOrSerial);
  if (named != nullptr) return named->Serial();
  for (const DiskPtr& object : context.Objects) {
    const AnyObject any(*object);
    if (any.Is(object_type::kFolder) && ShownObject(*object).Names().contains(nameOrSerial))
      return object->Serial();
  }
  const DiskPtr folder = context.Objects.Find(SerialId(nameOrSerial));
  const bool isFolder = folder != nullptr && AnyObject(*folder).Is(object_type::kFolder);
  if (isFolder) return folder->Serial();
  return StorageError{StorageError::Kind::NotFound,
                      Ui::tr("フォルダ「%1」はありません。").arg(nameOrSerial)};
}

}  // namespace vorn::ctl

int main(int argc, char** argv) {
#ifdef SIGPIPE
  // Whoever reads the output may go; what is known of damage is still to be kept.
  std::signal(SIGPIPE, SIG_IGN);
#endif
#ifdef SIGXFSZ
  std::signal(SIGXFSZ, SIG_IGN);  // a limit on the size of files is told as a full disk is
#endif
  vorn::ForbidCoreDumps();
  const QCoreApplication application(argc, argv);
  const vorn::LanguageTexts texts(vorn::UiLanguage());
  return vorn::ctl::Run(QCoreApplication::arguments().mid(1));
}
