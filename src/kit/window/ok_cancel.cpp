#include "kit/window/ok_cancel.h"

#include <QPushButton>

#include "kit/window/plain_text.h"
#include "storage/ui.h"

namespace vorn {

QDialogButtonBox* OkCancelBox() {
  auto* box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  box->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmOk"));
  box->button(QDialogButtonBox::Ok)->setText(QStringLiteral("OK"));
  box->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmCancel"));
  box->button(QDialogButtonBox::Cancel)->setText(Ui::tr("キャンセル"));
  return box;
}

std::optional<bool> AskToSave(QWidget* parent) {
  const auto answer =
      ShowBox(parent, QMessageBox::Question, Ui::tr("変更を保存しますか？"),
              QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes);
  if (answer == QMessageBox::Cancel) return std::nullopt;
  return answer == QMessageBox::Yes;
}

}  // namespace vorn
