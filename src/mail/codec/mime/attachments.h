#pragma once

#include <QString>
#include <QStringList>
#include <vector>

#include "mail/codec/mime/content_index.h"
#include "mail/codec/mime/tnef.h"

namespace vorn {

/// A part that is offered as a file.
struct Attachment {
  QString name;
  MimeCodec::ContentRecord record;
};

/// What is left of a message beside its text, in order: whatever is not of a text type, and
/// text parts with a file name, which the text leaves out. A part without a name is called
/// "添付ファイル[n].dat", n counting such parts from 1; with `standardNames` it ends as is usual
/// for its type, so that it can be opened.
std::vector<Attachment> ListAttachments(const std::vector<MimeCodec::ContentRecord>& records,
                                        const QStringList& textTypes, bool standardNames = false);

/// The name under which a window shows an attachment: a message that was attached without a name is
/// called by its subject.
QString ShownName(const Attachment& attachment, const QByteArray& source);

/// The files that a groupware package among the attachments holds (see `ReadTnef`); empty for any
/// other file.
std::vector<InnerFile> InnerFiles(const Attachment& attachment, const QByteArray& source);

}  // namespace vorn
