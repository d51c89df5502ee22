#include "mail/archive/mbox.h"

#include <QLocale>
#include <QRegularExpression>
#include <algorithm>
#include <utility>

namespace vorn {
namespace {

// What the separators of this program end with, in a form that separators had before (RFC 976
// section 2.4), and the whole one that it wrote once: what follows is exactly as it was stored.
constexpr char kOwnEnd[] = " remote from vorn\n";
constexpr char kOwnSeparator[] = "From VORN Thu Jan  1 00:00:00 1970\n";
constexpr char kFrom[] = "From ";
constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";  // which some editors leave behind
constexpr qsizetype kLongestSender = 320;          // RFC 5321, sections 4.5.3.1.1 and 4.5.3.1.2
constexpr qint64 kProbedBytes = 1000;  // of what follows a separator, and of a separator

bool IsEmptyLine(QByteArrayView line) {
  return line == QByteArrayView("\n") || line == QByteArrayView("\r\n");
}

// "From " with any number of ">" before it (mboxrd).
bool IsFromLine(QByteArrayView line, bool quoted) {
  qsizetype at = 0;
  while (at < line.size() && line[at] == '>') ++at;
  return (!quoted || at > 0) && line.sliced(at).startsWith(kFrom);
}

bool IsOwnSeparator(const QByteArray& line) {
  return line == kOwnSeparator || (line.startsWith(kFrom) && line.endsWith(kOwnEnd));
}

// The forms of the C library's asctime with what programs add to it, of RFC 5322 and ISO 8601.
bool HasDate(QByteArrayView line) {
  static const QRegularExpression date(QStringLiteral(
      "^From (?:-\\s*$|-\\s.*\\d:\\d\\d|"
      ".*?(?:Mon|Tue|Wed|Thu|Fri|Sat|Sun),? +"
      "(?:(?:Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) +\\d{1,2}|"
      "\\d{1,2} +(?:Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) +\\d{4}) +"
      "\\d{1,2}:\\d\\d(?::\\d\\d)?(?: +[A-Z+-][A-Z0-9+-]*){0,2}(?: +\\d{4})?(?: +[+-]\\d{4})?"
      "(?: remote from \\S+)?\\s*$|"
      ".*\\d{4}-\\d\\d-\\d\\d[ T]\\d\\d:\\d\\d)"));
  return date.match(QString::fromLatin1(line.first(qMin(line.size(), kProbedBytes)))).hasMatch();
}

class MboxReader {
 public:
  MboxReader(QIODevice& file, const std::function<bool(const QByteArray&)>& take)
      : file_(file), take_(take) {}

  bool Run() {
    QByteArray first = file_.readLine();
    if (first.startsWith(kByteOrderMark)) first.remove(0, qsizetype(sizeof(kByteOrderMark)) - 1);
    while (IsEmptyLine(first)) first = file_.readLine();
    datesNeeded_ = HasDate(first);
    Begin(first);
    while (!file_.atEnd()) {
      const QByteArray line = file_.readLine();
      if (line.isEmpty()) return false;  // an error, as this is not the end
      if (IsSeparator(line)) {
        if (!HandOver()) return true;
        Begin(line);
        continue;
      }
      Add(line);
      if (inHeader_ && IsEmptyLine(line)) {
        inHeader_ = false;
        headerBytes_ = message_.size();
        if (!isOwn_ && length_ >= 0 && LengthFits() && !ReadBody()) return false;
      }
    }
    HandOver();
    return true;
  }

 private:
  void Begin(const QByteArray& separator) {
    isOwn_ = IsOwnSeparator(separator);
    inHeader_ = true;
    headerBytes_ = 0;
    afterEmptyLine_ = false;
    length_ = -1;
  }

  // Within a message of this program every "From " is quoted, and its last line may have no end.
  bool IsSeparator(const QByteArray& line) {
    if (isOwn_ && IsOwnSeparator(line)) return true;
    if ((!afterEmptyLine_ && !isOwn_) || !line.startsWith(kFrom)) return false;
    return (!datesNeeded_ || HasDate(line)) && PrecedesMessage(file_.peek(kProbedBytes));
  }
  static bool PrecedesMessage(const QByteArray& next) {
    return next.isEmpty() || BeginsWithHeaderField(next);
  }

  // Between a message of known length and a separator there are only empty lines.
  void Add(const QByteArray& line) {
    static const QByteArray field = "content-length:";
    if (inHeader_ && line.size() < kProbedBytes && line.toLower().startsWith(field)) {
      bool isNumber = false;
      const qint64 length = line.mid(field.size()).trimmed().toLongLong(&isNumber);
      length_ = isNumber ? length : -1;
    }
    if (!isWhole_)
      message_ += IsFromLine(line, true) ? QByteArrayView(line).sliced(1) : QByteArrayView(line);
    afterEmptyLine_ = IsEmptyLine(line);
  }

