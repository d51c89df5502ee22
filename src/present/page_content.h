#pragma once

#include <QDate>
#include <QSet>
#include <QStringList>
#include <functional>

#include "storage/bags/disk.h"
#include "storage/engine/recordset.h"
#include "storage/message_state.h"

namespace vorn {

/// Rows of a page.
struct RowsBehind {
  RecordsetPtr rows;   ///< null when none of them can be read
  qint64 skipped = 0;  ///< the page's rows before them
};

/// What a page is filled with besides its rows.
struct PageContent {
  DiskPtr folder;
  QStringList textTypes;
  QSet<SerialId> doubtful;  ///< messages of which nobody knows whether they were sent
  QSet<SerialId> refused;   ///< messages that wait, and that their servers do not take
  bool escape = false;      ///< HTML-escape what mail contributes
  qint32 rowsPerPage = 0;   ///< 0: all
  bool withHtml = false;    ///< HTML stands among the texts
  QDate today;              ///< of which short times show the clock alone
  /// The page's rows without the first `skipped` ones, and without those that have to be passed
  /// over behind them because they cannot be read.
  std::function<RowsBehind(qint64 skipped)> rowsAfter;
  /// The names of the folders that a message is in, for rows of more than one folder; else null.
  std::function<QString(const SerialId& serialId, StoredState state)> placeOf;
};

}  // namespace vorn
