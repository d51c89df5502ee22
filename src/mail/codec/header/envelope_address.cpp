#include "mail/codec/header/envelope_address.h"

#include <unicode/uidna.h>

#include <algorithm>
#include <array>
#include <memory>

#include "mail/codec/charset/character_kinds.h"

namespace vorn {
namespace {

constexpr int kMaxDomain = 255;  // RFC 1035 section 2.3.4

// A local part in quotes (RFC 5321 section 4.1.2), which may hold blanks.
bool IsQuoted(QStringView local) {
  if (local.size() < 3 || !local.startsWith(u'"') || !local.endsWith(u'"')) return false;
  for (qsizetype at = 1; at + 1 < local.size(); ++at) {
    if (local[at] == u'"') return false;
    if (local[at] == u'\\' && ++at + 1 == local.size()) return false;
  }
  return true;
}

// Invisible characters would show the user another address than the one that is written to.
bool IsSafe(const QString& address) {
  const qsizetype at = std::max<qsizetype>(address.lastIndexOf(u'@'), 0);
  QString checked = address;
  if (IsQuoted(QStringView(address).first(at))) {
    checked = address.first(at).remove(u' ') + address.sliced(at);
  }
  return !address.isEmpty() && std::none_of(checked.begin(), checked.end(), [](QChar c) {
    const QChar::Category category = c.category();
    return c.isSpace() || c == u'<' || c == u'>' || category == QChar::Other_Control ||
           category == QChar::Other_Format;
  }) && address.isValidUtf16();
}

// Comments and source routes (RFC 5321 section 4.1.2) are no address, nor is a name without a
// domain but the one that every server has (section 4.1.1.3).
bool IsMailbox(const QString& local, const QString& domain, bool hasDomain) {
  if (!hasDomain) return local.compare(u"postmaster", Qt::CaseInsensitive) == 0;
  const bool isQuoted = local.startsWith(u'"');
  return !local.isEmpty() && !domain.isEmpty() && !local.startsWith(u'@') &&
         (isQuoted || !(local.contains(u'(') || local.contains(u')'))) && !domain.contains(u')');
}

// Empty when the text is no domain name.
QByteArray ToALabels(const QString& domain) {
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<UIDNA, decltype(&uidna_close)> idna(
      uidna_openUTS46(UIDNA_NONTRANSITIONAL_TO_ASCII | UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ |
                          UIDNA_USE_STD3_RULES,
                      &error),
      &uidna_close);
  if (U_FAILURE(error)) return {};
  std::array<UChar, kMaxDomain + 1> name{};
  UIDNAInfo info = UIDNA_INFO_INITIALIZER;
  const int length = uidna_nameToASCII(idna.get(), reinterpret_cast<const UChar*>(domain.utf16()),
                                       static_cast<int32_t>(domain.size()), name.data(), kMaxDomain,
                                       &info, &error);
  if (U_FAILURE(error) || info.errors != 0) return {};
  return QString::fromUtf16(name.data(), length).toLatin1();
}

}  // namespace

std::optional<EnvelopeAddress> ToEnvelope(const QString& address) {
  if (!IsSafe(address)) return std::nullopt;
  const qsizetype at = address.lastIndexOf(u'@');
  const QString local = at < 0 ? address : address.first(at);
  const QString domain = at < 0 ? QString() : address.sliced(at + 1);
  if (!IsMailbox(local, domain, at >= 0)) return std::nullopt;
  QByteArray name = domain.toLatin1();
  if (!IsAscii(domain)) {
    name = ToALabels(domain);
    if (name.isEmpty()) return std::nullopt;
  }
  const QByteArray path = local.toUtf8() + (at < 0 ? QByteArray() : '@' + name);
  return EnvelopeAddress{path, !IsAscii(local)};
}

QString ToHeaderAddress(const QString& address) {
  const std::optional<EnvelopeAddress> path = ToEnvelope(address);
  return path && !path->needsUtf8 ? QString::fromLatin1(path->path) : address;
}

bool IsSameMailbox(QByteArrayView path, QByteArrayView other) {
  const qsizetype at = path.lastIndexOf('@');
  return at == other.lastIndexOf('@') && path.size() == other.size() &&
         path.first(qMax<qsizetype>(at, 0)) == other.first(qMax<qsizetype>(at, 0)) &&
         path.compare(other, Qt::CaseInsensitive) == 0;
}

}  // namespace vorn
