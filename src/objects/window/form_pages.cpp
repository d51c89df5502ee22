#include "objects/window/form_pages.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

#include "kit/window/access_names.h"
#include "kit/window/page_area.h"
#include "kit/window/plain_text.h"
#include "objects/any_object.h"
#include "storage/ui.h"

namespace vorn {

FormPages::FormPages(QWidget* parent)
    : QWidget(parent), tsPage_(new QTabWidget), lbError_(PlainLabel()) {
  tsPage_->setObjectName(QStringLiteral("tsPage"));
  lbError_->setObjectName(QStringLiteral("lbError"));
  lbError_->setWordWrap(true);
  lbError_->setStyleSheet(QStringLiteral("color: #c0392b"));
  lbError_->hide();
  QSizePolicy policy = lbError_->sizePolicy();
  policy.setRetainSizeWhenHidden(true);  // nothing moves under the pointer when it comes
  lbError_->setSizePolicy(policy);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->addWidget(tsPage_, 1);
  layout->addWidget(lbError_);
}

void FormPages::Add(FormPage* page) {
  pages_.push_back(page);
  tsPage_->addTab(new PageArea(page), page->Title());
  NameLists(*page);
  for (auto* line : page->findChildren<QLineEdit*>()) {
    connect(line, &QLineEdit::textEdited, this, &FormPages::TellNothing);
  }
  for (auto* text : page->findChildren<QPlainTextEdit*>()) {
    connect(text, &QPlainTextEdit::textChanged, this, &FormPages::TellNothing);
  }
  for (auto* button : page->findChildren<QAbstractButton*>()) {
    connect(button, &QAbstractButton::toggled, this, &FormPages::TellNothing);
  }
  for (auto* list : page->findChildren<QTableWidget*>()) {
    connect(list, &QTableWidget::itemChanged, this, &FormPages::TellNothing);
    connect(list->model(), &QAbstractItemModel::rowsRemoved, this, &FormPages::TellNothing);
  }
}

void FormPages::ShowPage(const FormPage* page) {
  for (size_t i = 0; i < pages_.size(); ++i) {
    if (pages_[i] == page) tsPage_->setCurrentIndex(static_cast<int>(i));
  }
}

bool FormPages::Check() {
  for (FormPage* page : pages_) {
    if (const PageFault fault = page->Check()) {
      Tell(fault, page);
      return false;
    }
  }
  return true;
}

void FormPages::Tell(const PageFault& fault, const FormPage* page) {
  lbError_->setText(ShownText(fault.text));
  lbError_->show();
  ShowPage(page);
  if (fault.field != nullptr) fault.field->setFocus();
}

void FormPages::TellNothing() {
  lbError_->hide();
}

bool FormPages::TellsFault() const {
  return lbError_->isVisibleTo(this);
}

void FormPages::TellNames() {
  tsPage_->setProperty("tag", ShownPages().join(kLineBreak));
}

void FormPages::Finish(Disk& bag) const {
  for (FormPage* page : pages_) page->Finish(bag);
}

QStringList FormPages::Entries() {
  QStringList entries;
  const DiskPtr bag = FormToDisk(*this, {});
  for (qint32 i = 1; i <= bag->Size(); ++i) {
    const QString& key = bag->NameAt(i);
    if (key != AnyObject::kChanged) entries.append(key + u'=' + bag->Text(key));
  }
  // A new password is typed in boxes that are not saved.
  for (const FormPage* page : pages_) {
    const auto direct = Qt::FindDirectChildrenOnly;
    for (const auto* box : page->findChildren<QLineEdit*>(QString(), direct)) {
      entries.append(box->text());
    }
    for (const auto* check : page->findChildren<QCheckBox*>(QString(), direct)) {
      entries.append(QString::number(static_cast<int>(check->isChecked())));
    }
  }
  entries.sort();  // a page that is looked at becomes the last of its siblings
  return entries;
}

QStringList FormPages::ShownPages() const {
  QStringList names;
  for (const FormPage* page : pages_) names.append(page->property("tag").toString());
  return names;
}

QString FormPages::ListViewLine(const QTableWidget& list, int row) const {
  for (const FormPage* page : pages_) {
    if (page->isAncestorOf(&list)) return page->Line(list, row);
  }
  return {};
}

void FormPages::ControlListViewItem(QTableWidget& list, const QString& line) {
  for (FormPage* page : pages_) {
    if (page->isAncestorOf(&list)) page->AddLine(list, line);
  }
}

void FormPages::CallBackFormData(const Disk& object) {
  for (FormPage* page : pages_) page->Loaded(object);
}

}  // namespace vorn
