#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "frame/request_queue.h"
#include "objects/window/objects_window.h"
#include "storage/databases.h"
#include "support/window_driving.h"

namespace vorn {

/// The windows that edit objects, over a profile and without the rest of the program.
class EditingTest : public testing::Test {
 protected:
  class NoView : public EventView {
   public:
    void ShowEvent(const SerialId&, const QString&, const QString&) override {}
  };

  // A property window for a request, shown without blocking.
  ObjectsWindow& Open(const QString& type, const SerialId& serialId = {}) {
    RequestQueue queue(context());
    DialogRequest request;
    request.status = type;
    request.serialId = serialId;
    queue.PostDialogRequest(request);
    window_ = std::make_unique<ObjectsWindow>(context(), events_);
    window_->setAttribute(Qt::WA_DeleteOnClose, false);
    EXPECT_TRUE(window_->LoadDefaultProperty(queue.Front(), false));
    window_->show();
    return *window_;
  }
  void PressOk() { test::Press(test::Child<QPushButton>(*window_, u"cmOk")); }
  QString Error() const {
    const auto& label = test::Child<QLabel>(*window_, u"lbError");
    return label.isVisible() ? label.text() : QString();
  }
  // The object as it is stored, not as it is loaded.
  DiskPtr Stored(const SerialId& serialId, DatabaseKind kind = DatabaseKind::Profile) {
    auto object = std::make_shared<Disk>(serialId);
    EXPECT_TRUE(OpenDatabase(context(), kind));
    EXPECT_TRUE(object->DatabaseToDisk(context().Data));
    context().Data.Close();
    return object;
  }
  Context& context() { return profile_.Get(); }

  QString error_;

  test::TestProfile profile_;
  NoView view_;
  EventLog events_{profile_.Get(), view_};
  std::unique_ptr<ObjectsWindow> window_;
};

}  // namespace vorn
