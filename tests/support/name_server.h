#pragma once

#include <QHash>
#include <QNetworkDatagram>
#include <QUdpSocket>
#include <QtEndian>

namespace vorn::test {

/// A name server (RFC 1035) on a loopback address of its own, which knows service records (RFC
/// 2782) and nothing else. Its port is the system's, so that `Listen` fails without the right to
/// it.
class NameServer {
 public:
  struct Service {
    quint16 priority;
    quint16 port;
    QByteArray target;
  };

  bool Listen() {
    QObject::connect(&socket_, &QUdpSocket::readyRead, &socket_, [this] {
      while (socket_.hasPendingDatagrams()) Answer(socket_.receiveDatagram());
    });
    return socket_.bind(Address(), 53);
  }
  static QHostAddress Address() { return QHostAddress(QStringLiteral("127.0.53.1")); }

  QHash<QByteArray, QList<Service>> Records;  ///< by names such as "_pop3s._tcp.x.example"
  QByteArrayList Asked;

 private:
  static QByteArray Number(quint16 number) {
    const quint16 inOrder = qToBigEndian(number);
    return QByteArray(reinterpret_cast<const char*>(&inOrder), 2);
  }
  static QByteArray Labels(const QByteArray& name) {
    QByteArray labels;
    for (const QByteArray& label : name.split('.')) {
      if (!label.isEmpty()) labels += static_cast<char>(label.size()) + label;
    }
    return labels + '\0';
  }
  // The first question of a query, which begins behind twelve bytes.
  void Answer(const QNetworkDatagram& query) {
    const QByteArray asked = query.data();
    qsizetype at = 12;
    QByteArray name;
    for (int length = 0; at < asked.size() && (length = asked[at]) > 0; at += length + 1) {
      name += (name.isEmpty() ? "" : ".") + asked.sliced(at + 1, length).toLower();
    }
    Asked.append(name);
    const QList<Service> services = Records.value(name);
    QByteArray reply = asked.first(2) + Number(services.isEmpty() ? 0x8583 : 0x8580) + Number(1) +
                       Number(static_cast<quint16>(services.size())) + Number(0) + Number(0) +
                       asked.sliced(12, at + 5 - 12);
    for (const Service& service : services) {
      const QByteArray data =
          Number(service.priority) + Number(0) + Number(service.port) + Labels(service.target);
      reply += Number(0xC00C) + Number(33) + Number(1) + Number(0) + Number(60) +
               Number(static_cast<quint16>(data.size())) + data;
    }
    socket_.writeDatagram(reply, query.senderAddress(), static_cast<quint16>(query.senderPort()));
  }

  QUdpSocket socket_;
};

}  // namespace vorn::test
