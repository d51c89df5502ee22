#include "mail/codec/text/flowed_text.h"

#include <QStringList>

namespace vorn {
namespace {

struct Line {
  qsizetype depth = 0;
  QString text;
};

Line ReadLine(QString line) {
  Line read;
  if (line.endsWith(u'\r')) line.chop(1);
  while (read.depth < line.size() && line[read.depth] == u'>') ++read.depth;
  read.text = line.sliced(read.depth);
  if (read.text.startsWith(u' ')) read.text.remove(0, 1);  // the stuffed one
  return read;
}

QString Marks(qsizetype depth) {
  return depth == 0 ? QString() : QString(depth, u'>') + u' ';
}

}  // namespace

QString UnflowText(const QString& text, bool deleteSpace) {
  QStringList lines;
  bool joins = false;
  qsizetype depth = 0;
  for (const QString& raw : text.split(u'\n')) {
    Line line = ReadLine(raw);
    const bool isSignature = line.text == u"-- ";
    const bool continues = joins && line.depth == depth && !isSignature;
    joins = line.text.endsWith(u' ') && !isSignature;
    depth = line.depth;
    if (joins && deleteSpace) line.text.chop(1);
    if (continues) {
      lines.back() += line.text;
    } else {
      lines.append(Marks(line.depth) + line.text);
    }
  }
  return lines.join(QStringLiteral("\r\n"));
}

}  // namespace vorn
