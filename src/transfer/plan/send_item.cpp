#include "transfer/plan/send_item.h"

#include <memory>

#include "mail/codec/header/address.h"
#include "mail/store/message_bag.h"
#include "mail/store/outbox.h"
#include "transfer/plan/append_line.h"

namespace vorn {

SendItem::SendItem(const SerialId& serial, const QString& file, const QString& password,
                   const QString& addressLines, const QString& subject)
    : bag_(std::make_shared<Disk>(serial)) {
  MessageBag::SetFile(*bag_, file);
  bag_->Let(kPassword, password);
  bag_->Let(kAddressLines, addressLines);
  bag_->Let(kSubject, subject);
}

QString SendItem::File(const Context& context) const {
  return MessageBag(*bag_).File(context);
}

std::optional<Account> SendItem::Sender() const {
  const DiskCollectionPtr accounts = bag_->Collection(kAccount);
  if (accounts == nullptr || accounts->IsEmpty()) return std::nullopt;
  return accounts->First();
}

QString SendItem::Route() const {
  const std::optional<Account> account = Sender();
  if (!account) return {};
  const Endpoint server = account->Outgoing();
  return QStringList{server.host, QString::number(server.port),
                     account->Authenticates() ? server.who.user : QString(), account->Address()}
      .join(u' ');
}

void SendItem::SetSender(const DiskPtr& account) {
  auto accounts = std::make_shared<DiskCollection>();
  if (account != nullptr) accounts->Add(account);
  bag_->Set(kAccount, QVariant::fromValue(accounts));
}

void SendItem::SendFrom(const DiskPtr& account) {
  AppendLine(*bag_, kFrom, Account(account).Address());
  bag_->Let(kFromAnother, true);
  SetSender(account);
}

void SendItem::FillEnvelope() {
  for (const QString& key : {kTo, kFrom, kFromLines}) bag_->Let(key, QString());
  for (const QString& line : AddressLines().split(kLineBreak)) {
    const AddressEntry entry = ParseAddressEntry(line);
    const QString kind = entry.kind.toLower();
    if (entry.address.isEmpty()) continue;
    if (kind == u"from") {
      AppendLine(*bag_, kFrom, entry.address);
      AppendLine(*bag_, kFromLines, line);
    } else if (kind == u"to" || kind == u"cc" || kind == u"bcc" || kind == u"bc") {
      AppendLine(*bag_, kTo, entry.address);
    }
  }
}

void SendItem::Take(const WaitingMessage& waiting) {
  MessageBag::SetFlags(*bag_, waiting.flags);
  MessageBag::SetFolders(*bag_, waiting.folders);
  bag_->Let(kVersion, waiting.version);
}

}  // namespace vorn
