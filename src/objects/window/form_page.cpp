#include "objects/window/form_page.h"
#include "objects/account.h"
#include "storage/ui.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

namespace vorn {

FormPage::FormPage(const QString& page, const QString& title)
    : title_(title), layout_(new QFormLayout(this)) {
  setObjectName(QStringLiteral("frPage"));
  setProperty("tag", page);
  layout_->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
}

QLineEdit* FormPage::AddText(const QString& name, const QString& label) {
  auto* box = new QLineEdit(this);
  box->setObjectName(name);
  layout_->addRow(label, box);
  return box;
}

QLineEdit* FormPage::AddHidden(const QString& name) {
  auto* box = new QLineEdit(this);
  box->setObjectName(name);
  box->hide();
  return box;
}

QLineEdit* FormPage::AddPassword(const QString& name, const QString& label) {
  QLineEdit* box = AddText(name, label);
  box->setEchoMode(QLineEdit::Password);
  QAction* reveal = box->addAction(style()->standardIcon(QStyle::SP_FileDialogContentsView),
                                   QLineEdit::TrailingPosition);
  reveal->setCheckable(true);
  reveal->setToolTip(Ui::tr("パスワードを表示します。"));
  for (auto* button : box->findChildren<QToolButton*>()) {
    button->setAccessibleName(Ui::tr("パスワードを表示"));
  }
  connect(reveal, &QAction::toggled, box,
          [box](bool shown) { box->setEchoMode(shown ? QLineEdit::Normal : QLineEdit::Password); });
  return box;
}

QCheckBox* FormPage::AddCheck(const QString& name, const QString& text) {
  auto* box = new QCheckBox(text, this);
  box->setObjectName(name);
  layout_->addRow(QString(), box);
  return box;
}

QPushButton* FormPage::MakeButton(const QString& name, const QString& text) {
  auto* button = new QPushButton(text, this);
  button->setObjectName(name);
  button->setAutoDefault(false);
  return button;
}

QComboBox* FormPage::AddChoice(const QString& name, const QString& label,
                               const QStringList& entries) {
  auto* box = new QComboBox(this);
  box->setObjectName(name);
  for (qsizetype i = 0; i < entries.size(); ++i) box->addItem(entries[i], static_cast<int>(i));
  layout_->addRow(label, box);
  return box;
}

bool IsPort(const QString& text) {
  bool isNumber = false;
  const int port = text.toInt(&isNumber);
  return isNumber && IsPort(port);
}

}  // namespace vorn
