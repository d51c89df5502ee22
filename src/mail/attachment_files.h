#pragma once

#include <QByteArray>
#include <QString>

#include "mail/message_model.h"
#include "storage/base/result.h"

namespace vorn {

/// The decoded bytes of an attachment: of its file for a new one, of its part of `source` for an
/// old one. Fails when a new one's file cannot be read.
Result<QByteArray> ReadAttachment(const ModelAttachment& attachment, const QByteArray& source);

/// How many bytes that would be; 0 when a new one's file is gone. What is large is not decoded for
/// it.
qint64 AttachmentSize(const ModelAttachment& attachment, const QByteArray& source);

/// Whether it is named as a ZIP archive, as other kinds of documents are too.
bool IsNamedArchive(const ModelAttachment& attachment);

/// A name that may stand in a folder on every platform: no path, no reserved characters or names,
/// nothing that hides the ending, and short enough in bytes. Never empty.
QString SafeFileName(const QString& name);

/// A path in the folder that no file has yet, named as `SafeFileName` has it.
QString FreePath(const QString& folder, const QString& name);

/// A size as users read it, "12 KB".
QString SizeText(qint64 bytes);

}  // namespace vorn
