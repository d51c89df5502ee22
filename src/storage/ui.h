#pragma once

#include <QCoreApplication>
#include <QString>

namespace vorn {

/// The texts of the user interface: `Ui::tr("...")` gives a text, which is written in Japanese, in
/// the language in which the program runs.
class Ui {
  Q_DECLARE_TR_FUNCTIONS(vorn::Ui)
};

/// The application title, as captions and messages show it.
inline const QString kApplicationTitle = QStringLiteral(".VORN");

/// Lines of a text value are separated by CR LF.
inline const QString kLineBreak = QStringLiteral("\r\n");

}  // namespace vorn
