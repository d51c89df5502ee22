#include "present/page_place.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace vorn {
namespace {

const QString kAtTop = QStringLiteral(R"({"next":[],"chosen":[],"x":0,"y":0})");
const QString kEmpty = QStringLiteral(R"({"next":[],"chosen":[],"x":0,"y":0,"end":true})");
const QString kAtEnd = QStringLiteral(R"({"next":[],"chosen":[],"x":0,"y":1e9,"end":true})");
const QString kAtLast =
    QStringLiteral(R"({"next":[""],"last":true,"chosen":[],"x":0,"y":1e9,"end":true})");

QString StateAt(const SerialId& row, const SerialIds& chosen = {}) {
  const QJsonObject state{{QStringLiteral("next"), QJsonArray{row.Text()}},
                          {QStringLiteral("chosen"), QJsonArray::fromStringList(TextsOf(chosen))},
                          {QStringLiteral("seen"), true}};
  return QString::fromUtf8(QJsonDocument(state).toJson(QJsonDocument::Compact));
}

}  // namespace

void PagePlace::Set(const QString& state, bool isOrdered) {
  state_ = state;
  isOrdered_ = isOrdered;
  ++number_;
}

void PagePlace::BeginAtEnd(bool atEnd) {
  Set(atEnd ? kAtEnd : QString(), true);
}

void PagePlace::BeginAtLast() {
  Set(kAtLast, true);
}

void PagePlace::BeginAtMessage(const SerialId& serialId, const SerialIds& chosen) {
  Set(StateAt(serialId, chosen), true);
}

void PagePlace::NoteRow(const SerialId& row, bool hasGone) {
  row_ = row;
  if (!hasGone) return;
  known_.clear();
  if (!isOrdered_ && !row.IsEmpty()) Forget();
}

void PagePlace::Leave() {
  Forget();
  known_.clear();
  row_ = {};
}

void PagePlace::Keep(const QString& state) {
  if (!isOrdered_) Set(state, false);
}

// One that was kept before may not have been put back yet.
void PagePlace::KeepEmpty() {
  if (state_.isEmpty()) Keep(kEmpty);
}

bool PagePlace::WasAtEnd() const {
  const QJsonObject state = QJsonDocument::fromJson(state_.toUtf8()).object();
  return state[u"end"].toBool() && state[u"next"].toArray().isEmpty();
}

bool PagePlace::HadRow() const {
  const QJsonObject state = QJsonDocument::fromJson(state_.toUtf8()).object();
  return !row_.IsEmpty() || state[u"endTaken"].toBool() || !state[u"next"].toArray().isEmpty();
}

// In a list, as which JSON allows a text to stand for itself.
QString PagePlace::Arguments(const QString& state) const {
  return QString::fromUtf8(
      QJsonDocument(QJsonArray{state, staysAtEnd_}).toJson(QJsonDocument::Compact));
}

QString PagePlace::ForLoading() const {
  const QString known = row_.IsEmpty() ? known_ : StateAt(row_);
  const QString& state = state_.isEmpty() ? known : state_;
  return state.isEmpty() ? QString() : Arguments(state);
}

// Of itself the page knows better where it is.
QString PagePlace::ForReplacing() const {
  return Arguments(!isOrdered_ ? QString() : state_.isEmpty() ? kAtTop : state_);
}

void PagePlace::Restored(int number) {
  if (number != number_) return;
  if (!state_.isEmpty()) known_ = state_;
  Forget();
}

void PagePlace::Delivered(int number) {
  if (number == number_) isOrdered_ = false;
}

}  // namespace vorn
