#include "transfer/window/rule_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <QTableWidget>

#include "kit/window/plain_text.h"
#include "objects/window/control_names.h"
#include "storage/ui.h"
#include "transfer/rules/receive_stop_rules.h"
#include "transfer/rules/rules_object.h"

namespace vorn {
namespace {

QString Placeholder() {
  return Ui::tr("($追加)");
}
constexpr int kEditorMargin = 24;

// The header that a line is about, with its colon.
QString PrefixOf(const QString& line) {
  return line.left(line.indexOf(u':') + 1);
}

// The rules of a text that was typed or pasted, each in a line. A beginning of its own stands for
// the fixed one; one that is nothing more is none.
QStringList RulesIn(const QString& text, const QString& lock) {
  static const QRegularExpression breaks(QStringLiteral("[\r\n\u2028\u2029]+"));
  QStringList rules;
  for (const QString& line : text.split(breaks)) {
    QString pattern = line.startsWith(lock) ? line.sliced(lock.size()) : line;
    QString beginning = lock;
    for (const QString& header : {kMailerHeader, kSenderHeader}) {
      if (!pattern.trimmed().startsWith(header, Qt::CaseInsensitive)) continue;
      pattern = pattern.trimmed().sliced(header.size()).trimmed();
      beginning = header;
    }
    if (!pattern.trimmed().isEmpty()) rules.append(beginning + pattern);
  }
  return rules;
}

// Whether the text is the whole but for one of its first characters.
bool IsWithoutOne(const QString& text, const QString& whole, qsizetype first) {
  for (qsizetype at = 0; at < first; ++at) {
    if (text == QString(whole).remove(at, 1)) return true;
  }
  return false;
}

}  // namespace

RulePage::RulePage()
    : FormPage(QStringLiteral("rule"), Ui::tr("受信停止(&S)")),
      lvReceiveStop_(new QTableWidget(0, 1, this)),
      txInput_(new QLineEdit(lvReceiveStop_->viewport())),
      menuReceiveStop_(new QMenu(this)) {
  QComboBox* mode = AddChoice(QStringLiteral("cbMode"), Ui::tr("動作(&D)"),
                              {Ui::tr("次の条件に合うメッセージを受信しない")});
  mode->setProperty("tag", QStringLiteral("nosave"));

  lvReceiveStop_->setObjectName(control::kList + RulesObject::kLines);
  lvReceiveStop_->setProperty("tag", QStringLiteral("text"));
  lvReceiveStop_->setAccessibleName(Ui::tr("受信停止の条件"));
  lvReceiveStop_->horizontalHeader()->hide();
  lvReceiveStop_->horizontalHeader()->setStretchLastSection(true);
  lvReceiveStop_->verticalHeader()->hide();
  lvReceiveStop_->setShowGrid(false);
  lvReceiveStop_->setTabKeyNavigation(false);
  lvReceiveStop_->setSelectionBehavior(QAbstractItemView::SelectRows);
  lvReceiveStop_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  lvReceiveStop_->installEventFilter(this);
  lvReceiveStop_->viewport()->installEventFilter(this);
  connect(lvReceiveStop_, &QTableWidget::itemDoubleClicked, this, &RulePage::OpenCurrentRow);
  Layout().addRow(lvReceiveStop_);

  auto* hint =
      PlainLabel(Ui::tr("追加するには ($追加) を右クリックするか、選んでEnterキーを押します。\n"
                        "使える記号: * 任意の文字列、? 任意の1文字、# 数字、[ ] いずれかの文字"),
                 this);
  hint->setWordWrap(true);
  Layout().addRow(hint);
  AddCheck(control::kCheck + RulesObject::kDeletes,
           Ui::tr("受信を停止したメッセージをサーバーから削除する(&X)"));

  txInput_->setObjectName(QStringLiteral("txInput"));
  txInput_->setProperty("tag", QStringLiteral("nosave"));
  txInput_->setAccessibleName(Ui::tr("条件の編集"));
  txInput_->hide();
  txInput_->installEventFilter(this);
  connect(txInput_, &QLineEdit::textChanged, this, &RulePage::FitEditor);
  connect(txInput_, &QLineEdit::textEdited, this, &RulePage::KeepLock);

  menuReceiveStop_->setObjectName(QStringLiteral("menuReceiveStop"));
  menuReceiveStop_->addAction(Ui::tr("メーラー(&M)"), this,
                              [this] { AddRule(kMailerHeader + u' '); });
  menuReceiveStop_->addAction(Ui::tr("送信者(&F)"), this, [this] { AddRule(kSenderHeader); });
}

void RulePage::Loaded(const Disk&) {
  AddLine(*lvReceiveStop_, Placeholder());
  lvReceiveStop_->setCurrentCell(0, 0);
}

void RulePage::Propose(const QString& line) {
  if (line.isEmpty()) return;
  const QList<QTableWidgetItem*> found = lvReceiveStop_->findItems(line, Qt::MatchFixedString);
  const int row = found.isEmpty() ? lvReceiveStop_->rowCount() - 1 : found.first()->row();
  if (found.isEmpty()) {
    lvReceiveStop_->insertRow(row);
    lvReceiveStop_->setItem(row, 0, new QTableWidgetItem(line));
  }
  lvReceiveStop_->setCurrentCell(row, 0);
}

// One that every message matches would stop all mail, and delete it where the user wants that.
PageFault RulePage::Check() {
  for (int row = 0; !IsPlaceholder(row); ++row) {
    const QString line = lvReceiveStop_->item(row, 0)->text();
    if (StopsEverything(line)) {
      return {Ui::tr("「%1」はすべてのメッセージに合います。").arg(line), lvReceiveStop_};
    }
  }
  return {};
}

bool RulePage::IsPlaceholder(int row) const {
  return row == lvReceiveStop_->rowCount() - 1;
}

QString RulePage::Line(const QTableWidget& list, int row) const {
  return IsPlaceholder(row) ? QString() : list.item(row, 0)->text();
}

void RulePage::AddLine(QTableWidget& list, const QString& line) {
  const int row = list.rowCount();
  list.insertRow(row);
  list.setItem(row, 0, new QTableWidgetItem(line));
}

bool RulePage::eventFilter(QObject* watched, QEvent* event) {
  if (watched == txInput_) {
    if (event->type() == QEvent::FocusOut) EndEdit();
    if (event->type() != QEvent::KeyPress) return false;
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Escape) editedRow_ = -1;
    if (key != Qt::Key_Escape && key != Qt::Key_Return && key != Qt::Key_Enter) return false;
    EndEdit();
    lvReceiveStop_->setFocus();
    return true;
  }
  if (watched == lvReceiveStop_->viewport() && event->type() == QEvent::MouseButtonRelease &&
      static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) {
    OpenCurrentRow();
    return true;
  }
  if (watched == lvReceiveStop_ && event->type() == QEvent::KeyPress) {
    return ListKey(static_cast<QKeyEvent*>(event)->key());
  }
  return false;
}

