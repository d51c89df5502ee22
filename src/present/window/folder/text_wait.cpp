#include "present/window/folder/text_wait.h"

#include <QLocale>
#include <utility>

#include "mail/search/text_search.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kFindMs = 120000;  // which messages there are; reading them takes what it takes
constexpr int kTellMs = 250;

}  // namespace

TextWait::TextWait(Context& context, std::function<void()> stopped)
    : TextWait(context, std::move(stopped), new QPushButton(Ui::tr("中止(&C)"))) {}

TextWait::TextWait(Context& context, std::function<void()> stopped, QPushButton* button)
    : NoticeBar(QStringLiteral("barTexts"), button), context_(context) {
  button->setObjectName(QStringLiteral("cmStopTexts"));
  connect(button, &QPushButton::clicked, this, [this, stopped = std::move(stopped)] {
    Stop();
    stopped();
  });
  connect(&told_, &QTimer::timeout, this, &TextWait::Tell);
}

void TextWait::Begin(const QString& question, const QString& text,
                     const std::function<void(const Result<SerialIds>&)>& then) {
  Stop();
  const auto finds = [search = TextSearch(context_, text)](Connection& connection,
                                                           const QString& value) {
    return search.Finds(connection, SerialId(value));
  };
  const auto take = [this, then](const ConditionRun::Answer& answer) {
    told_.stop();
    Say({});
    if (!answer.values) return then(answer.values.Error());
    SerialIds found;
    for (const QVariant& value : *answer.values) found.append(SerialIdOf(value));
    then(found);
  };
  run_.reset(new ConditionRun(context_, question, kFindMs, take, {finds, Most + 1}));
  told_.start(kTellMs);
  Tell();
}

void TextWait::Tell() {
  const auto [done, of] = run_->Progress();
  const QLocale locale;
  Say(of == 0 ? Ui::tr("本文を検索しています…")
              : Ui::tr("本文を検索しています… %1／%2通")
                    .arg(locale.toString(done), locale.toString(of)));
}

void TextWait::Stop() {
  told_.stop();
  run_.reset();
  Say({});
}

}  // namespace vorn
