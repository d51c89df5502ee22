#pragma once

#include <QString>

namespace vorn {

/// A place for secrets that opens with the user's login at the computer, and that does not lie in
/// the program's folders.
class SecretStore {
 public:
  virtual ~SecretStore() = default;

  /// The secret of that name; empty when there is none, or when it is not given.
  virtual QString Read(const QString& name) = 0;
  /// Keeps a secret under a name that none has yet. False when it is not there afterwards.
  [[nodiscard]] virtual bool Keep(const QString& name, const QString& secret) = 0;
  /// One that cannot be removed stays.
  virtual void Forget(const QString& name) = 0;
};

}  // namespace vorn
