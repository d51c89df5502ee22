#include "kit/window/open_outside.h"

#include <QDesktopServices>
#include <QMessageBox>
#include <QUrl>

#include "kit/window/plain_text.h"
#include "storage/ui.h"

namespace vorn {

void AskToOpenOutside(QWidget* parent, const QUrl& url) {
  if (url.scheme() != u"http" && url.scheme() != u"https") return;
  const QString address = url.toString(QUrl::FullyEncoded);
  // What stands before an "@" in it only looks like a place.
  const auto answer = ShowBox(parent, QMessageBox::Question,
                              Ui::tr("次のアドレスを開きます。よろしいですか？\n\n") + address +
                                  Ui::tr("\n\n接続先：%1").arg(url.host(QUrl::FullyEncoded)),
                              QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
  if (answer != QMessageBox::Yes || QDesktopServices::openUrl(url)) return;
  ShowBox(parent, QMessageBox::Information,
          Ui::tr("ブラウザーを起動できません。アドレスをコピーして使ってください。\n\n") + address);
}

}  // namespace vorn
