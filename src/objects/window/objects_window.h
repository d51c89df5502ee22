#pragma once

#include "events/event_log.h"
#include "objects/window/editing_window.h"

namespace vorn {

class FilePage;
class FolderPage;
class ListPage;
class ProfilePage;
class ReceivePage;

/// The object property window "objects": the pages of an object's type, saved as one object.
class ObjectsWindow : public EditingWindow {
  Q_OBJECT

 public:
  ObjectsWindow(Context& context, const EventLog& events, QWidget* parent = nullptr);

  bool LoadDefaultProperty(const DiskPtr& request, bool update) override;
  void SetObjectText(const QString& text) override;
  void DeleteObject() override;
  /// Deletes the object; a standard object and the logged-in profile stay.
  void cmDelete_Click();

 protected:
  bool Save() override;

 private:
  void BuildPages(const QString& type);
  void BuildAccountPages();
  void BuildListPage(ListPage* page);
  void BeginAtEntries();
  void TakeProposal(const Disk& request);
  void AddEventPage(const QString& text);

  const EventLog& events_;
  QString type_;
  FilePage* file_ = nullptr;
  // Where the type has them.
  ProfilePage* profile_ = nullptr;
  FolderPage* folder_ = nullptr;
  ListPage* entries_ = nullptr;
  ReceivePage* receiving_ = nullptr;  // of an account
};

}  // namespace vorn
