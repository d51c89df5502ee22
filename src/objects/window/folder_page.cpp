#include "objects/window/folder_page.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <utility>

#include "kit/window/plain_text.h"
#include "kit/window/text_box.h"
#include "mail/search/folder_count.h"
#include "objects/any_object.h"
#include "objects/folder_object.h"
#include "objects/object_types.h"
#include "objects/window/control_names.h"
#include "storage/engine/condition_limit.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kPreviewDelayMs = 300;
constexpr int kPreviewMs = 200;  // the window stands still meanwhile
constexpr int kTrialMs = 500;
constexpr int kPreviewLimitMs = 15000;
constexpr int kSqlHeight = 60;

struct Matches {
  int count = 0;
  QString error;
  bool tookLong = false;
};

QString MatchesText(int count) {
  return Ui::tr("今は%n通のメッセージが当てはまります。", nullptr, count);
}

Matches CountMatches(Context& context, const Disk& folder, int limitMs) {
  Matches matches;
  const ConditionLimit limit(limitMs);
  const Result<int> counted = CountMessages(context, FolderSqlBuilder(context).Query(folder));
  if (counted) {
    matches.count = *counted;
  } else {
    matches.error = counted.Error().text;
    matches.tookLong = limit.IsReached();
  }
  return matches;
}

}  // namespace

FolderPage::FolderPage(Context& context, const SerialId& serialId)
    : FormPage(object_type::kFolder, Ui::tr("フォルダ(&F)")),
      context_(context),
      serialId_(serialId) {
  lvCondition_ = new ConditionEditor(context, this);
  Layout().addRow(lvCondition_);
  buttons_ = new QWidget;
  auto* row = new QHBoxLayout(buttons_);
  row->setContentsMargins(0, 0, 0, 0);
  const auto button = [&](const QString& name, const QString& text, auto clicked) {
    QPushButton* push = MakeButton(name, text);
    connect(push, &QPushButton::clicked, lvCondition_, clicked);
    row->addWidget(push);
  };
  button(QStringLiteral("cmAddCondition"), Ui::tr("条件を追加(&A)"), &ConditionEditor::AddRow);
  button(QStringLiteral("cmRemoveCondition"), Ui::tr("条件を削除(&D)"),
         &ConditionEditor::RemoveRow);
  row->addStretch();
  Layout().addRow(buttons_);

  ckSqlUse_ = AddCheck(control::kCheck + FolderObject::kSqlUse, Ui::tr("条件をSQLで書く(&Q)"));
  txSql_ = new TextBox(this);
  txSql_->setObjectName(control::kText + FolderObject::kSql);
  txSql_->setFixedHeight(kSqlHeight);
  txSql_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  txSql_->setTabChangesFocus(true);
  txSql_->setPlaceholderText(Ui::tr("例: mail.FIELD_SUBJECT LIKE '*会議*' AND STATUS = 4"));
  Layout().addRow(QStringLiteral("&SQL"), txSql_);
  matches_ = PlainLabel({}, this);
  matches_->setObjectName(QStringLiteral("lbMatches"));
  matches_->setWordWrap(true);
  stop_ = MakeButton(QStringLiteral("cmStopMatches"), Ui::tr("中止(&C)"));
  QSizePolicy place = stop_->sizePolicy();
  place.setRetainSizeWhenHidden(true);
  stop_->setSizePolicy(place);
  stop_->hide();
  connect(stop_, &QPushButton::clicked, this, [this] { StopCounting(Ui::tr("中止しました。")); });
  auto* counted = new QHBoxLayout;
  counted->addWidget(matches_, 1);
  counted->addWidget(stop_);
  Layout().addRow(counted);

  delay_.setSingleShot(true);
  delay_.setInterval(kPreviewDelayMs);
  connect(&delay_, &QTimer::timeout, this, &FolderPage::ShowMatches);
  const auto later = [this] {
    StopCounting({});
    delay_.start();
  };
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
  FolderObject::SetConditions(*folder, ckSqlUse_->isChecked(), txSql_->toPlainText(),
                              lines.join(kLineBreak));
  return folder;
}

void FolderPage::Loaded(const Disk&) {
  ShowMatches();
}

void FolderPage::ShowMatches() {
  delay_.stop();
  const Matches matches = CountMatches(context_, *Edited(), kPreviewMs);
  if (matches.tookLong) return CountElsewhere();
  StopCounting(matches.error.isEmpty() ? MatchesText(matches.count) : matches.error);
}

void FolderPage::CountElsewhere() {
  stop_->show();
  matches_->setText(Ui::tr("条件に合うメッセージを数えています…"));
  run_.reset(new ConditionRun(context_, FolderSqlBuilder(context_).Query(*Edited()).Counting(),
                              kPreviewLimitMs, [this](const ConditionRun::Answer& answer) {
                                StopCounting(answer.values
                                                 ? MatchesText(answer.values->value(0).toInt())
                                                 : answer.values.Error().text);
                              }));
}

void FolderPage::StopCounting(const QString& says) {
  run_.reset();
  // The keys stay where they can be seen.
  if (stop_->hasFocus()) ckSqlUse_->setFocus();
  stop_->hide();
  matches_->setText(says);
}

PageFault FolderPage::Check() {
  if (ckSqlUse_->isChecked() && txSql_->toPlainText().trimmed().isEmpty()) {
    return {Ui::tr("SQLの条件が書かれていません。"), txSql_};
  }
  if (RefersToItself(context_, *Edited())) {
    return {Ui::tr("条件のフォルダをたどると、このフォルダ自身に戻ります。"), lvCondition_};
  }
  // One that takes long is no fault: whoever opens its folder can stop it.
  const Matches matches = CountMatches(context_, *Edited(), kTrialMs);
  if (matches.error.isEmpty() || matches.tookLong) return {};
  return {matches.error, ckSqlUse_->isChecked() ? static_cast<QWidget*>(txSql_) : lvCondition_};
}

// A folder keeps its kind once it has one.
void FolderPage::Finish(Disk& bag) {
  if (!AnyObject(bag).Draw().isEmpty()) return;
  FolderObject::SetFilledByHand(bag, !FolderObject(bag).UsesSql() && lvCondition_->rowCount() == 0);
}

QString FolderPage::Line(const QTableWidget&, int row) const {
  return lvCondition_->Line(row);
}

void FolderPage::AddLine(QTableWidget&, const QString& line) {
  lvCondition_->AddLine(line);
}

}  // namespace vorn
