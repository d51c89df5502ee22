#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <optional>

#include "storage/base/result.h"

namespace vorn::ctl {

/// The command line taken apart: words in their order, options with a value ("--name VALUE") and
/// switches ("--json"). Options may stand anywhere; "--" ends them.
class Arguments {
 public:
  /// `switches` are the options that take no value. On a malformed line `Error` says why.
  Arguments(const QStringList& line, const QSet<QString>& switches);

  const QString& Error() const { return error_; }
  const QStringList& Words() const { return words_; }
  bool Has(const QString& name) const { return options_.contains(name); }
  QString Text(const QString& name, const QString& fallback = {}) const {
    return options_.value(name, fallback);
  }
  /// Every value of an option that was given several times, in order.
  QStringList All(const QString& name) const { return all_.value(name); }
  /// A whole number, `fallback` where the option is not given; nothing when it is none.
  std::optional<int> Number(const QString& name, int fallback) const;
  /// The given options that are not in `known`.
  QStringList Unknown(const QSet<QString>& known) const;

 private:
  void Add(const QString& name, const QString& value);

  QStringList words_;
  QHash<QString, QString> options_;  // the last value of each
  QHash<QString, QStringList> all_;
  QString error_;
};

/// The first line that can be read from the file descriptor that an option names, without its line
/// break.
Result<QString> ReadSecret(const Arguments& arguments, const QString& option);

}  // namespace vorn::ctl
