#pragma once

#include "objects/window/form_page.h"

namespace vorn {

/// A page with one table that is edited in place: the book's addresses or the bookmark's places.
/// The last row is always empty and takes the next entry.
class ListPage : public FormPage {
  Q_OBJECT

 public:
  /// `listName` is the list control's name, `columns` its headings.
  ListPage(const QString& page, const QString& title, const QString& listName,
           const QStringList& columns);

  void Loaded(const Disk& object) override;
  /// Takes what is being typed into a cell.
  PageFault Check() override;
  QTableWidget& List() const { return *list_; }
  /// A row that was not edited gives the very line that it was read from.
  QString Line(const QTableWidget& list, int row) const final;

 protected:
  QString Cell(int row, int column) const;
  void AppendRow(const QStringList& cells, const QString& line);
  /// The line that a row was read from; empty for a new one.
  QString FirstLine(int row) const;
  /// The line of a row that is new or was edited.
  virtual QString EditedLine(int row) const = 0;

 private:
  void KeepEmptyRow();
  void RemoveRows();
  void MoveRow(int step);

  QTableWidget* list_;
  bool changing_ = false;
};

/// An address book's entries: lines of kind, address and name.
class BookPage : public ListPage {
  Q_OBJECT

 public:
  BookPage();
  PageFault Check() override;
  void AddLine(QTableWidget& list, const QString& line) override;

 protected:
  QString EditedLine(int row) const override;

 private:
  bool TakeTyped(int row);
};

/// A bookmark's entries: lines of an address, a blank and a title.
class BookmarkPage : public ListPage {
  Q_OBJECT

 public:
  BookmarkPage();
  void AddLine(QTableWidget& list, const QString& line) override;
  PageFault Check() override;

 protected:
  QString EditedLine(int row) const override;
};

}  // namespace vorn
