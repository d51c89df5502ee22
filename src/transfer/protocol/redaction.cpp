#include "transfer/protocol/redaction.h"

#include <algorithm>
#include <vector>

#include "storage/ui.h"
#include "transfer/protocol/server_words.h"

namespace vorn {
namespace {

// What is looked at, and what of it may be shown: a secret that begins in the one is whole in the
// other.
constexpr qsizetype kMaxReply = 4096;
constexpr qsizetype kMaxShown = 1024;
// A secret is also recognised by a part of this length.
constexpr qsizetype kPart = 6;
// Hiding so short a secret would show it by the gaps it leaves in ordinary words.
constexpr qsizetype kTooShort = 4;
const char kHidden[] = "***";

// A reply with what could tear a secret left out, and where each character came from.
struct View {
  QByteArray text;
  std::vector<qsizetype> from, to;

  void Append(char c, qsizetype begin, qsizetype end) {
    text += c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    from.push_back(begin);
    to.push_back(end);
  }
};

bool IsGap(char c) {
  return (c >= 0 && c <= ' ') || c == 0x7F || c == '"' || c == '\'';
}

// The length of the code that begins a line of an SMTP reply, such as "535-".
qsizetype CodeLength(QByteArrayView line) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  return line.size() > 3 && std::all_of(line.begin(), line.begin() + 3, isDigit) &&
                 (line[3] == '-' || line[3] == ' ')
             ? 4
             : 0;
}

// Codes at the start of lines may belong to what the lines say or tear it. With `decoded`,
// percent-encoded characters ("%41", in quoted-printable "=41") are read as meant.
View ViewOf(QByteArrayView reply, bool withCodes, bool decoded) {
  View view;
  for (qsizetype at = 0; at < reply.size();) {
    if (!withCodes && (at == 0 || reply[at - 1] == '\n')) at += CodeLength(reply.sliced(at));
    if (at >= reply.size()) break;
    qsizetype length = 1;
    char c = reply[at];
    if (decoded && (c == '%' || c == '=') && at + 2 < reply.size()) {
      bool isHex = false;
      const int value = QByteArray(reply.sliced(at + 1, 2).toByteArray()).toInt(&isHex, 16);
      if (isHex) {
        c = static_cast<char>(value);
        length = 3;
      }
    }
    if (!IsGap(c)) view.Append(c, at, at + length);
    at += length;
  }
  return view;
}

// Marks every stretch that the view shares with a form.
void Mark(const View& view, const QByteArray& form, std::vector<bool>& hidden) {
  const qsizetype part = qMin(form.size(), kPart);
  const auto hide = [&](qsizetype at, qsizetype length) {
    const auto first = static_cast<size_t>(at);
    const auto last = static_cast<size_t>(at + length - 1);
    std::fill(hidden.begin() + view.from[first], hidden.begin() + view.to[last], true);
  };
  for (qsizetype start = 0; start + part <= form.size(); ++start) {
    const QByteArray piece = form.sliced(start, part);
    for (qsizetype at = view.text.indexOf(piece); at >= 0; at = view.text.indexOf(piece, at + 1)) {
      hide(at, part);
    }
  }
}

}  // namespace

Redaction::Redaction(const Credentials& who) {
  AddBase64(who.user.toUtf8());
  for (const CredentialPart& part : kCredentialParts) {
    const QString& secret = who.*part.text;
    if (!part.isSecret || secret.isEmpty()) continue;
    Add(secret.toUtf8());
    if (secret.toLatin1() != secret.toUtf8()) Add(secret.toLatin1());
    AddBase64('\0' + who.user.toUtf8() + '\0' + secret.toUtf8());
  }
}

void Redaction::Add(const QByteArray& secret) {
  if (secret.isEmpty()) return;
  AddForm(secret);
  AddForm(secret.toHex());
  AddBase64(secret);
}

// Base64 writes three bytes as four characters, so a text looks different after each number of
// bytes before it; the characters at its ends depend on its neighbours and are left out.
void Redaction::AddBase64(const QByteArray& secret) {
  if (secret.isEmpty()) return;
  for (const QByteArray::Base64Option alphabet :
       {QByteArray::Base64Encoding, QByteArray::Base64UrlEncoding}) {
    AddForm(secret.toBase64(alphabet | QByteArray::OmitTrailingEquals));
    for (const qsizetype before : {0, 1, 2}) {
      const QByteArray encoded = (QByteArray(before, 'x') + secret).toBase64(alphabet);
      const qsizetype first = (before * 8 + 5) / 6;
      const qsizetype last = (before + secret.size()) * 8 / 6;
      if (last - first >= kTooShort) AddForm(encoded.sliced(first, last - first));
    }
  }
}

void Redaction::AddForm(const QByteArray& form) {
  const QByteArray text = ViewOf(form, true, false).text;
  if (!text.isEmpty() && !forms_.contains(text)) forms_.append(text);
}

QByteArray Redaction::Cleaned(const QByteArray& whole) const {
  const QByteArray reply = whole.left(kMaxReply);
  std::vector<bool> hidden(static_cast<size_t>(reply.size()), false);
  for (const int reading : {0, 1, 2, 3}) {
    const View view = ViewOf(reply, (reading & 1) != 0, (reading & 2) != 0);
    for (const QByteArray& form : forms_) {
      if (form.size() < kTooShort && view.text.contains(form)) return kHidden;
      Mark(view, form, hidden);
    }
  }
  QByteArray clean;
  for (qsizetype at = 0; at < qMin(reply.size(), kMaxShown); ++at) {
    if (!hidden[static_cast<size_t>(at)]) {
      clean += reply[at];
    } else if (at == 0 || !hidden[static_cast<size_t>(at - 1)]) {
      clean += kHidden;
    }
  }
  return clean;
}

QString Redaction::Words(const QByteArray& reply) const {
  return ServerWords(Cleaned(reply));
}

QString Redaction::WithReply(const QString& sentence, const QByteArray& reply) const {
  // A bracket of the server's must not end ours, or it goes on in the program's voice.
  const QString end = Ui::tr("）");
  QString words = Words(reply).replace(u'（', u'(').replace(u'）', u')');
  if (end == u")") words.replace(u'(', u'[').replace(u')', u']');
  return sentence + Ui::tr("（サーバーの応答: ") + words + end;
}

}  // namespace vorn
