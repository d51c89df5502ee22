#pragma once

#include <QByteArray>
#include <QString>
#include <atomic>

namespace vorn {

/// What a file from a mail is by its name and by its content.
struct FileKind {
  enum class Danger {
    None,  ///< its name is that of a kind of document that does nothing by itself, its content is
           ///< of the same kind, and nothing that acts was seen in it
    Unknown,  ///< a document, of which nobody here can see whether something in it acts
    MayAct
  };

  Danger danger = Danger::MayAct;
  QString byName;     ///< in words for the user
  QString byContent;  ///< likewise

  bool IsHarmless() const { return danger == Danger::None; }
};

/// `bytes` are the whole content. Never fails: what is not known is not harmless. It may take some
/// seconds; once `stop` is set it ends soon, and the answer means nothing.
FileKind KindOfFile(const QString& name, const QByteArray& bytes,
                    const std::atomic<bool>* stop = nullptr);

}  // namespace vorn
