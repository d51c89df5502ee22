// The codec against GMime's own full parse of the same messages in the same run, and the speed of
// the decoders. Prints one JSON line per figure.

#include <gmime/gmime.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/html/html_sanitizer.h"
#include "mail/codec/mime/message_index.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codec/mime/text_extraction.h"

namespace vorn {
namespace {

constexpr int kRounds = 7;
const QStringList kTextTypes{QStringLiteral("text/plain")};

double MedianSeconds(const std::function<void()>& work) {
  std::vector<double> times;
  for (int i = 0; i < kRounds; ++i) {
    QElapsedTimer timer;
    timer.start();
    work();
    times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e9);
  }
  std::sort(times.begin(), times.end());
  return times[kRounds / 2];
}

// Mixed sizes as in the receive benchmark: Japanese text, most with a base64 part.
std::vector<QByteArray> Messages(int count) {
  QRandomGenerator random(20261124);
  const QString sentence = QStringLiteral("明日の会議の資料をお送りします。ご確認ください。\r\n");
  constexpr int kSizes[] = {1500, 3000, 3000, 6000, 6000, 12000, 12000, 24000, 32500};
  std::vector<QByteArray> messages;
  for (int i = 0; i < count; ++i) {
    const int size = kSizes[random.bounded(9)];
    QByteArray text;
    while (text.size() < std::min(size, 6000)) {
      text += *MimeCodec::EncodeText(sentence, MimeCodec::OutputCharset::Jis);
    }
    QByteArray blob(std::max(0, (size - static_cast<int>(text.size())) * 3 / 4), 'b');
    const QByteArray boundary = "b" + QByteArray::number(i);
    messages.push_back(
        "Received: from a by b; Tue, 3 Nov 2026 09:00:00 +0900\r\n"
        "From: =?UTF-8?B?5L2Q6Jek?= <sato" +
        QByteArray::number(i % 50) +
        "@example.jp>\r\n"
        "To: yamada@example.org\r\nDate: Tue, 3 Nov 2026 09:00:00 +0900\r\nMessage-ID: <" +
        QByteArray::number(i) +
        "@example.jp>\r\nSubject: =?UTF-8?B?5Lya6K2w44Gu44GU5qGI5YaF?= " + QByteArray::number(i) +
        "\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=" + boundary +
        "\r\n\r\n--" + boundary + "\r\nContent-Type: text/plain; charset=ISO-2022-JP\r\n\r\n" +
        text + "\r\n--" + boundary +
        "\r\nContent-Type: application/pdf; name=a.pdf\r\nContent-Transfer-Encoding: "
        "base64\r\n\r\n" +
        MimeCodec::EncodeTransfer(blob, MimeCodec::TransferEncoding::Base64) + "\r\n--" + boundary +
        "--\r\n");
  }
  return messages;
}

void ReportMessages(const char* who, const char* figure, const std::vector<QByteArray>& messages,
                    double seconds) {
  double bytes = 0;
  for (const QByteArray& message : messages) bytes += static_cast<double>(message.size());
  std::printf(
      "{\"who\": \"%s\", \"figure\": \"%s\", \"messages_per_s\": %.0f, \"mb_per_s\": %.0f}\n", who,
      figure, static_cast<double>(messages.size()) / seconds, bytes / seconds / 1e6);
}

void ParseWithGMime(const QByteArray& source) {
  GMimeStream* stream =
      g_mime_stream_mem_new_with_buffer(source.constData(), static_cast<size_t>(source.size()));
  GMimeParser* parser = g_mime_parser_new_with_stream(stream);
  GMimeMessage* message = g_mime_parser_construct_message(parser, nullptr);
  if (message == nullptr) std::abort();
  g_object_unref(message);
  g_object_unref(parser);
  g_object_unref(stream);
}

void ReportDecoding(const char* figure, const QByteArray& bytes,
                    const std::function<qsizetype(const QByteArray&)>& decode) {
  const double seconds = MedianSeconds([&] {
    if (decode(bytes) == 0) std::abort();
  });
  std::printf("{\"who\": \"vorn\", \"figure\": \"%s\", \"mb_per_s\": %.0f}\n", figure,
              static_cast<double>(bytes.size()) / seconds / 1e6);
}

void RunMessages() {
  const std::vector<QByteArray> messages = Messages(4000);
  ReportMessages("gmime", "full parse", messages, MedianSeconds([&] {
                   for (const QByteArray& message : messages) ParseWithGMime(message);
                 }));
  std::vector<MessageIndex> indexes(messages.size());
  ReportMessages("vorn", "index columns", messages, MedianSeconds([&] {
                   for (size_t i = 0; i < messages.size(); ++i) {
                     indexes[i] =
                         IndexMessage(messages[i], FlagString(QStringLiteral("001")), {kTextTypes});
                   }
                 }));
  TextRequest request;
  request.textTypes = kTextTypes;
  ReportMessages("vorn", "full text", messages, MedianSeconds([&] {
                   for (size_t i = 0; i < messages.size(); ++i) {
                     GetMessageText(messages[i], indexes[i].content, request);
                   }
                 }));
}

// What says nothing of its code, as messages of some 6 KB.
void RunRecognition() {
  QString text;
  while (text.size() < 3000) {
    text += QStringLiteral("明日の会議は10時からです。資料はサーバーにあります。\r\n");
  }
  const auto recognize = [](const char* figure, const QByteArray& bytes) {
    constexpr int kTimes = 2000;
    const double seconds = MedianSeconds([&bytes] {
      for (int i = 0; i < kTimes; ++i) {
        if (RecognizeCharset(bytes).family <= Charset::Family::Ascii) std::abort();
      }
    });
    std::printf("{\"who\": \"vorn\", \"figure\": \"%s\", \"mb_per_s\": %.0f}\n", figure,
                static_cast<double>(bytes.size()) * kTimes / seconds / 1e6);
  };
  using enum MimeCodec::OutputCharset;
  recognize("recognition, ISO-2022-JP", *MimeCodec::EncodeText(text, Jis));
  recognize("recognition, EUC-JP", *MimeCodec::EncodeText(text, Euc));
  recognize("recognition, code page 932", *MimeCodec::EncodeText(text, ShiftJis));
  recognize("recognition, UTF-8", *MimeCodec::EncodeText(text, Utf8));
  recognize("recognition, EUC-JP, a byte lost", MimeCodec::EncodeText(text, Euc)->remove(1001, 1));
  recognize("recognition, windows-1252",
            QByteArray("R\xE4ksm\xF6rg\xE5s \xE4r gott p\xE5 l\xF6rdag.\r\n").repeated(200));
}

void RunHtml() {
  QString html = QStringLiteral("<html><head><style>td {color: red}</style></head><body><table>");
  while (html.size() < 1500000) {
    html += QStringLiteral(
        "<tr><td style=\"padding:4px;font-size:12px\" bgcolor=\"#ffffff\"><a "
        "href=\"https://example.jp/?a=1&amp;b=2\"><img src=\"https://example.jp/x.png\" "
        "width=\"10\"></a><b>明日の会議</b>は10時からです。</td></tr>\r\n");
  }
  const double seconds = MedianSeconds([&html] {
    if (SanitizeHtml(html, RemoteImages::LeftOut).html.isEmpty()) std::abort();
  });
  const auto bytes = static_cast<double>(html.toUtf8().size());
  std::printf("{\"who\": \"vorn\", \"figure\": \"HTML made safe\", \"mb\": %.1f, \"ms\": %.1f}\n",
              bytes / 1e6, seconds * 1e3);
}

void RunDecoders() {
  using enum MimeCodec::TransferEncoding;
  QByteArray bytes(20000000, Qt::Uninitialized);
  QRandomGenerator(1).fillRange(reinterpret_cast<quint32*>(bytes.data()), bytes.size() / 4);
  ReportDecoding("base64", MimeCodec::EncodeTransfer(bytes, Base64),
                 [](const QByteArray& x) { return MimeCodec::DecodeTransfer(x, Base64).size(); });
  QString text;
  while (text.size() < 5000000) {
    text += QStringLiteral("明日の会議は10時からです。資料はサーバーにあります。\r\n");
  }
  ReportDecoding(
      "quoted-printable", MimeCodec::EncodeTransfer(text.toUtf8(), QuotedPrintable),
      [](const QByteArray& x) { return MimeCodec::DecodeTransfer(x, QuotedPrintable).size(); });
  const auto charset = [&](const char* figure, MimeCodec::OutputCharset output,
                           Charset::Family family) {
    ReportDecoding(figure, *MimeCodec::EncodeText(text, output), [family](const QByteArray& x) {
      return Decode({family, {}}, x).text.size();
    });
  };
  charset("code page 932", MimeCodec::OutputCharset::ShiftJis, Charset::Family::ShiftJis);
  charset("EUC-JP", MimeCodec::OutputCharset::Euc, Charset::Family::Euc);
  charset("ISO-2022-JP", MimeCodec::OutputCharset::Jis, Charset::Family::Jis);
  charset("UTF-8", MimeCodec::OutputCharset::Utf8, Charset::Family::Utf8);
}

}  // namespace
}  // namespace vorn

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  g_mime_init();
  vorn::RunMessages();
  vorn::RunDecoders();
  vorn::RunRecognition();
  vorn::RunHtml();
}
