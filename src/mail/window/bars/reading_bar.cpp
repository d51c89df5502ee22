#include "mail/window/bars/reading_bar.h"

#include "mail/window/bars/code_dialog.h"
#include "objects/settings.h"
#include "storage/ui.h"

namespace vorn {

ReadingBar::ReadingBar(Context& context, MessageDocument& document)
    : ReadingBar(context, document, new QPushButton(Ui::tr("元の読み方に戻す(&Y)"))) {}

ReadingBar::ReadingBar(Context& context, MessageDocument& document, QPushButton* asDeclared)
    : NoticeBar(QStringLiteral("frReading"), asDeclared), context_(context), document_(document) {
  asDeclared->setObjectName(QStringLiteral("cmAsDeclared"));
  connect(asDeclared, &QPushButton::clicked, this, [this] { Q_EMIT AnewWanted(true); });
}

void ReadingBar::Show() {
  const auto& readAs = document_.Code().readAs;
  Say(readAs && !document_.IsEditable()
          ? Ui::tr("この画面では「%1」として読んでいます。").arg(readAs->name)
          : QString());
}

void ReadingBar::Pick(CharsetChoice charset) {
  if (document_.IsUnreadable()) return;
  document_.Code().Pick(charset);
  if (document_.IsEditable() || document_.IsWaiting()) {
    Q_EMIT Edited();
    return;
  }
  document_.Edits().KeepCode(charset);
  Q_EMIT AnewWanted(false);
}

void ReadingBar::Choose() {
  const QByteArray source = document_.Source();
  const QString index = document_.Request().ContentIndex();
  const QStringList types = Settings(context_).TextTypes();
  const auto chosen =
      ChooseCode(window(), OfferCodes(source, index, types), WrongLabels(source, index, types));
  if (!chosen) return;
  document_.Code().readAs = chosen;
  Q_EMIT AnewWanted(false);
}

}  // namespace vorn
