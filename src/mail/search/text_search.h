#pragma once

#include <QString>
#include <QStringList>

#include "storage/context.h"
#include "storage/sql/like_pattern.h"

namespace vorn {

class Connection;

/// A text that is looked for in all that stored messages say: in subjects, addresses and what is to
/// be read of them. A message is read and decoded for it. Can be asked on any thread.
class TextSearch {
 public:
  TextSearch(Context& context, const QString& text);

  /// Whether the message has the text. Of a source that cannot be read only what the columns have
  /// is looked at.
  bool Finds(Connection& connection, const SerialId& serialId) const;

 private:
  QString text_;
  LikePattern pattern_;
  QStringList textTypes_;
};

}  // namespace vorn
