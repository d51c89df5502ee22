#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <optional>

#include "ctl/command.h"
#include "mail/compose_message.h"
#include "storage/base/serial_id.h"
#include "storage/files/whole_file.h"
#include "storage/ui.h"

namespace vorn::ctl {
namespace {

template <typename Value>
struct Choice {
  const char16_t* word;
  Value value;
};

constexpr Choice<CharsetChoice> kCharsets[] = {{u"jis", CharsetChoice::Jis},
                                               {u"euc", CharsetChoice::Euc},
                                               {u"sjis", CharsetChoice::ShiftJis},
                                               {u"utf8", CharsetChoice::Utf8},
                                               {u"auto", CharsetChoice::Automatic}};
constexpr Choice<MimeEncode> kEncodings[] = {{u"base64", MimeEncode::Base64},
                                             {u"qp", MimeEncode::QuotedPrintable},
                                             {u"uu", MimeEncode::Uuencode}};

template <typename Value, size_t N>
std::optional<Value> Choose(const Choice<Value> (&choices)[N], const QString& word) {
  for (const Choice<Value>& choice : choices) {
    if (word == QStringView(choice.word)) return choice.value;
  }
  return std::nullopt;
}

// False for a value that holds anything else than addresses, with names or without.
bool AddAddresses(MessageModel& model, const QString& kind, const QStringList& values) {
  for (const QString& value : values) {
    for (AddressEntry entry : ReadTypedAddresses(value)) {
      if (!IsMailAddress(entry.address)) {
        Complain(Ui::tr("「%1」はメールアドレスではありません。").arg(value), kExitUsage);
        return false;
      }
      entry.kind = kind;
      model.addresses.append(entry);
    }
  }
  return true;
}

// Nothing when it cannot be read.
std::optional<QByteArray> ReadAll(const QString& name) {
  QFile file(name);
  if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
  return file.readAll();
}

}  // namespace

int Compose(const Arguments& arguments) {
  MessageModel model;
  ComposeOptions options;
  options.settings = EditSettings::Defaults();
  const auto charset =
      Choose(kCharsets, arguments.Text(QStringLiteral("charset"), QStringLiteral("auto")));
  const auto encoding =
      Choose(kEncodings, arguments.Text(QStringLiteral("mime"), QStringLiteral("base64")));
  if (!charset || !encoding) {
    return Complain(Ui::tr("--charset は jis、euc、sjis、utf8、auto、--mime は base64、qp、"
                           "uu のどれかです。"),
                    kExitUsage);
  }
  options.charset = *charset;
  options.settings.mimeEncode = *encoding;
  model.subject = arguments.Text(QStringLiteral("subject"));
  const auto body = ReadAll(arguments.Text(QStringLiteral("body-file")));
  if (!body) return Complain(Ui::tr("--body-file を読み込めません。"), kExitFailure);
  model.text = QString::fromUtf8(*body);
  for (const auto& [kind, option] : {std::pair{QStringLiteral("TO"), QStringLiteral("to")},
                                     {QStringLiteral("CC"), QStringLiteral("cc")},
                                     {QStringLiteral("BC"), QStringLiteral("bcc")},
                                     {QStringLiteral("FROM"), QStringLiteral("from")}}) {
    if (!AddAddresses(model, kind, arguments.All(option))) return kExitUsage;
  }
  QHash<QString, QByteArray> files;  // once: a pipe gives nothing a second time
  for (const QString& path : arguments.All(QStringLiteral("attach"))) {
    if (!files.contains(path)) {
      const auto bytes = ReadAll(path);
      if (!bytes) return Complain(Ui::tr("「%1」を読み込めません。").arg(path), kExitFailure);
      files.insert(path, *bytes);
    }
    const QString name = QFileInfo(path).fileName();
    model.attachments.push_back({name, ContentTypeOf(name), true, path, {}});
  }
  model.headerRows = {QStringLiteral("X-Mailer: .VORN <" VORN_VERSION ">"),
                      QStringLiteral("X-Priority: 3")};
  options.boundaryToken = SerialIdGenerator().Next(QString()).Text();
  options.read = [&files](const ModelAttachment& attachment) {
    return files.value(attachment.path);
  };
  const QString out = arguments.Text(QStringLiteral("out"));
  if (WriteWhole(out, ComposeMessage(model, options))) return kExitOk;
  return Complain(Ui::tr("--out に書き込めません。"), kExitFailure);
}

}  // namespace vorn::ctl
