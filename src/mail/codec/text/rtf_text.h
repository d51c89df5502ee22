#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace vorn {

/// The label of a Windows code page, by its number.
QByteArray CodePageLabel(unsigned number);

/// The text of a document in Rich Text Format, with its paragraphs and table cells; looks, pictures
/// and notes for programs are left out. `codePage` is that of a document which names none.
QString RtfToText(QByteArrayView rtf, unsigned codePage);

}  // namespace vorn
