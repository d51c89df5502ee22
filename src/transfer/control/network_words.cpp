#include "transfer/control/network_words.h"
#include "storage/ui.h"

namespace vorn {

QString SocketReason(QAbstractSocket::SocketError error) {
  switch (error) {
    case QAbstractSocket::ConnectionRefusedError:
      return Ui::tr("接続を拒否されました");
    case QAbstractSocket::HostNotFoundError:
      return Ui::tr("その名前のサーバーは見つかりません");
    case QAbstractSocket::SocketTimeoutError:
      return Ui::tr("応答がありません");
    case QAbstractSocket::NetworkError:
      return Ui::tr("ネットワークにつながっていません");
    case QAbstractSocket::SocketAccessError:
      return Ui::tr("通信が許可されていません");
    case QAbstractSocket::RemoteHostClosedError:
      return Ui::tr("サーバーが接続を切りました");
    case QAbstractSocket::SslHandshakeFailedError:
    case QAbstractSocket::SslInvalidUserDataError:
    case QAbstractSocket::SslInternalError:
      return Ui::tr("暗号化の取り決めができませんでした");
    default:
      return Ui::tr("通信エラー%1").arg(static_cast<int>(error));
  }
}

QString CertificateReason(QSslError::SslError error) {
  switch (error) {
    case QSslError::SelfSignedCertificate:
      return Ui::tr("サーバー自身が署名した証明書です");
    case QSslError::SelfSignedCertificateInChain:
    case QSslError::UnableToGetLocalIssuerCertificate:
    case QSslError::UnableToGetIssuerCertificate:
    case QSslError::CertificateUntrusted:
    case QSslError::UnableToVerifyFirstCertificate:
      return Ui::tr("証明書の発行者が信頼できる認証局ではありません");
    case QSslError::HostNameMismatch:
      return Ui::tr("証明書がこのサーバー名のものではありません");
    case QSslError::CertificateExpired:
      return Ui::tr("証明書の有効期限が切れています");
    case QSslError::CertificateNotYetValid:
      return Ui::tr("証明書の有効期間がまだ始まっていません。パソコンの日付を確認してください");
    case QSslError::CertificateRevoked:
    case QSslError::CertificateBlacklisted:
      return Ui::tr("証明書が取り消されています");
    case QSslError::NoPeerCertificate:
      return Ui::tr("サーバーが証明書を示しません");
    case QSslError::CertificateSignatureFailed:
    case QSslError::UnableToDecryptCertificateSignature:
      return Ui::tr("証明書の署名が正しくありません");
    case QSslError::InvalidPurpose:
    case QSslError::InvalidCaCertificate:
      return Ui::tr("証明書の用途が正しくありません");
    default:
      return Ui::tr("証明書のエラー%1").arg(static_cast<int>(error));
  }
}

}  // namespace vorn
