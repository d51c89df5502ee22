#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <vector>

namespace vorn {

struct InnerFile {
  QString name;
  QByteArray bytes;
};

/// What a sender's groupware packed into one file instead of sending it as MIME.
struct TnefContents {
  QString text;  ///< the message's text, from plain text, HTML or rich text
  std::vector<InnerFile> files;
};

/// Whether a part is such a package, by its type or by the name "winmail.dat".
bool IsTnef(const QString& type, const QString& name);

/// Opens a package in the Transport Neutral Encapsulation Format (application/ms-tnef). Never
/// fails: of a damaged one it gives what can be read. A text that is rich text alone is given as a
/// file as well, since other programs can show its looks.
TnefContents ReadTnef(QByteArrayView package);

}  // namespace vorn
