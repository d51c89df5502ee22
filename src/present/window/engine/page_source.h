#pragma once

#include <QHash>
#include <QWebEngineUrlSchemeHandler>

namespace vorn {

/// The folder pages that are about to be shown, in memory: what stands in them is never on
/// the disk in clear. Each has an address of its own.
class PageSource : public QWebEngineUrlSchemeHandler {
  Q_OBJECT

 public:
  using QWebEngineUrlSchemeHandler::QWebEngineUrlSchemeHandler;

  static constexpr const char* kScheme = "vorn-page";
  /// Tells the engine of the scheme, before it is started.
  static void RegisterScheme();

  /// Keeps a page until it is forgotten; gives its address.
  QString Keep(const QByteArray& page);
  void Forget(const QString& address) { pages_.remove(address); }
  QByteArray Page(const QString& address) const { return pages_.value(address); }
  bool Has(const QString& address) const { return pages_.contains(address); }

  void requestStarted(QWebEngineUrlRequestJob* job) override;

 private:
  QHash<QString, QByteArray> pages_;
};

}  // namespace vorn
