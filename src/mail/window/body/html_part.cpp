#include "mail/window/body/html_part.h"

#include "mail/attached_pictures.h"
#include "storage/ui.h"

namespace vorn {

HtmlPart PartToRead(Context& context, const OpenedMessage& opened,
                    const std::function<QString()>& html) {
  const AttachedPictures pictures(opened);
  if (!opened.html.isEmpty()) {
    return {[html, pictures] { return pictures.Below(html()); }, QStringLiteral("HTML"),
            OpensAsHtml(context, opened.model)};
  }
  if (pictures.IsEmpty()) return {};
  return {[pictures] { return pictures.Below({}); }, Ui::tr("画像"),
          opened.model.text.Get().trimmed().isEmpty()};
}

}  // namespace vorn
