#pragma once

#include <QLocalServer>
#include <QObject>
#include <QStringList>

namespace vorn {

/// What a program that is started again for the same data folder says to the one that runs: the
/// messages and addresses that it was asked to open. Only programs of the same user are heard.
class InstanceMessages : public QObject {
  Q_OBJECT

 public:
  explicit InstanceMessages(const QString& appFolder);

  /// Begins to listen. A sentence for the user when somebody else stands in the place where this
  /// user's programs meet, else empty; without success nothing is handed over, and that is all.
  QString Listen();
  /// Ends that and removes the place.
  void StopListening() { server_.close(); }
  /// Says it to the running program. False when that did not hear it in time, or is another user's.
  bool Send(const QStringList& arguments) const;

 Q_SIGNALS:
  void Received(const QStringList& arguments);

 private:
  QString Place() const;
  void Accept();

  QString folder_;
  QLocalServer server_;
};

}  // namespace vorn
