#pragma once

#include <QByteArrayView>
#include <QString>
#include <optional>
#include <vector>

#include "storage/sql/like_pattern.h"

namespace vorn {

/// The headers that a rule can look at, as they begin a rule's line.
inline const QString kMailerHeader = QStringLiteral("x-mailer:");
inline const QString kSenderHeader = QStringLiteral("from:");

/// The receive-stop rules: which messages are not wanted, told by their header alone. A rule is a
/// line of a header's name with its colon and a pattern (`LikePattern`): "x-mailer:" looks at the
/// sending program without regard to letter case, "from:" at every sender's address and name as
/// written. Lines of any other shape have no effect.
class ReceiveStopRules {
 public:
  /// `text` is the rules' lines, separated by CR LF.
  explicit ReceiveStopRules(const QString& text);

  /// Whether there is any rule that could match.
  bool IsEmpty() const { return rules_.empty(); }
  /// The line of the first rule that a message with this header block matches.
  std::optional<QString> FirstMatch(QByteArrayView header) const;

 private:
  struct Rule {
    QString line;
    bool isSender;
    LikePattern pattern;
  };

  std::vector<Rule> rules_;
};

/// The line of a rule that stops what one address sends.
QString SenderRule(const QString& address);

/// Whether a rule's line stops every message that has the header: its pattern is wildcards alone.
bool StopsEverything(const QString& line);

}  // namespace vorn
