#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QVariant>
#include <functional>

namespace vorn {

/// What a folder's page is asked by scripts, in the order of the questions. While another version
/// of the page is being made they wait, and are asked of that one; where there is no page they are
/// answered with nothing. A version that the page takes over begins with `Expect`, one that is
/// loaded with `BeginLoading` and, when it is there, `EndLoading`; either ends with `Resume`.
class PageQueue : public QObject {
 public:
  using Answer = std::function<void(const QVariant&)>;
  /// Asks the page that is there by a script. The answer may come later, and does not come at all
  /// once the document has gone.
  using Ask = std::function<void(const QString& script, const Answer& then)>;

  explicit PageQueue(Ask ask);

  /// Asks when all that was asked before has been.
  void Run(const QString& script, const Answer& then = {});
  /// Asks the document that is there, before all that waits; without one, as while another is being
  /// loaded, it is answered with nothing.
  void RunFirst(const QString& script, const Answer& then = {});
  /// As `Run`, and nothing else is asked before `then` has returned. Where `then` has another page
  /// made (a message was deleted, say), the next question waits for that page and is asked there.
  /// `then` is called outside the page's answer. It is not called when the question was dropped
  /// before it could be asked.
  void RunAlone(const QString& script, const Answer& then);
  /// The same with nothing to ask of the page, for what is not done to its rows.
  void After(const std::function<void()>& then);
  /// A further question, asked from within that `then`: what waits goes on waiting for its answer.
  void GoOn(const QString& script, const Answer& then);

  /// Whether something is asked alone just now.
  bool IsAlone() const { return alone_ != 0; }
  /// Called when that has ended, before what waits is asked.
  void OnFree(std::function<void()> free) { free_ = std::move(free); }

  /// Whether there is a document that can be asked.
  bool HasPage() const { return state_ == State::There || state_ == State::Expecting; }
  /// The page's next version is being made, and it can be asked where the user is.
  void Expect() { state_ = State::Expecting; }
  /// The document that is there goes, and another one is loaded.
  void BeginLoading() { state_ = State::Loading; }
  /// It is there, and does not know what the one before it was asked: where something was asked
  /// alone, what was to come after that is dropped.
  void EndLoading();
  /// The page is there; what waits is asked.
  void Resume();
  /// There is no page any more.
  void Shut();
  /// Another folder, or another page of it, comes: what waits was not meant for that, and is
  /// answered with nothing. Only what is to be done `After` stays, unless something before it goes.
  void Drop();
  /// All that waits is answered with nothing, but for what is to be done `After`.
  void DropOthers();
  /// Nothing is answered any more.
  void Close() { closed_ = true; }

 private:
  enum class State { None, There, Expecting, Loading };
  struct Question {
    QString script;
    Answer then;
    bool isAlone = false;
    bool isAfter = false;  // asked with `After`
  };

  bool Waits() const;
  void Enter(const Question& question);
  void Flush();
  static void Refuse(const QList<Question>& questions);
  void Begin(const Question& question);
  void BeginAlone(const Question& question);
  void EndAlone(int number, const Question& question, const QVariant& answer);

  Ask ask_;
  State state_ = State::None;
  QList<Question> waiting_;
  int alone_ = 0;  // the number of the question that is asked alone
  int lastAlone_ = 0;
  bool isAnswered_ = false;  // that one
  std::function<void()> free_;
  bool closed_ = false;
};

}  // namespace vorn
