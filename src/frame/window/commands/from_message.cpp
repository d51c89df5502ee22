#include "frame/window/commands/from_message.h"

#include <QInputDialog>

#include "kit/window/plain_text.h"
#include "mail/address_book.h"
#include "mail/search/search_condition.h"
#include "mail/store/mail_row.h"
#include "mail/store/message_likeness.h"
#include "mail/store/message_rows.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/shown_object.h"
#include "storage/databases.h"
#include "storage/session/session_result.h"
#include "storage/ui.h"
#include "transfer/rules/receive_stop_rules.h"

namespace vorn {
namespace {

struct StoredText {
  QString addressLines;
  QByteArray source;
};

Result<StoredText> Read(Context& context, const SerialId& serialId) {
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (!mail) return mail.Error();
  const RecordsetPtr row = MessageRows(context.Data).Of(serialId);
  if (row == nullptr || row->Eof()) return ReasonOf(context.Data);
  const MailRow message(*row);
  return StoredText{message.AddressLines(), message.Source().value_or(QByteArray())};
}

// A failure is told.
std::optional<StoredText> ReadMessage(Context& context, QWidget& window, const SerialId& serialId) {
  const Result<StoredText> text = Read(context, serialId);
  if (text) return *text;
  ShowBox(&window, QMessageBox::Critical,
          Ui::tr("メッセージを読み込めません。") + text.Error().text);
  return std::nullopt;
}

// The default one, or else the one that the user chooses. Null when he declines, or there is none
// and none can be made, which is told.
DiskPtr ChooseBook(Context& context, QWidget& window) {
  if (const DiskPtr book = DefaultObject(context.Objects, object_type::kBook)) return book;
  const QList<DiskPtr> books = AddressBooks(context);
  if (books.size() == 1) return books.first();
  if (books.isEmpty()) {
    const Result<DiskPtr> made = MakeAddressBook(context);
    if (!made) {
      ShowBox(&window, QMessageBox::Critical, Ui::tr("保存できませんでした。") + made.Error().text);
    }
    return made.ValueOr(nullptr);
  }
  QStringList names;
  for (const DiskPtr& book : books)
    names.append(ShownText(ShownObject(*book).Name(), kMostInTitle));
  bool given = false;
  const QString name = QInputDialog::getItem(
      &window, kApplicationTitle, Ui::tr("登録するアドレスブック："), names, 0, false, &given);
  return given ? books.value(names.indexOf(name)) : nullptr;
}

QString Sentence(const Disk& book, const QList<AddressEntry>& people, int added) {
  const QString name = ShownText(ShownObject(book).Name(), kMostInTitle);
  const QString who = ShownText(PresentableAddress(people.first()), kMostInTitle);
  if (added == 0) return Ui::tr("「%1」には、もう登録されています。").arg(name);
  return added == 1 && people.size() == 1
             ? Ui::tr("%1を「%2」に登録しました。").arg(who, name)
             : Ui::tr("%n件のアドレスを「%1」に登録しました。", nullptr, added).arg(name);
}

}  // namespace

std::optional<DialogRequest> RuleLikeMessage(Context& context, QWidget& window,
                                             const SerialId& serialId, bool stops) {
  const auto message = ReadMessage(context, window, serialId);
  if (!message) return std::nullopt;
  const MessageLikeness likeness = LikenessOf(message->addressLines, message->source);
  if ((stops ? likeness.sender : likeness.gathering).isEmpty()) {
    ShowBox(&window, QMessageBox::Information, Ui::tr("送信者のメールアドレスがありません。"));
    return std::nullopt;
  }
  DialogRequest request;
  request.status = stops ? fixed_serial::kRules.Text() : object_type::kFolder;
  request.serialId = stops ? fixed_serial::kRules : SerialId();
  request.isNew = !stops;
  request.name = likeness.name;
  request.condition =
      stops ? SenderRule(likeness.sender)
            : FormatConditionLine({&WholeAddressKind(), false, false, {likeness.gathering}});
  return request;
}

std::optional<BookAddition> AddCorrespondents(
    Context& context, QWidget& window, const SerialIds& serialIds,
    const std::function<bool(const SerialId&)>& isEdited) {
  QList<AddressEntry> people;
  for (const SerialId& serialId : serialIds) {
    const auto message = ReadMessage(context, window, serialId);
    if (!message) return std::nullopt;
    people += Correspondents(context, message->addressLines);
  }
  if (people.isEmpty()) {
    ShowBox(&window, QMessageBox::Information, Ui::tr("登録できるメールアドレスがありません。"));
    return std::nullopt;
  }
  const DiskPtr book = ChooseBook(context, window);
  if (book == nullptr) return std::nullopt;
  if (isEdited(book->Serial())) {
    ShowBox(&window, QMessageBox::Information,
            Ui::tr("このアドレスブックは編集中です。そのウィンドウを閉じてから登録してください。"));
    return std::nullopt;
  }
  const Result<int> added = StoreInBook(context, book, people);
  if (added) return BookAddition{book->Serial(), Sentence(*book, people, *added)};
  ShowBox(&window, QMessageBox::Critical, Ui::tr("保存できませんでした。") + added.Error().text);
  return std::nullopt;
}

}  // namespace vorn
