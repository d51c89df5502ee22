#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QMultiHash>
#include <vector>

namespace vorn {

/// The objects of a PDF file, also those in compressed object streams (ISO 32000-1, 7.5.7), by
/// their numbers. Every copy of an object counts, whichever one a reader would take.
class PdfObjects {
 public:
  explicit PdfObjects(const QByteArray& file);

  /// The file, and then what each object stream holds.
  const std::vector<QByteArray>& Texts() const { return texts_; }
  /// What follows the beginning of each object with a number.
  std::vector<QByteArrayView> Bodies(int number) const;
  /// Whether there are objects that could not be looked into.
  bool HasUnreadable() const { return hasUnreadable_; }

 private:
  struct Place {
    size_t text = 0;
    qsizetype at = 0;
  };

  void Index();
  void ReadStream(qsizetype at);
  void AddStream(const QByteArray& content, qsizetype first);

  std::vector<QByteArray> texts_;
  QMultiHash<int, Place> places_;
  qsizetype unpacked_ = 0;
  qint64 read_ = 0;
  bool hasUnreadable_ = false;
};

}  // namespace vorn
