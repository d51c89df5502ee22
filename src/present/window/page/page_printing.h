#pragma once

#include <QObject>
#include <memory>

class QPrinter;
class QWidget;

namespace vorn {

class BrowserHost;
class EngineView;

/// Prints the page of a browser window.
class PagePrinting : public QObject {
  Q_OBJECT

 public:
  /// A failure is told before `window`.
  PagePrinting(EngineView& engine, BrowserHost& host, QWidget& window);
  ~PagePrinting() override;

  /// Lets the user choose a printer and prints. `title` names a file that is printed to.
  void Print(const QString& title);
  bool IsUnderWay() const { return printer_ != nullptr; }

 Q_SIGNALS:
  /// It is done, or the user has declined.
  void Ended();

 private:
  void End();
  void EndPdf(const QString& path, const QByteArray& pdf);

  EngineView& engine_;
  BrowserHost& host_;
  QWidget& window_;
  std::unique_ptr<QPrinter> printer_;
};

}  // namespace vorn
