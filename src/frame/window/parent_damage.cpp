// What the main window says of damaged files, and the user's decision about them.

#include <QMessageBox>
#include <QPushButton>

#include "frame/window/parent_window.h"
#include "kit/window/plain_text.h"
#include "objects/profile.h"
#include "storage/known_damage.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kRestMs = 10000;  // between two attempts to keep what cannot be kept

}  // namespace

// Each file once per start.
void ParentWindow::TellDamage() {
  const QList<KnownDamage> undecided = UndecidedDamage(context_);
  if (context_.Data.HasDamage()) damageRest_.setRemainingTime(kRestMs);
  for (const KnownDamage& damage : undecided) {
    if (damageTold_.contains(damage.file)) continue;
    damageTold_.insert(damage.file);
    TellOneDamage(damage);
  }
}

void ParentWindow::TellOneDamage(const KnownDamage& damage) {
  const QString what =
      damage.parts == QStringList{kOlderFile}
          ? Ui::tr(
                "データベースファイル「%1」は、前に使ったときより古い状態です（古い複製か、"
                "記録ファイルが失われています）。送信待ちのメッセージは、送信済みかどうかを"
                "確かめてください。")
                .arg(damage.file)
          : Ui::tr("データベースファイル「%1」が壊れています。").arg(damage.file);
  AddEvent(kEventError, kEventObject, context_.Session->SerialID(),
           context_.Session->Text(u"Object"), QStringLiteral("account"), what);
  QMessageBox box(
      QMessageBox::Warning, kApplicationTitle,
      what +
          Ui::tr("読み込めないメッセージがあるかもしれません。決めるまでは受信せず、サーバーの"
                 "メッセージも削除しません。") +
          QStringLiteral("\n\n") +
          Ui::tr(
              "読み込めるメッセージを「ファイル」の「フォルダの書き出し」で別の場所に保存するか、"
              "バックアップから戻してください。「vornctl check」で、どのメッセージが読み込めない"
              "かを調べられます。"),
      QMessageBox::NoButton, this);
  box.setTextFormat(Qt::PlainText);
  box.setObjectName(QStringLiteral("damage"));
  QPushButton* receive = box.addButton(Ui::tr("それでも受信する"), QMessageBox::AcceptRole);
  QPushButton* later = box.addButton(Ui::tr("受信しない"), QMessageBox::RejectRole);
  box.setDefaultButton(later);
  box.setEscapeButton(later);
  box.exec();
  if (box.clickedButton() != receive) return;
  for (const QString& file : ProfileFiles(context_, *context_.Session)) {
    if (!file.endsWith(u'/' + damage.file) || AcceptDamage(context_, file)) continue;
    ShowBox(this, QMessageBox::Critical,
            Ui::tr("判断を保存できません。") + context_.Data.LastError().text);
  }
}

}  // namespace vorn
