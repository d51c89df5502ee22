#include "transfer/protocol/tls_step.h"

#include "storage/ui.h"

namespace vorn {

PopFailure TlsStep::NotOffered() const {
  return {PopError::Tls,
          direction_ == Direction::Receiving
              ? Ui::tr("サーバーがSTARTTLSに対応していません。アカウントの受信のセキュリティを確認"
                       "してください。")
              : Ui::tr("サーバーがSTARTTLSに対応していません。アカウントの送信のセキュリティを確認"
                       "してください。")};
}

std::optional<PopFailure> TlsStep::TakeAnswer(bool ok, const QByteArray& reply, bool hasMore,
                                              const Redaction& redaction) {
  if (!ok) {
    return PopFailure{PopError::Tls,
                      redaction.WithReply(Ui::tr("暗号化を始められません。"), reply)};
  }
  if (!hasMore) return std::nullopt;
  // Whatever came in clear after the answer would be taken for the server's protected words.
  return PopFailure{PopError::Protocol,
                    Ui::tr("暗号化の前に余分なデータが届きました。通信が改ざんされているおそれが"
                           "あります。")};
}

}  // namespace vorn
