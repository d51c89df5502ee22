#include "transfer/network_words.h"

namespace vorn {

QString SocketReason(QAbstractSocket::SocketError error) {
  switch (error) {
    case QAbstractSocket::ConnectionRefusedError:
      return QStringLiteral("接続を拒否されました");
    case QAbstractSocket::HostNotFoundError:
      return QStringLiteral("その名前のサーバーは見つかりません");
    case QAbstractSocket::SocketTimeoutError:
      return QStringLiteral("応答がありません");
    case QAbstractSocket::NetworkError:
      return QStringLiteral("ネットワークにつながっていません");
    case QAbstractSocket::SocketAccessError:
      return QStringLiteral("通信が許可されていません");
    case QAbstractSocket::RemoteHostClosedError:
      return QStringLiteral("サーバーが接続を切りました");
    case QAbstractSocket::SslHandshakeFailedError:
    case QAbstractSocket::SslInvalidUserDataError:
    case QAbstractSocket::SslInternalError:
      return QStringLiteral("暗号化の取り決めができませんでした");
    default:
      return QStringLiteral("通信エラー%1").arg(static_cast<int>(error));
  }
}

QString CertificateReason(QSslError::SslError error) {
  switch (error) {
    case QSslError::SelfSignedCertificate:
      return QStringLiteral("サーバー自身が署名した証明書です");
    case QSslError::SelfSignedCertificateInChain:
    case QSslError::UnableToGetLocalIssuerCertificate:
    case QSslError::UnableToGetIssuerCertificate:
    case QSslError::CertificateUntrusted:
    case QSslError::UnableToVerifyFirstCertificate:
      return QStringLiteral("証明書の発行者が信頼できる認証局ではありません");
    case QSslError::HostNameMismatch:
      return QStringLiteral("証明書がこのサーバー名のものではありません");
    case QSslError::CertificateExpired:
      return QStringLiteral("証明書の有効期限が切れています");
    case QSslError::CertificateNotYetValid:
      return QStringLiteral(
          "証明書の有効期間がまだ始まっていません。パソコンの日付を確認してください");
    case QSslError::CertificateRevoked:
    case QSslError::CertificateBlacklisted:
      return QStringLiteral("証明書が取り消されています");
    case QSslError::NoPeerCertificate:
      return QStringLiteral("サーバーが証明書を示しません");
    case QSslError::CertificateSignatureFailed:
    case QSslError::UnableToDecryptCertificateSignature:
      return QStringLiteral("証明書の署名が正しくありません");
    case QSslError::InvalidPurpose:
    case QSslError::InvalidCaCertificate:
      return QStringLiteral("証明書の用途が正しくありません");
    default:
      return QStringLiteral("証明書のエラー%1").arg(static_cast<int>(error));
  }
}

}  // namespace vorn
