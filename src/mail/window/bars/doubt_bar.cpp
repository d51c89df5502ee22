#include "mail/window/bars/doubt_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "kit/window/plain_text.h"
#include "mail/store/outbox.h"
#include "storage/base/time_text.h"
#include "storage/ui.h"

namespace vorn {

DoubtBar::DoubtBar(QWidget* parent) : QFrame(parent), label_(PlainLabel()) {
  setObjectName(QStringLiteral("frDoubt"));
  setFrameShape(QFrame::StyledPanel);
  label_->setObjectName(QStringLiteral("lbDoubt"));
  label_->setTextFormat(Qt::PlainText);
  label_->setWordWrap(true);
  auto* again = new QPushButton(Ui::tr("もう一度送信(&G)"));
  again->setObjectName(QStringLiteral("cmSendAgain"));
  auto* keep = new QPushButton(Ui::tr("送信済みにする(&K)"));
  keep->setObjectName(QStringLiteral("cmKeepAsSent"));
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(label_, 1);
  layout->addWidget(again);
  layout->addWidget(keep);
  connect(again, &QPushButton::clicked, this, &DoubtBar::SendAgainWanted);
  connect(keep, &QPushButton::clicked, this, &DoubtBar::KeepAsSentWanted);
  hide();
}

void DoubtBar::Show(const DoubtfulMessage& message) {
  QStringList lines{
      Ui::tr("このメッセージは、届いたかどうか分かりません。相手に確かめてから選んでください。"),
      message.server.isEmpty()
          ? Ui::tr("メールファイルが古い状態に戻っていたので、もう送信したかもしれません。")
          : Ui::tr("いつ送信を試みたか: %1（サーバー「%2」）")
                .arg(ShownTimeText(message.started), message.server)};
  if (!message.reply.isEmpty()) lines.append(Ui::tr("サーバーの応答: %1").arg(message.reply));
  label_->setText(ShownText(lines.join(u'\n')));
  show();
}

}  // namespace vorn
