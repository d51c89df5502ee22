#include <QFile>
#include <QSaveFile>

#include "ctl/command.h"
#include "present/message_list_page.h"
#include "storage/files/whole_file.h"
#include "storage/ui.h"

namespace vorn::ctl {

int WritePage(Context& context, const Arguments& arguments) {
  const QString name = arguments.Words().value(1);
  const QString out = arguments.Text(QStringLiteral("out"));
  const int page = arguments.Number(QStringLiteral("page"), 1).value_or(0);
  if (out.isEmpty() || page < 1) {
    return Complain(Ui::tr("--page は1以上の数、--out はファイル名です。"), kExitUsage);
  }
  const Result<SerialId> folder = FindFolder(context, name);
  if (!folder) return Complain(folder.Error().text, kExitFailure);
  const auto written = MessageListPages(context).CreateMessageListPage(*folder, page);
  if (!written) {
    return Complain(Ui::tr("ページを作成できません。") + written.Error().text, kExitFailure);
  }
  // Written anew, as private as the page was.
  const auto bytes = ReadFile(written->content);
  QFile::remove(written->content);
  QSaveFile file(out);
  if (bytes && file.open(QIODevice::WriteOnly) &&
      file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
      file.write(*bytes) == bytes->size() && FinishFile(file)) {
    return kExitOk;
  }
  return Complain(Ui::tr("「%1」に書き込めません。").arg(out), kExitFailure);
}

}  // namespace vorn::ctl
