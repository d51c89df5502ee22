#include "storage/engine/log_state.h"

#include <QByteArray>
#include <QFile>
#include <QtEndian>

namespace vorn {
namespace {

constexpr qint64 kHeaderBytes = 32;
constexpr qint64 kFrameHeaderBytes = 24;
constexpr qint64 kCheckedHeaderBytes = 24;
constexpr qint64 kCheckedFrameHeaderBytes = 8;
constexpr quint32 kMagic = 0x377F0682;  // the last bit is set where sums are big-endian
constexpr qsizetype kSaltBytes = 16;    // of an encrypted file, at its begin
constexpr quint32 kLargestPage = 65536;

QString LogPath(const QString& path) {
  return path + QStringLiteral("-wal");
}

quint32 Number(const QByteArray& bytes, qsizetype at) {
  return qFromBigEndian<quint32>(bytes.constData() + at);
}

// The log's running sum.
struct Sum {
  bool bigEndian = false;
  quint32 first = 0;
  quint32 second = 0;

  void Add(QByteArrayView bytes) {
    for (qsizetype at = 0; at + 8 <= bytes.size(); at += 8) {
      first += Word(bytes, at) + second;
      second += Word(bytes, at + 4) + first;
    }
  }
  quint32 Word(QByteArrayView bytes, qsizetype at) const {
    return bigEndian ? qFromBigEndian<quint32>(bytes.data() + at)
                     : qFromLittleEndian<quint32>(bytes.data() + at);
  }
  bool Is(const QByteArray& bytes, qsizetype at) const {
    return first == Number(bytes, at) && second == Number(bytes, at + 4);
  }
};

bool HoldsOnlyZeros(QFile& log) {
  for (QByteArray bytes = log.read(kLargestPage); !bytes.isEmpty();
       bytes = log.read(kLargestPage)) {
    if (bytes.count('\0') != bytes.size()) return false;
  }
  return true;
}

// Whether a frame that bears other salts was written in an earlier round of the log. Both salts
// change with each round; zeros are what a machine that lost its power leaves, or damage.
bool IsOfEarlierRound(const QByteArray& frame, const QByteArray& salts) {
  const auto changed = [&](qsizetype at) {
    const quint32 salt = Number(frame, 8 + at);
    return salt != 0 && salt != Number(salts, at);
  };
  return changed(0) && changed(4);
}

// Follows the frames behind a header that was read. What a program had not committed when it was
// killed, or undid, may stand behind the last change; such frames do not follow upon it, and none
// of them ends a transaction. Frames of an earlier round of the log, which bear other salts, stand
// behind all of these.
LogReading ReadFrames(QFile& log, const QByteArray& header, Sum sum,
                      const QByteArray& databaseSalt) {
  const auto page = static_cast<qsizetype>(Number(header, 8));
  const QByteArray salts = header.mid(16, 8);
  bool follows = true;
  bool gap = false;
  bool any = false;
  LoggedPage sample;
  for (;;) {
    const QByteArray frame = log.read(kFrameHeaderBytes + page);
    if (frame.size() < kFrameHeaderBytes + page) break;
    if (frame.mid(8, 8) != salts) {
      if (!IsOfEarlierRound(frame, salts)) return {LogState::Torn};
      follows = false;
      gap = true;
      continue;
    }
    if (gap) return {LogState::Torn};
    if (follows) {
      sum.Add(QByteArrayView(frame).first(kCheckedFrameHeaderBytes));
      sum.Add(QByteArrayView(frame).sliced(kFrameHeaderBytes));
      follows = sum.Is(frame, 16);
    }
    const bool endsTransaction = Number(frame, 4) != 0;
    if (!follows && endsTransaction) return {LogState::Torn};
    if (!follows) continue;
    any = true;
    const bool isFirstPage = Number(frame, 0) == 1;
    if (!isFirstPage && sample.number == 0) {
      sample = {Number(frame, 0), frame.mid(kFrameHeaderBytes)};
    }
    if (isFirstPage && databaseSalt.size() == kSaltBytes &&
        frame.mid(kFrameHeaderBytes, kSaltBytes) != databaseSalt) {
      return {LogState::Foreign};
    }
  }
  return {any ? LogState::Sound : LogState::None, sample};
}

}  // namespace

LogReading ReadLog(const QString& path, const QByteArray& databaseSalt) {
  QFile log(LogPath(path));
  if (!log.exists() || log.size() == 0) return {LogState::None};
  if (!log.open(QIODevice::ReadOnly)) return {LogState::Closed};
  const QByteArray header = log.read(kHeaderBytes);
  // A machine that lost its power may leave zeros where nothing was written yet.
  if (header.count('\0') == header.size()) {
    return {HoldsOnlyZeros(log) ? LogState::None : LogState::Foreign};
  }
  if (header.size() < kHeaderBytes || (Number(header, 0) & ~1U) != kMagic) {
    return {LogState::Foreign};
  }
  const quint32 page = Number(header, 8);
  if (page < 512 || page > kLargestPage) return {LogState::Foreign};
  Sum sum{(Number(header, 0) & 1U) != 0};
  sum.Add(QByteArrayView(header).first(kCheckedHeaderBytes));
  if (!sum.Is(header, 24)) return {LogState::Foreign};
  return ReadFrames(log, header, sum, databaseSalt);
}

QByteArray LogRound(const QString& path) {
  QFile log(LogPath(path));
  if (!log.open(QIODevice::ReadOnly)) return {};
  return log.read(kHeaderBytes).mid(16, 8);
}

bool SetLogAside(const QString& path) {
  for (int number = 1; number < 1000; ++number) {
    const QString aside = LogPath(path) + QStringLiteral(".damaged%1").arg(number);
    if (!QFile::exists(aside)) return QFile::rename(LogPath(path), aside);
  }
  return false;
}

}  // namespace vorn
