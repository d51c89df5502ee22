#pragma once

#include <QDialog>
#include <optional>

#include "auxiliary/window/console_request.h"
#include "storage/context.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QSlider;
class QTreeWidget;
class QTreeWidgetItem;

namespace vorn {

/// The window "console": asks for one value, a line of text, a position, a node of the object tree
/// or entries of a list. The answer stands in the session bag's "status", and "cancel" says whether
/// there is one.
class ConsoleWindow : public QDialog {
  Q_OBJECT

 public:
  explicit ConsoleWindow(Context& context, QWidget* parent = nullptr);

  /// Shows the input that a `ConsoleRequest` asks for, filled as it says.
  void LoadDefaultProperty(const DiskPtr& bag);
  void cmOk_Click();

 protected:
  void reject() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool PassOn(QKeyEvent& key);
  QList<QTreeWidgetItem*> NodesNamed(const QString& typed) const;
  void FindNode(const QString& typed);
  void FillTree(const QString& draw, const SerialId& key);
  void FillList(const QString& entries, const QString& chosen);
  QVariant Answer() const;
  void End(const QVariant& answer);

  Context& context_;
  DiskPtr request_;
  ConsoleRequest::Mode mode_ = ConsoleRequest::Mode::Text;
  QLabel* label_;
  QLineEdit* text_;
  QLabel* several_;  // says that the name that is typed may mean more than one node
  QWidget* sliderFrame_;
  QSlider* slider_;
  QTreeWidget* tree_;
  QListWidget* list_;
  QPushButton* another_;
};

// Each asks modally and returns the answer, which is empty when nothing was chosen; nothing when
// the user cancelled.

std::optional<QString> InputText(Context& context, QWidget* parent, const QString& title,
                                 const QString& caption, const QString& text,
                                 const QString& passwordCharacter = {});
/// Masked. Without `takesKeys` the box has no focus until the user gives it to it.
std::optional<QString> InputPassword(Context& context, QWidget* parent, const QString& title,
                                     const QString& caption, bool takesKeys);
std::optional<QString> InputSlider(Context& context, QWidget* parent, const QString& title,
                                   const QString& caption, qint32 position, qint32 step,
                                   qint32 minimum, qint32 maximum);
/// `draw` filters the objects of the tree (see `SelectObjects`). With a text for it there is a
/// button that asks for an object not yet in the tree, and a box in which a name is typed that
/// chooses one, whole or as far as no other begins so. For the button, and for a name that none
/// has, the answer is `kAnotherWanted` with what was typed behind it.
inline const QString kAnotherWanted = QStringLiteral("+");
std::optional<QString> InputTree(Context& context, QWidget* parent, const QString& title,
                                 const QString& caption, const QString& draw,
                                 const SerialId& key = {}, const QString& another = {});
/// `entries` are lines of first field, "@", text, and optionally "@" and an icon key; the answer
/// holds the first fields. With `folder` the user also picks a folder of the file system, which
/// follows the answer on a line of its own.
std::optional<QString> InputList(Context& context, QWidget* parent, const QString& title,
                                 const QString& caption, const QString& chosen,
                                 const QString& entries, bool several, const QString& folder = {});

}  // namespace vorn
