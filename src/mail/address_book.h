#pragma once

#include <QList>

#include "mail/codec/header/address.h"
#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// The address books of the profile.
QList<DiskPtr> AddressBooks(const Context& context);

/// Makes and stores an empty one.
Result<DiskPtr> MakeAddressBook(Context& context);

/// With whom a message was exchanged, read from its address lines: its sender, or the recipients of
/// one that a user of the profile has sent. Nobody twice.
QList<AddressEntry> Correspondents(Context& context, const QString& addressLines);

/// Stores those of the people in a book who are not in it yet, whatever names they have there, and
/// gives how many they were.
Result<int> StoreInBook(Context& context, const DiskPtr& book, const QList<AddressEntry>& people);

}  // namespace vorn
