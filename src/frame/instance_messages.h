#pragma once

#include <QLocalServer>
#include <QObject>
#include <QStringList>
#include <functional>
#include <utility>

namespace vorn {

/// What a program that is started again for the same data folder says to the one that runs: the
/// messages and addresses that it was asked to open, or that it was asked for nothing but to start.
/// Only programs of the same user are heard.
class InstanceMessages : public QObject {
  Q_OBJECT

 public:
  explicit InstanceMessages(const QString& appFolder);

  /// Begins to listen. A sentence for the user when somebody else stands in the place where this
  /// user's programs meet, else empty; without success nothing is handed over, and that is all.
  QString Listen();
  /// Ends that and removes the place.
  void StopListening() { server_.close(); }
  /// Says it to the running program; no arguments ask it to come to the front. False when that did
  /// not hear it in time, is another user's, or stays where it is.
  bool Send(const QStringList& arguments) const;
  /// What is done when this program is to come to the front; gives whether it did.
  void OnStartedAgain(std::function<bool()> comeForward) { comeForward_ = std::move(comeForward); }

 Q_SIGNALS:
  void Received(const QStringList& arguments);

 private:
  QString Place() const;
  void Accept();

  QString folder_;
  std::function<bool()> comeForward_ = [] { return false; };
  QLocalServer server_;
};

}  // namespace vorn
