#pragma once

#include <QObject>
#include <QTimer>
#include <QUrl>
#include <functional>

namespace vorn {

class EngineView;
class PageChange;
class PageRequest;
class PageSource;

/// A folder's page from when it is made until the engine has read it, or the page in sight has
/// taken it over, which happens once. It is kept in memory, one that is only printed in a file.
class PageReading : public QObject {
  Q_OBJECT

 public:
  PageReading(EngineView& engine, PageSource& source, PageRequest& request, PageChange& change);

  /// Keeps a page as the one that the request asks for; an empty one is none.
  void Keep(const QByteArray& page);
  /// Where the engine reads it.
  QUrl Url() const;
  /// Whether it is there, which is until it has been read.
  bool IsKept() const;
  /// The page itself, where it is kept in memory.
  QByteArray Page() const;
  void Drop();
  /// The engine has been told to load it.
  void Begin();
  /// The engine has told the end of a loading.
  void End();
  /// Nobody waits for it any more.
  void Stop() { checkRows_.stop(); }

 Q_SIGNALS:
  /// The engine has it, and it is kept no more.
  void WasRead();
  /// The engine gave the page up: it is to be made anew.
  void AnewWanted();

 private:
  void CheckRows();
  void AskForDocument(const std::function<void(bool isShown)>& then);
  void LookAgain();
  bool IsWaiting() const;

  EngineView& engine_;
  PageSource& source_;
  PageRequest& request_;
  PageChange& change_;
  QTimer checkRows_;
  int attempts_ = 0;  // to load a page that the engine gave up
};

}  // namespace vorn
