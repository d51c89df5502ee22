#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "mail/lazy_text.h"
#include "mail/window/body/html_part.h"
#include "mail/window/body/memo_box.h"

class QHBoxLayout;
class QLabel;
class QTabWidget;

namespace vorn {

class FindBar;
class HtmlView;

/// The body of a message in its window: the text, the HTML part in a tab beside it, and the line
/// that finds in whichever is in front. While it is written, the length of the line with the
/// cursor stands below.
class MessageBody : public QWidget {
  Q_OBJECT

 public:
  /// `taker` gets what is pasted and dropped.
  /// The HTML part's view goes by `htmlName`.
  explicit MessageBody(MemoBox::Taker taker, QString htmlName = QStringLiteral("wbHtml"));

  /// Enter and Escape in the text and in the HTML part are no keys of theirs, but those of whoever
  /// hears `Entered` and `Left`. Enter on a link of the HTML part follows that.
  void GiveKeys();
  /// Shows a message.
  void Show(const LazyText& text, bool editable, const HtmlPart& html);
  /// Puts a widget beside the tabs, in their row, which is there while it or the HTML part is.
  /// With one what offers remote images stands there too, and takes no line of the HTML part.
  void PutBeside(QWidget* widget);
  /// Brings the row of the tabs in line with what stands in it.
  void ShowRow();
  /// The box of the text, which is in it from now on.
  MemoBox* Text();
  /// What is in front: the text's box or the HTML part.
  QWidget* InFront() const;
  /// The HTML part while it is in front, else nothing.
  QString HtmlInFront() const;
  /// Opens the line that finds.
  void OpenFind();
  void ZoomBy(int steps);
  void ZoomBack() { ZoomBy(-zoom_); }
  /// Shows the text in a font, to which the zoom is added.
  void UseFont(const QFont& font);

 Q_SIGNALS:
  /// The text of a message that is written has changed.
  void TextEdited();
  /// The HTML part or the text has come to the front.
  void FrontChanged(bool isHtml);
  /// The user has brought it there.
  void FrontChosen(bool isHtml);
  /// See `GiveKeys`.
  void Entered();
  void Left();
  /// A message to a "mailto:" address is wanted.
  void MessageWanted(const QString& mailto);

 private:
  void Enter();
  void MakeHtmlView();
  void ShowLine();
  void ShowHtml();
  void ShowText();
  void Find(const QString& text, bool backward);
  bool FindInText(const QString& text, bool backward);

  std::optional<LazyText> text_;  // that is to come into its box when it is looked at
  std::function<QString()> html_;
  QString htmlName_;
  QTabWidget* tsBody_;
  QHBoxLayout* beside_ = nullptr;  // the tabs, where anything stands there
  MemoBox* txMemo_;
  QLabel* lbLine_;
  QWidget* htmlPage_;
  HtmlView* wbHtml_ = nullptr;  // made for the first message that has a part for it
  FindBar* find_;
  bool isFilling_ = false;
  QFont font_;
  int zoom_ = 0;
};

}  // namespace vorn
