#include "ctl/arguments.h"

#include <QFile>

#include "storage/ui.h"

namespace vorn::ctl {

Arguments::Arguments(const QStringList& line, const QSet<QString>& switches) {
  bool optionsEnded = false;
  for (qsizetype i = 0; i < line.size(); ++i) {
    const QString& argument = line[i];
    if (optionsEnded || !argument.startsWith(u"--")) {
      words_.append(argument);
      continue;
    }
    if (argument == u"--") {
      optionsEnded = true;
      continue;
    }
    const QString name = argument.mid(2).section(u'=', 0, 0);
    if (switches.contains(name)) {
      options_.insert(name, QString());
    } else if (argument.contains(u'=')) {
      Add(name, argument.section(u'=', 1));
    } else if (i + 1 < line.size()) {
      Add(name, line[++i]);
    } else {
      error_ = Ui::tr("--%1 の値がありません。").arg(name);
    }
  }
}

void Arguments::Add(const QString& name, const QString& value) {
  options_.insert(name, value);
  all_[name].append(value);
}

std::optional<int> Arguments::Number(const QString& name, int fallback) const {
  if (!Has(name)) return fallback;
  bool isNumber = false;
  const int number = options_.value(name).toInt(&isNumber);
  return isNumber ? std::optional(number) : std::nullopt;
}

QStringList Arguments::Unknown(const QSet<QString>& known) const {
  QStringList unknown;
  for (auto option = options_.keyBegin(); option != options_.keyEnd(); ++option) {
    if (!known.contains(*option)) unknown.append(*option);
  }
  return unknown;
}

Result<QString> ReadSecret(const Arguments& arguments, const QString& option) {
  const std::optional<int> descriptor = arguments.Number(option, -1);
  QFile file;
  if (!descriptor || !file.open(*descriptor, QFile::ReadOnly)) {
    return StorageError{StorageError::Kind::Other, Ui::tr("--%1 を読み込めません。").arg(option)};
  }
  QByteArray line = file.readLine();
  while (line.endsWith('\n') || line.endsWith('\r')) line.chop(1);
  return QString::fromUtf8(line);
}

}  // namespace vorn::ctl