bool RulePage::ListKey(int key) {
  switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
    case Qt::Key_Menu:
      OpenCurrentRow();
      return true;
    case Qt::Key_Delete:
      RemoveRules();
      return true;
    default:
      return false;
  }
}

void RulePage::OpenCurrentRow() {
  const int row = lvReceiveStop_->currentRow();
  if (row < 0) return;
  if (!IsPlaceholder(row)) {
    const QString line = lvReceiveStop_->item(row, 0)->text();
    BeginEdit(row, line, PrefixOf(line));
    return;
  }
  const QRect place = lvReceiveStop_->visualItemRect(lvReceiveStop_->item(row, 0));
  menuReceiveStop_->popup(lvReceiveStop_->viewport()->mapToGlobal(place.bottomLeft()));
}

void RulePage::AddRule(const QString& prefix) {
  BeginEdit(lvReceiveStop_->rowCount() - 1, prefix, prefix);
}

void RulePage::BeginEdit(int row, const QString& text, const QString& lock) {
  editedRow_ = row;
  lock_ = lock;
  pattern_ = text.sliced(lock.size());
  lvReceiveStop_->scrollToItem(lvReceiveStop_->item(row, 0));
  txInput_->setText(text);
  txInput_->show();
  FitEditor();
  txInput_->setFocus();
  txInput_->setCursorPosition(static_cast<int>(text.size()));
}

// The fixed beginning comes back at once when it was overwritten, so that what is dropped at the
// end is never something that the user saw. A whole line that was pasted changes it.
void RulePage::KeepLock(const QString& text) {
  QString pattern = text;
  if (text.startsWith(lock_)) {
    pattern = text.sliced(lock_.size());
  } else if (text.startsWith(kMailerHeader, Qt::CaseInsensitive)) {
    lock_ = kMailerHeader + u' ';
    pattern = text.sliced(kMailerHeader.size()).trimmed();
  } else if (text.startsWith(kSenderHeader, Qt::CaseInsensitive)) {
    lock_ = kSenderHeader;
    pattern = text.sliced(kSenderHeader.size()).trimmed();
  } else if (IsWithoutOne(text, lock_ + pattern_, lock_.size())) {
    pattern = pattern_;
  }
  pattern_ = pattern;
  if (text == lock_ + pattern) return;
  const qsizetype fromEnd = qMin(text.size() - txInput_->cursorPosition(), pattern.size());
  txInput_->setText(lock_ + pattern);
  txInput_->setCursorPosition(static_cast<int>(txInput_->text().size() - fromEnd));
}

// The box lies over its row and grows with its text.
void RulePage::FitEditor() {
  if (editedRow_ < 0) return;
  const QRect row = lvReceiveStop_->visualItemRect(lvReceiveStop_->item(editedRow_, 0));
  const int wanted = txInput_->fontMetrics().horizontalAdvance(txInput_->text()) + kEditorMargin;
  txInput_->setGeometry(row.x(), row.y(), qMin(qMax(wanted, row.width() / 2), row.width()),
                        row.height());
}

// A line that is not more than its fixed beginning is dropped: a rule without a pattern would stop
// everything or nothing.
void RulePage::EndEdit() {
  txInput_->hide();
  int row = std::exchange(editedRow_, -1);
  if (row < 0) return;
  bool isOther = IsPlaceholder(row);
  for (const QString& rule : RulesIn(txInput_->text(), lock_)) {
    if (isOther) lvReceiveStop_->insertRow(row);
    lvReceiveStop_->setItem(row, 0, new QTableWidgetItem(rule));
    lvReceiveStop_->setCurrentCell(row++, 0);
    isOther = true;
  }
}

void RulePage::RemoveRules() {
  QList<int> rows;
  for (const QModelIndex& index : lvReceiveStop_->selectionModel()->selectedRows()) {
    if (!IsPlaceholder(index.row())) rows.append(index.row());
  }
  std::sort(rows.begin(), rows.end(), std::greater<>());
  for (const int row : rows) lvReceiveStop_->removeRow(row);
}

}  // namespace vorn
