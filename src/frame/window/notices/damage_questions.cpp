#include "frame/window/notices/damage_questions.h"

#include <QMessageBox>
#include <QPushButton>

#include "kit/window/plain_text.h"
#include "objects/profile/profile.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kRestMs = 10000;  // between two attempts to keep what cannot be kept

}  // namespace

bool DamageQuestions::IsDue() const {
  return !context_.Data.Damage().IsEmpty() && rest_.hasExpired();
}

void DamageQuestions::Ask() {
  const QList<KnownDamage> undecided = UndecidedDamage(context_);
  if (!context_.Data.Damage().IsEmpty()) rest_.setRemainingTime(kRestMs);
  for (const KnownDamage& damage : undecided) {
    if (told_.contains(damage.file)) continue;
    told_.insert(damage.file);
    AskAbout(damage);
  }
}

void DamageQuestions::AskAbout(const KnownDamage& damage) {
  const QString what = DamageWords(damage);
  record_(what);
  QMessageBox box(
      QMessageBox::Warning, kApplicationTitle,
      what + QStringLiteral("\n") +
          Ui::tr("読み込めないメッセージがあるかもしれません。決めるまでは受信せず、サーバーの"
                 "メッセージも削除しません。") +
          QStringLiteral("\n\n") +
          Ui::tr(
              "読み込めるメッセージを「ファイル」の「フォルダの書き出し」で別の場所に保存するか、"
              "バックアップから戻してください。「vornctl check」で、どのメッセージが読み込めない"
              "かを調べられます。"),
      QMessageBox::NoButton, &window_);
  box.setTextFormat(Qt::PlainText);
  box.setObjectName(QStringLiteral("damage"));
  QPushButton* receive = box.addButton(Ui::tr("それでも受信する"), QMessageBox::AcceptRole);
  QPushButton* later = box.addButton(Ui::tr("受信しない"), QMessageBox::RejectRole);
  box.setDefaultButton(later);
  box.setEscapeButton(later);
  box.exec();
  if (box.clickedButton() == receive) Accept(damage.file);
}

void DamageQuestions::Accept(const QString& name) {
  for (const QString& file : ProfileFiles(context_, *context_.Session)) {
    if (!file.endsWith(u'/' + name) || AcceptDamage(context_, file)) continue;
    ShowBox(&window_, QMessageBox::Critical, Ui::tr("判断を保存できません。"));
  }
}

}  // namespace vorn
