#include "objects/window/editing_window.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

#include "kit/window/access_names.h"
#include "kit/window/page_area.h"
#include "kit/window/plain_text.h"
#include "objects/any_object.h"
#include "objects/object_loader.h"
#include "objects/save_object.h"
#include "storage/databases.h"
#include "storage/profile_bag.h"
#include "storage/ui.h"

namespace vorn {

EditingWindow::EditingWindow(Context& context, const QString& name, QWidget* parent)
    : QDialog(parent), context_(context), tsPage_(new QTabWidget), lbError_(PlainLabel()) {
  setObjectName(name);
  setAttribute(Qt::WA_DeleteOnClose);
  tsPage_->setObjectName(QStringLiteral("tsPage"));
  lbError_->setObjectName(QStringLiteral("lbError"));
  lbError_->setWordWrap(true);
  lbError_->setStyleSheet(QStringLiteral("color: #c0392b"));
  lbError_->hide();
  QSizePolicy policy = lbError_->sizePolicy();
  policy.setRetainSizeWhenHidden(true);  // nothing moves under the pointer when it comes
  lbError_->setSizePolicy(policy);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  const auto caption = [buttons](QDialogButtonBox::StandardButton button, const QString& objectName,
                                 const QString& text) {
    buttons->button(button)->setObjectName(objectName);
    buttons->button(button)->setText(text);
  };
  caption(QDialogButtonBox::Ok, QStringLiteral("cmOk"), QStringLiteral("OK"));
  caption(QDialogButtonBox::Cancel, QStringLiteral("cmCancel"), Ui::tr("キャンセル"));
  connect(buttons, &QDialogButtonBox::accepted, this, &EditingWindow::cmOk_Click);
  connect(buttons, &QDialogButtonBox::rejected, this, &EditingWindow::Leave);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(tsPage_, 1);
  layout->addWidget(lbError_);
  layout->addWidget(buttons);
}

void EditingWindow::AddPage(FormPage* page) {
  pages_.push_back(page);
  tsPage_->addTab(new PageArea(page), page->Title());
  NameLists(*page);
  // What was wrong is not told beyond the next change.
  for (auto* line : page->findChildren<QLineEdit*>()) {
    connect(line, &QLineEdit::textEdited, lbError_, &QLabel::hide);
  }
  for (auto* text : page->findChildren<QPlainTextEdit*>()) {
    connect(text, &QPlainTextEdit::textChanged, lbError_, &QLabel::hide);
  }
  for (auto* button : page->findChildren<QAbstractButton*>()) {
    connect(button, &QAbstractButton::toggled, lbError_, &QLabel::hide);
  }
  for (auto* list : page->findChildren<QTableWidget*>()) {
    connect(list, &QTableWidget::itemChanged, lbError_, &QLabel::hide);
    connect(list->model(), &QAbstractItemModel::rowsRemoved, lbError_, &QLabel::hide);
  }
}

QStringList EditingWindow::ShownPages() const {
  QStringList names;
  for (const FormPage* page : pages_) names.append(page->property("tag").toString());
  return names;
}

QString EditingWindow::ListViewLine(const QTableWidget& list, int row) const {
  for (const FormPage* page : pages_) {
    if (page->isAncestorOf(&list)) return page->Line(list, row);
  }
  return {};
}

void EditingWindow::ControlListViewItem(QTableWidget& list, const QString& line) {
  for (FormPage* page : pages_) {
    if (page->isAncestorOf(&list)) page->AddLine(list, line);
  }
}

void EditingWindow::CallBackFormData(const Disk& object) {
  for (FormPage* page : pages_) page->Loaded(object);
}

void EditingWindow::ReadAnew() {
  Disk stored(Tag());
  const OpenedDatabase profile(context_, DatabaseKind::Profile);
  const bool isRead = profile && stored.DatabaseToDisk(context_.Data);
  if (isRead) TakeOver(stored);
}

void EditingWindow::FillPages() {
  const DiskPtr object = LoadObject(context_, Tag());
  object == nullptr ? CallBackFormData(Disk()) : DiskToForm(*this, *object);
  tsPage_->setProperty("tag", ShownPages().join(kLineBreak));
}

void EditingWindow::Activate() {
  raise();
  activateWindow();
}

void EditingWindow::ShowPage(const FormPage* page) {
  for (size_t i = 0; i < pages_.size(); ++i) {
    if (pages_[i] == page) tsPage_->setCurrentIndex(static_cast<int>(i));
  }
}

void EditingWindow::Tell(const PageFault& fault, const FormPage* page) {
  lbError_->setText(ShownText(fault.text));
  lbError_->show();
  ShowPage(page);
  if (fault.field != nullptr) fault.field->setFocus();
}

bool EditingWindow::CheckPages() {
  for (FormPage* page : pages_) {
    if (const PageFault fault = page->Check()) {
      Tell(fault, page);
      return false;
    }
  }
  return true;
}

// What the window does not show stays as it is.
void EditingWindow::KeepOtherKeys(Disk& bag) {
  const DiskPtr object = LoadObject(context_, Tag());
  if (object == nullptr) return;
  for (qint32 i = 1; i <= object->Size(); ++i) {
    const QString& key = object->NameAt(i);
    const bool isOurs = ProfileBag::SessionKeys().contains(key, Qt::CaseInsensitive) ||
                        bag.Get(key).isValid() || HasControlFor(*this, key);
    if (!isOurs) bag.Let(key, object->Get(key));
  }
}

DiskPtr EditingWindow::Edited() {
  DiskPtr bag = FormToDisk(*this, Tag());
  KeepOtherKeys(*bag);
  for (FormPage* page : pages_) page->Finish(*bag);
  return bag;
}

void EditingWindow::TakeOver(const Disk& saved) {
  DiskPtr loaded = context_.Objects.Find(saved.SerialID());
  if (loaded == nullptr) {
    loaded = std::make_shared<Disk>(saved.SerialID());
    context_.Objects.Add(loaded);
  }
  Disk kept;
  for (const QString& key : ProfileBag::SessionKeys()) {
    if (const QVariant value = loaded->Get(key); value.isValid()) kept.Let(key, value);
  }
  loaded->Init();
  for (const Disk* source : {&saved, static_cast<const Disk*>(&kept)}) {
    for (qint32 i = 1; i <= source->Size(); ++i) {
      loaded->Let(source->NameAt(i), source->Get(source->NameAt(i)));
    }
  }
}

bool EditingWindow::SaveEdited(const DiskPtr& bag) {
  const Result<> saved = SaveObject(context_, DatabaseKind::Profile, *bag);
  if (saved) {
    TakeOver(*bag);
    return true;
  }
  Tell({Ui::tr("保存できませんでした。") + saved.Error().text, nullptr}, nullptr);
  return false;
}

void EditingWindow::cmOk_Click() {
  lbError_->hide();
  if (!CheckPages() || !Save()) return;
  ProfileBag::SetAnswer(*context_.Session, Tag());
  accept();
}

void EditingWindow::ConfirmObject() {
  cmOk_Click();
  // A window that was never shown and has something to tell shows itself now.
  if (lbError_->isVisibleTo(this)) {
    exec();
  } else {
    deleteLater();
  }
}

void EditingWindow::showEvent(QShowEvent* event) {
  if (!event->spontaneous() && entries_.isEmpty()) entries_ = Entries();
  QDialog::showEvent(event);
}

QStringList EditingWindow::Entries() {
  QStringList entries;
  const DiskPtr bag = FormToDisk(*this, Tag());
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

void EditingWindow::reject() {
  if (isVisible() && Entries() != entries_) {
    const auto answer =
        ShowBox(this, QMessageBox::Question, Ui::tr("変更を保存しますか？"),
                QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes);
    if (answer == QMessageBox::Cancel) return;
    if (answer == QMessageBox::Yes) return cmOk_Click();
  }
  Leave();
}

void EditingWindow::Leave() {
  ProfileBag::SetAnswer(*context_.Session, QString());
  QDialog::reject();
}

}  // namespace vorn
