#pragma once

#include <QString>
#include <QStringList>

#include "storage/bags/disk.h"

namespace vorn {

/// The layouts of folders, by the names that their object's bag has for them: the one that is
/// shared by all folders without one of their own, and those of single folders. A view: the bag
/// outlives it.
class LayoutsObject {
 public:
  explicit LayoutsObject(const Disk& bag) : bag_(bag) {}

  /// Its name; empty for the default one.
  QString Shared() const { return bag_.Text(kShared); }
  static void SetShared(Disk& bag, const QString& id) { bag.Let(kShared, id); }

  /// A folder's own template; `absent` where it has none.
  QString Html(const SerialId& folder, const QString& absent) const {
    return bag_.Text(folder.Text() + kHtml, absent);
  }
  /// Nothing takes it away.
  static void SetHtml(Disk& bag, const SerialId& folder, const QString& html) {
    LetOrRemove(bag, folder.Text() + kHtml, html);
  }
  qsizetype CountHtml() const { return HtmlKeys(bag_).size(); }
  static void RemoveAllHtml(Disk& bag) {
    for (const QString& key : HtmlKeys(bag)) bag.Remove(key);
  }

  /// Where a folder's pages are written, as it is stored; `absent` where that is not said.
  QString Path(const SerialId& folder, const QString& absent = {}) const {
    return bag_.Text(folder.Text() + kPath, absent);
  }
  /// Nothing takes it away.
  static void SetPath(Disk& bag, const SerialId& folder, const QString& path) {
    LetOrRemove(bag, folder.Text() + kPath, path);
  }

 private:
  static void LetOrRemove(Disk& bag, const QString& key, const QString& text) {
    text.isEmpty() ? bag.Remove(key) : bag.Let(key, text);
  }
  static QStringList HtmlKeys(const Disk& bag) {
    QStringList keys;
    for (qint32 i = 1; i <= bag.Size(); ++i) {
      if (bag.NameAt(i).endsWith(kHtml)) keys.append(bag.NameAt(i));
    }
    return keys;
  }

  // With no folder's name before it.
  static inline const QString kShared = QStringLiteral("_ready");
  // Behind a folder's name.
  static inline const QString kHtml = QStringLiteral("_html");
  static inline const QString kPath = QStringLiteral("_path");

  const Disk& bag_;
};

}  // namespace vorn
