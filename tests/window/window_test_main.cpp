// The entry point of the tests with windows.

#include <gtest/gtest.h>
#include <unistd.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>

#include "frame/window/program.h"
#include "support/test_profile.h"

namespace {

void SetDefault(const char* variable, const char* value) {
  if (qEnvironmentVariableIsEmpty(variable)) qputenv(variable, value);
}

// A question that no test answers would wait until the whole run's time is over: this names it.
class UnansweredQuestions {
 public:
  UnansweredQuestions() {
    QObject::connect(&look_, &QTimer::timeout, &look_, [this] { Look(); });
    look_.start(kLookMs);
  }

 private:
  void Look() {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr || box->text() != text_) since_.start();
    text_ = box == nullptr ? QString() : box->text();
    if (box != nullptr && since_.elapsed() > kMostMs) {
      qFatal("nobody answered: %s", qPrintable(text_));
    }
  }

  static constexpr int kLookMs = 1000;
  static constexpr int kMostMs = 600000;
  QTimer look_;
  QElapsedTimer since_;
  QString text_;
};

}  // namespace

int main(int argc, char** argv) {
  SetDefault("QT_QPA_PLATFORM", "offscreen");
  SetDefault("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu");
  if (geteuid() == 0) SetDefault("QTWEBENGINE_DISABLE_SANDBOX", "1");  // refused to root
  const vorn::test::PrivateUser user;
  vorn::Program::PrepareEngine();
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  testing::InitGoogleTest(&argc, argv);
  const UnansweredQuestions watch;
  return RUN_ALL_TESTS();
}