  bool LengthFits() {
    const qint64 place = file_.pos();
    if (length_ > file_.size() - place || !file_.seek(place + length_)) return false;
    QByteArray line = file_.readLine();
    while (IsEmptyLine(line)) line = file_.readLine();
    // What is taken for the end here has to be one where it is read, too: nothing may lie between.
    const bool fits = line.isEmpty() || (line.startsWith(kFrom) && HasDate(line) &&
                                         PrecedesMessage(file_.peek(kProbedBytes)));
    return file_.seek(place) && fits;
  }

  bool ReadBody() {
    const QByteArray body = file_.read(length_);
    if (body.size() != length_) return false;
    const bool isQuoted = !body.startsWith(kFrom) && !body.contains("\nFrom ");
    for (qsizetype at = 0; at < body.size();) {
      const qsizetype lineFeed = body.indexOf('\n', at);
      const qsizetype end = lineFeed < 0 ? body.size() : lineFeed + 1;
      const QByteArrayView line = QByteArrayView(body).sliced(at, end - at);
      message_ += isQuoted && IsFromLine(line, true) ? line.sliced(1) : line;
      at = end;
    }
    afterEmptyLine_ = true;
    isWhole_ = true;
    return true;
  }

  // The line break or the empty line before a separator is the separator's.
  bool HandOver() {
    QByteArray source = std::exchange(message_, {});
    const bool isWhole = std::exchange(isWhole_, false);
    if (source.isEmpty()) return true;
    if (isWhole) return take_(WithCrLf(source));
    const bool hasBody = source.size() > headerBytes_;
    if (isOwn_ || (hasBody && source.endsWith("\n\n"))) {
      source.chop(1);
    } else if (hasBody && source.endsWith("\r\n\r\n")) {
      source.chop(2);
    }
    return take_(isOwn_ ? source : WithCrLf(source));
  }

  QIODevice& file_;
  const std::function<bool(const QByteArray&)>& take_;
  QByteArray message_;
  bool datesNeeded_ = true;
  bool isOwn_ = false;  // as this program writes: nothing but a line feed before the separator
  bool inHeader_ = true;
  bool afterEmptyLine_ = false;
  bool isWhole_ = false;
  qsizetype headerBytes_ = 0;
  qint64 length_ = -1;
};

// The form of asctime in UTC (RFC 4155, appendix A), and who wrote it; a time that is none gives
// the earliest.
QByteArray Separator(const QByteArray& sender, const QDateTime& time) {
  const bool fits = !sender.isEmpty() && sender.size() <= kLongestSender;
  const bool isPlain =
      fits && std::all_of(sender.begin(), sender.end(), [](char c) { return c > ' ' && c <= '~'; });
  const QDateTime utc = time.isValid() ? time.toUTC() : QDateTime::fromSecsSinceEpoch(0, Qt::UTC);
  const QLocale english = QLocale::c();
  return kFrom + (isPlain ? sender : QByteArrayLiteral("MAILER-DAEMON")) + ' ' +
         english.toString(utc, QStringLiteral("ddd MMM ")).toLatin1() +
         QByteArray::number(utc.date().day()).rightJustified(2) +
         english.toString(utc, QStringLiteral(" HH:mm:ss yyyy")).toLatin1() + kOwnEnd;
}

}  // namespace

bool ReadMbox(QIODevice& file, const std::function<bool(const QByteArray&)>& take) {
  return MboxReader(file, take).Run();
}

QByteArray MboxEntry(const QByteArray& source, const QByteArray& sender, const QDateTime& time) {
  QByteArray entry;
  for (qsizetype at = 0; at < source.size();) {
    const qsizetype lineFeed = source.indexOf('\n', at);
    const qsizetype end = lineFeed < 0 ? source.size() : lineFeed + 1;
    const QByteArrayView line = QByteArrayView(source).sliced(at, end - at);
    if (IsFromLine(line, false)) entry += '>';
    entry += line;
    at = end;
  }
  entry += '\n';
  return Separator(sender, time) + entry;
}

bool BeginsWithHeaderField(const QByteArray& text) {
  static const QRegularExpression field(
      QStringLiteral("^(?:\xEF\xBB\xBF)?[\\r\\n]*(?:>From [^\\n]*\\n)*[!-9;-~]+[ \\t]*:"));
  return field.match(QString::fromLatin1(text)).hasMatch();
}

QByteArray WithCrLf(const QByteArray& source) {
  const qsizetype first = source.indexOf('\n');
  if (first < 0 || (first > 0 && source[first - 1] == '\r')) return source;
  QByteArray text = source;
  text.replace("\r\n", "\n");
  return text.replace('\n', "\r\n");
}

}  // namespace vorn
