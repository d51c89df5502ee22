#pragma once

#include <QString>

#include "storage/context.h"

class QTableWidget;
class QWidget;

namespace vorn {

/// What an editing window tells the copying of its controls. A control's key is its object name
/// without the two-letter prefix; its words stand in its dynamic property "tag". "nosave": it is
/// only restored. Of a list "text" means the lines of its rows, "key" their keys, "select" and no
/// word the selected row's key, which is the first cell's Qt::UserRole. A control is saved when its
/// parent is a frame named "frPage" whose "tag" is one of the pages that the window shows.
class FormWindow {
 public:
  virtual ~FormWindow() = default;
  /// The window that holds the controls.
  virtual QWidget& Form() = 0;
  /// The names of the pages shown for this object.
  virtual QStringList ShownPages() const = 0;
  /// The saved line of a list's row, and the row of a saved line.
  virtual QString ListViewLine(const QTableWidget& list, int row) const = 0;
  virtual void ControlListViewItem(QTableWidget& list, const QString& line) = 0;
  /// Called after the controls were restored from that object, for what needs more.
  virtual void CallBackFormData(const Disk& object) = 0;
};

/// The controls as a new bag under that serial identifier; the loaded object stays as it is until
/// the bag is saved.
DiskPtr FormToDisk(FormWindow& window, const SerialId& serialId);

/// Fills the controls from the object. A value that does not fit its control leaves the control as
/// it was.
void DiskToForm(FormWindow& window, const Disk& object);

/// Whether some control of the window stands for a key of its object.
bool HasControlFor(FormWindow& window, const QString& key);

/// Moves a window to where it was when it was last closed; 600 by 400 pixels in the middle of the
/// screen the first time, or its share of the screen (`Placement`). The place is kept in the bag
/// "DATA_" + name.
void RestoreWindowPlacement(Context& context, QWidget& window, const QString& name);
/// Whether such a place is kept, and whether the window was maximised there.
bool HasPlacement(Context& context, const QString& name);
bool WasMaximized(Context& context, const QString& name);
/// The bag "DATA_" + name of the window's place, which may hold more of its arrangement; made when
/// it is not there, and saved with the loaded objects.
DiskPtr PlacementBag(Context& context, const QString& name);
/// The name for which the main window keeps its own place, and its pieces theirs.
inline const QString kMainPlacement = QStringLiteral("parent");
/// Keeps where a window is now. Where the screen has cut it off its former size is kept.
void KeepWindowPlacement(Context& context, const QWidget& window, const QString& name);

}  // namespace vorn
