#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <utility>

namespace vorn {

/// A text that may be made only when somebody asks for it. Copies share what was made. Of one
/// thread.
class LazyText {
 public:
  LazyText(QString text = {}) : made_(std::make_shared<Made>(std::move(text))) {}
  explicit LazyText(std::function<QString()> make)
      : made_(std::make_shared<Made>(QString(), std::move(make))) {}

  const QString& Get() const {
    if (made_->make) made_->text = std::exchange(made_->make, nullptr)();
    return made_->text;
  }

 private:
  struct Made {
    explicit Made(QString known, std::function<QString()> later = nullptr)
        : text(std::move(known)), make(std::move(later)) {}
    QString text;
    std::function<QString()> make;
  };

  std::shared_ptr<Made> made_;
};

}  // namespace vorn
