// Prints a message as GMime reads it, as JSON for readers.py. Usage: gmime-reader FILE

#include <gmime/gmime.h>

#include <QByteArray>
#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

QJsonArray Addresses(InternetAddressList* list) {
  QJsonArray array;
  for (int i = 0; list != nullptr && i < internet_address_list_length(list); ++i) {
    InternetAddress* address = internet_address_list_get_address(list, i);
    if (INTERNET_ADDRESS_IS_GROUP(address)) {
      for (const auto& member :
           Addresses(internet_address_group_get_members(INTERNET_ADDRESS_GROUP(address)))) {
        array.append(member);
      }
      continue;
    }
    auto* mailbox = INTERNET_ADDRESS_MAILBOX(address);
    array.append(
        QJsonObject{{u"name"_s, QString::fromUtf8(internet_address_get_name(address))},
                    {u"address"_s, QString::fromUtf8(internet_address_mailbox_get_addr(mailbox))}});
  }
  return array;
}

QByteArray Content(GMimePart* part) {
  GMimeDataWrapper* wrapper = g_mime_part_get_content(part);
  if (wrapper == nullptr) return {};
  GMimeStream* stream = g_mime_stream_mem_new();
  g_mime_data_wrapper_write_to_stream(wrapper, stream);
  const GByteArray* bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream));
  const QByteArray content(reinterpret_cast<const char*>(bytes->data),
                           static_cast<qsizetype>(bytes->len));
  g_object_unref(stream);
  return content;
}

struct Reading {
  QJsonArray texts;
  QJsonArray files;
};

void Look(GMimeObject*, GMimeObject* object, gpointer data) {
  auto* reading = static_cast<Reading*>(data);
  if (!GMIME_IS_PART(object)) return;
  auto* part = GMIME_PART(object);
  if (const char* name = g_mime_part_get_filename(part)) {
    const QByteArray digest =
        QCryptographicHash::hash(Content(part), QCryptographicHash::Sha256).toHex();
    reading->files.append(QJsonObject{{u"name"_s, QString::fromUtf8(name)},
                                      {u"sha256"_s, QString::fromLatin1(digest)}});
  } else if (GMIME_IS_TEXT_PART(object)) {
    char* text = g_mime_text_part_get_text(GMIME_TEXT_PART(object));
    const char* kind =
        g_mime_content_type_get_media_subtype(g_mime_object_get_content_type(object));
    reading->texts.append(QJsonArray{QString::fromUtf8(kind), QString::fromUtf8(text)});
    g_free(text);
  }
}

}  // namespace

int main(int argc, char** argv) {
  g_mime_init();
  GMimeStream* stream = argc == 2 ? g_mime_stream_file_open(argv[1], "r", nullptr) : nullptr;
  if (stream == nullptr) return 1;
  GMimeParser* parser = g_mime_parser_new_with_stream(stream);
  GMimeMessage* message = g_mime_parser_construct_message(parser, nullptr);
  if (message == nullptr) return 1;
  Reading reading;
  g_mime_message_foreach(message, Look, &reading);
  const QJsonArray from = Addresses(g_mime_message_get_from(message));
  QJsonArray to;
  for (const auto& entry : Addresses(g_mime_message_get_to(message))) {
    to.append(entry.toObject()[u"address"_s]);
  }
  const QJsonObject all{{u"subject"_s, QString::fromUtf8(g_mime_message_get_subject(message))},
                        {u"from"_s, from.isEmpty() ? QJsonObject() : from[0].toObject()},
                        {u"to"_s, to},
                        {u"texts"_s, reading.texts},
                        {u"files"_s, reading.files}};
  std::puts(QJsonDocument(all).toJson(QJsonDocument::Compact).constData());
  return 0;
}
