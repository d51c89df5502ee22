#pragma once

#include <QDebug>
#include <QHashFunctions>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <ostream>
#include <utility>

namespace vorn {

/// What names a message, a folder, an account or any other object, from its making to its end; an
/// empty one names nothing. They are ordered by their texts.
class SerialId {
 public:
  SerialId() = default;
  explicit SerialId(QString text) : text_(std::move(text)) {}

  /// As it stands in bags, rows, links and files.
  const QString& Text() const { return text_; }
  bool IsEmpty() const { return text_.isEmpty(); }

  friend bool operator==(const SerialId&, const SerialId&) = default;
  friend bool operator<(const SerialId& one, const SerialId& other) {
    return one.text_ < other.text_;
  }
  friend size_t qHash(const SerialId& id, size_t seed = 0) { return qHash(id.text_, seed); }
  friend QDebug operator<<(QDebug out, const SerialId& id) { return out << id.text_; }
  friend void PrintTo(const SerialId& id, std::ostream* out) { *out << id.text_.toStdString(); }

 private:
  QString text_;
};

using SerialIds = QList<SerialId>;

/// Of what a row or an item of a window holds, which is its text.
inline SerialId SerialIdOf(const QVariant& value) {
  return SerialId(value.toString());
}

/// From and to lists of their texts.
SerialIds SerialIdsOf(const QStringList& texts);
QStringList TextsOf(const SerialIds& ids);
/// From and to their texts one a line (CR LF); empty lines are left out.
SerialIds SerialIdsOfLines(const QString& lines);
QString LinesOf(const SerialIds& ids);

/// Makes serial identifiers: the prefix, then 20 characters of a-z and 2-7, eleven from the time
/// and nine at random. They sort by the time of making, which keeps neighbours in a message table
/// together; the first eight are enough to name a file. No quote, no "@".
class SerialIdGenerator {
 public:
  SerialId Next(const QString& prefix);

 private:
  quint64 lastTick_ = 0;
};

}  // namespace vorn
