#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "mail/codec/mime/flag_string.h"
#include "storage/engine/recordset.h"
#include "storage/message_state.h"

namespace vorn {

/// The current row of a set of rows of `mail`, by what its columns hold; a column that was not
/// asked for is empty. A view: the set outlives it, and shows the next row when it is moved on.
class MailRow {
 public:
  explicit MailRow(const Recordset& rows) : rows_(&rows) {}

  SerialId Serial() const { return rows_->Serial(); }
  /// The name under which the message came.
  QString MessageId() const { return Text(u"FIELD_ID"); }
  StoredState State() const { return StoredState::Of(rows_->Fields(u"STATUS").toInt()); }
  /// Its status, in the dust or not.
  MessageStatus Status() const { return State().status; }
  FlagString Flags() const { return FlagString(Text(u"FIELD_FLAG")); }
  /// When it came or was written, in the stored form.
  QString Timestamp() const { return Text(u"FIELD_TIMESTAMP"); }
  QString Subject() const { return Text(u"FIELD_SUBJECT"); }
  /// Whom it is from and to, one a line (`ParseAddressEntry`).
  QString AddressLines() const { return Text(u"FIELD_MAILADDRESS"); }
  /// The map of its parts (`ParseContentIndex`).
  QString ContentIndex() const { return Text(u"FIELD_CONTENT"); }
  /// Nothing where it cannot be read; the set says why.
  std::optional<QByteArray> Source() const;
  /// The length of the source, without reading it; negative where that cannot be told.
  qint64 SourceBytes() const { return rows_->ByteCount(kSource); }
  /// Whether it is not as it was written.
  bool IsDamaged() const { return rows_->IsRowDamaged(); }

 private:
  static constexpr QStringView kSource = u"MAIL";

  QString Text(QStringView column) const { return rows_->Fields(column).toString(); }

  const Recordset* rows_;
};

inline std::optional<QByteArray> MailRow::Source() const {
  const QVariant source = rows_->Fields(kSource);
  return source.isValid() ? std::optional(source.toByteArray()) : std::nullopt;
}

}  // namespace vorn
