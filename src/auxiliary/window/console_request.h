#pragma once

#include <QString>
#include <QVariant>

#include "storage/bags/disk.h"

namespace vorn {

/// A request for the window "console", by the names that its bag has for what is asked. A view: the
/// bag outlives it.
class ConsoleRequest {
 public:
  enum class Mode { Text, Slider, Tree, List };

  explicit ConsoleRequest(Disk& bag) : bag_(bag) {}

  Mode Asked() const { return bag_.Get(kMode).value<Mode>(); }
  QString Title() const { return bag_.Text(kTitle); }
  QString Caption(const QString& byDefault) const { return bag_.Text(kCaption, byDefault); }
  /// Without a caption the window has its own.
  void Begin(Mode mode, const QString& title, const QString& caption);
  /// The text, the position, the node's key, or the keys of the entries, one a line.
  QVariant Initial() const { return bag_.Get(kInitial); }
  void SetInitial(const QVariant& initial) { bag_.Let(kInitial, initial); }

  /// A text is shown as that character; empty for as it is.
  QString Mask() const { return bag_.Text(kMask); }
  void SetMask(const QString& character) { bag_.Let(kMask, character); }
  /// The box has the focus from the start.
  bool TakesKeys() const { return bag_.Flag(kTakesKeys, true); }
  void SetTakesKeys(bool takes) { bag_.Let(kTakesKeys, takes); }

  /// The slider's range, and the distance of its ticks.
  qint32 Minimum() const { return bag_.Number(kMinimum); }
  qint32 Maximum() const { return bag_.Number(kMaximum); }
  qint32 Step() const { return bag_.Number(kStep, 1); }
  void SetRange(qint32 minimum, qint32 maximum, qint32 step);

  /// The objects of the tree (see `SelectObjects`).
  QString Objects() const { return bag_.Text(kObjects); }
  void SetObjects(const QString& filter) { bag_.Let(kObjects, filter); }
  /// The button for one that is not in it; empty for none.
  QString Another() const { return bag_.Text(kAnother); }
  void SetAnother(const QString& text) { bag_.Let(kAnother, text); }

  /// The list's entries, one a line, and whether several can be chosen.
  QString Entries() const { return bag_.Text(kEntries); }
  bool TakesSeveral() const { return bag_.Flag(kSeveral); }
  void SetEntries(const QString& entries, bool several);
  /// A folder of the file system is asked for as well.
  bool AsksForFolder() const { return !bag_.Text(kFolder).isEmpty(); }
  void SetFolder(const QString& folder) { bag_.Let(kFolder, folder); }

 private:
  static inline const QString kMode = QStringLiteral("Mode");
  static inline const QString kTitle = QStringLiteral("Title");
  static inline const QString kCaption = QStringLiteral("Caption");
  static inline const QString kInitial = QStringLiteral("Default");
  static inline const QString kMask = QStringLiteral("PasswordChar");
  static inline const QString kTakesKeys = QStringLiteral("TakesKeys");
  static inline const QString kMinimum = QStringLiteral("Min");
  static inline const QString kMaximum = QStringLiteral("Max");
  static inline const QString kStep = QStringLiteral("Split");
  static inline const QString kObjects = QStringLiteral("draw");
  static inline const QString kAnother = QStringLiteral("Another");
  static inline const QString kEntries = QStringLiteral("List");
  static inline const QString kSeveral = QStringLiteral("MultiSelect");
  static inline const QString kFolder = QStringLiteral("Folder");

  Disk& bag_;
};

inline void ConsoleRequest::Begin(Mode mode, const QString& title, const QString& caption) {
  bag_.Let(kMode, QVariant::fromValue(mode));
  bag_.Let(kTitle, title);
  if (!caption.isEmpty()) bag_.Let(kCaption, caption);
}

inline void ConsoleRequest::SetRange(qint32 minimum, qint32 maximum, qint32 step) {
  bag_.Let(kMinimum, minimum);
  bag_.Let(kMaximum, maximum);
  bag_.Let(kStep, step);
}

inline void ConsoleRequest::SetEntries(const QString& entries, bool several) {
  bag_.Let(kEntries, entries);
  bag_.Let(kSeveral, several);
}

}  // namespace vorn
