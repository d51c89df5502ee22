#pragma once

#include <QFormLayout>
#include <QString>
#include <QWidget>

#include "storage/context.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTableWidget;

namespace vorn {

/// What is wrong with a page, and where.
struct PageFault {
  QString text;
  QWidget* field = nullptr;

  explicit operator bool() const { return !text.isEmpty(); }
};

/// One page of an editing window: a frame named "frPage" whose tag is the page's name. Its controls
/// are its direct children, so that they are saved.
class FormPage : public QWidget {
  Q_OBJECT

 public:
  FormPage(const QString& page, const QString& title);

  const QString& Title() const { return title_; }
  /// Called when the controls hold the object's values.
  virtual void Loaded(const Disk& /*object*/) {}
  /// What keeps the page from being saved.
  virtual PageFault Check() { return {}; }
  /// Called with the bag that is about to be saved.
  virtual void Finish(Disk& /*bag*/) {}
  /// A list's row as its saved line, and back; for pages that have lists.
  virtual QString Line(const QTableWidget& /*list*/, int /*row*/) const { return {}; }
  virtual void AddLine(QTableWidget& /*list*/, const QString& /*line*/) {}

 protected:
  QLineEdit* AddText(const QString& name, const QString& label);
  QLineEdit* AddHidden(const QString& name);
  /// A password box with a button that shows it.
  QLineEdit* AddPassword(const QString& name, const QString& label);
  QCheckBox* AddCheck(const QString& name, const QString& text);
  /// A button that Enter in another box does not press; where it stands is the page's.
  QPushButton* MakeButton(const QString& name, const QString& text);
  /// A choice list; the entries' numbers are their positions.
  QComboBox* AddChoice(const QString& name, const QString& label, const QStringList& entries);
  QFormLayout& Layout() { return *layout_; }

 private:
  QString title_;
  QFormLayout* layout_;
};

/// Whether a text is a TCP port.
bool IsPort(const QString& text);

}  // namespace vorn
