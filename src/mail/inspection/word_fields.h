#pragma once

#include <QList>
#include <QString>

namespace vorn {

/// Whether a field code of a text document runs a program or loads another file.
bool ActsAsField(const QString& code);

/// The fields of a text document, whose codes may be split over many runs and stand within each
/// other.
class WordFields {
 public:
  void Begin();
  void Add(const QString& code);
  void Separate();
  void End();
  /// Whether one of the fields up to here acts, or hides what it does: its command is made by a
  /// field within it.
  bool Act() const;

 private:
  struct Field {
    QString code;
    bool isResult = false;
  };

  QList<Field> open_;
  bool acts_ = false;
};

}  // namespace vorn
