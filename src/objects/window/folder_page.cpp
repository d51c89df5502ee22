#include "objects/window/folder_page.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <utility>

#include "kit/window/plain_text.h"
#include "kit/window/text_box.h"
#include "objects/object_types.h"
#include "storage/connection.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kPreviewDelayMs = 300;
constexpr int kPreviewMs = 2000;
constexpr int kSqlHeight = 70;

struct Matches {
  int count = 0;
  QString error;
};

Matches CountMatches(Context& context, const Disk& folder) {
  Matches matches;
  const QString counting = FolderSqlBuilder(context).Query(folder).Counting();
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  const bool opened = mail && context.Data.OpenRecordset(counting, CursorKind::ForwardOnly,
                                                         StatementTrust::UserCondition);
  if (opened && !context.Data.Recordset()->Failed()) {
    matches.count = context.Data.Recordset()->Fields(u"N").toInt();
  } else {
    matches.error = context.Data.LastError().text;
  }
  return matches;
}

}  // namespace

FolderPage::FolderPage(Context& context, const QString& serialId)
    : FormPage(object_type::kFolder, Ui::tr("フォルダ(&F)")),
      context_(context),
      serialId_(serialId) {
  lvCondition_ = new ConditionEditor(context, this);
  Layout().addRow(lvCondition_);
  buttons_ = new QWidget;
  auto* row = new QHBoxLayout(buttons_);
  row->setContentsMargins(0, 0, 0, 0);
  const auto button = [&](const QString& name, const QString& text, auto clicked) {
    auto* push = new QPushButton(text);
    push->setObjectName(name);
    push->setAutoDefault(false);
    connect(push, &QPushButton::clicked, lvCondition_, clicked);
    row->addWidget(push);
  };
  button(QStringLiteral("cmAddCondition"), Ui::tr("条件を追加(&A)"), &ConditionEditor::AddRow);
  button(QStringLiteral("cmRemoveCondition"), Ui::tr("条件を削除(&D)"),
         &ConditionEditor::RemoveRow);
  row->addStretch();
  Layout().addRow(buttons_);

  ckSqlUse_ = AddCheck(QStringLiteral("ckSqlUse"), Ui::tr("条件をSQLで書く(&Q)"));
  txSql_ = new TextBox(this);
  txSql_->setObjectName(QStringLiteral("txSql"));
  txSql_->setFixedHeight(kSqlHeight);
  txSql_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  txSql_->setTabChangesFocus(true);
  txSql_->setPlaceholderText(Ui::tr("例: mail.FIELD_SUBJECT LIKE '*会議*' AND STATUS = 4"));
  Layout().addRow(QStringLiteral("&SQL"), txSql_);
  matches_ = PlainLabel({}, this);
  matches_->setObjectName(QStringLiteral("lbMatches"));
  matches_->setWordWrap(true);
  Layout().addRow(matches_);

  delay_.setSingleShot(true);
  delay_.setInterval(kPreviewDelayMs);
  connect(&delay_, &QTimer::timeout, this, &FolderPage::ShowMatches);
  const auto later = [this] { delay_.start(); };
  connect(lvCondition_, &ConditionEditor::Changed, this, later);
  connect(txSql_, &QPlainTextEdit::textChanged, this, later);
  connect(ckSqlUse_, &QCheckBox::toggled, this, &FolderPage::FollowSqlUse);
  FollowSqlUse(false);
}

void FolderPage::FollowSqlUse(bool useSql) {
  txSql_->setEnabled(useSql);
  lvCondition_->setEnabled(!useSql);
  buttons_->setEnabled(!useSql);
  delay_.start();
}

DiskPtr FolderPage::Edited() const {
  auto folder = std::make_shared<Disk>(serialId_);
  QStringList lines;
  for (int row = 0; row < lvCondition_->rowCount(); ++row) lines.append(Line(*lvCondition_, row));
  folder->Let(QStringLiteral("SqlUse"), ckSqlUse_->isChecked());
  folder->Let(QStringLiteral("Sql"), txSql_->toPlainText());
  folder->Let(QStringLiteral("Condition"), lines.join(kLineBreak));
  return folder;
}

void FolderPage::Loaded(const Disk&) {
  ShowMatches();
}

void FolderPage::ShowMatches() {
  delay_.stop();
  // The window stands still meanwhile, and the user goes on writing.
  const int usual = std::exchange(Connection::ConditionMs, kPreviewMs);
  const Matches matches = CountMatches(context_, *Edited());
  Connection::ConditionMs = usual;
  matches_->setText(matches.error.isEmpty()
                        ? Ui::tr("今は%1通のメッセージが当てはまります。").arg(matches.count)
                        : matches.error);
}

PageFault FolderPage::Check() {
  if (ckSqlUse_->isChecked() && txSql_->toPlainText().trimmed().isEmpty()) {
    return {Ui::tr("SQLの条件が書かれていません。"), txSql_};
  }
  if (RefersToItself(context_, *Edited())) {
    return {Ui::tr("条件のフォルダをたどると、このフォルダ自身に戻ります。"), lvCondition_};
  }
  const Matches matches = CountMatches(context_, *Edited());
  if (matches.error.isEmpty()) return {};
  return {matches.error, ckSqlUse_->isChecked() ? static_cast<QWidget*>(txSql_) : lvCondition_};
}

// A folder keeps its kind once it has one.
void FolderPage::Finish(Disk& bag) {
  if (!bag.Text(u"Draw").isEmpty()) return;
  const bool isActive = bag.Flag(u"SqlUse") || lvCondition_->rowCount() > 0;
  bag.Let(QStringLiteral("Draw"), isActive ? QStringLiteral("active") : QStringLiteral("static"));
}

QString FolderPage::Line(const QTableWidget&, int row) const {
  return lvCondition_->Line(row);
}

void FolderPage::AddLine(QTableWidget&, const QString& line) {
  lvCondition_->AddLine(line);
}

}  // namespace vorn
