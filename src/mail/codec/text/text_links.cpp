#include "mail/codec/text/text_links.h"

#include <QRegularExpression>

namespace vorn {
namespace {

// The characters of addresses (RFC 3986, appendix A); Japanese sentences go on right behind them.
const QString kPage = QStringLiteral("https?://[A-Za-z0-9\\-._~:/?#\\[\\]@!$&'()*+,;=%]+");
const QString kMailbox =
    QStringLiteral("[A-Za-z0-9._%+\\-]+@[A-Za-z0-9\\-]+(?:\\.[A-Za-z0-9\\-]+)+");

qsizetype LengthOf(QStringView address) {
  qsizetype length = address.size();
  const auto opens = [&](QChar bracket) { return address.first(length).count(bracket); };
  while (length > 0) {
    const QChar last = address[length - 1];
    const bool ends = QStringView(u".,;:!?'").contains(last);
    const bool closes =
        (last == u')' && opens(u'(') < opens(u')')) || (last == u']' && opens(u'[') < opens(u']'));
    if (!ends && !closes) break;
    --length;
  }
  return length;
}

}  // namespace

QList<TextLink> FindTextLinks(const QString& line) {
  static const QRegularExpression kAddress(u'(' + kPage + QStringLiteral(")|(") + kMailbox + u')',
                                           QRegularExpression::CaseInsensitiveOption);
  QList<TextLink> links;
  for (auto found = kAddress.globalMatch(line); found.hasNext();) {
    const QRegularExpressionMatch match = found.next();
    const bool isPage = match.hasCaptured(1);
    const QString address = match.captured().left(LengthOf(match.capturedView()));
    const QUrl url(isPage ? address : QStringLiteral("mailto:") + address);
    if (url.isValid() && (!isPage || !url.host().isEmpty())) {
      links.append({match.capturedStart(), address.size(), url});
    }
  }
  return links;
}

}  // namespace vorn
