#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include "mail/codec/header/address.h"

namespace vorn {

/// Whether a text has the sign of an address, in its usual or its wide forms.
bool HasAt(const QString& text);

/// Whether an entry's name looks like another address than its own.
bool NamesAnother(const AddressEntry& entry);

/// Who an entry is, where there is room for little: the name, unless it looks like another address
/// or nobody sees it, which does not hide the one that the message came from.
QString ShownSender(const AddressEntry& entry);

/// The addresses of that kind (capitals are ignored) as people read them, each in one line and
/// whole whatever marks its name holds.
QStringList ShownAddresses(const QList<AddressEntry>& addresses, QStringView kind);

}  // namespace vorn
