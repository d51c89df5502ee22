#pragma once

#include <QByteArray>

namespace vorn {

/// What a PDF file does beside showing its pages.
enum class PdfActs {
  Nothing,
  Script,      ///< it holds a script, or starts a program
  Contact,     ///< it goes to another place by itself, which tells its sender
  Unreadable,  ///< a part that could do so cannot be looked into
};

PdfActs ActsOfPdf(const QByteArray& file);

}  // namespace vorn
