#pragma once

#include <QHash>

#include "storage/keys/secret_store.h"

namespace vorn::test {

/// A desktop's secrets in memory, which can be locked.
class FakeSecrets : public SecretStore {
 public:
  QString Read(const QString& name) override { return refuses ? QString() : kept.value(name); }
  bool Keep(const QString& name, const QString& secret) override {
    if (!refuses) kept.insert(name, secret);
    return !refuses;
  }
  void Forget(const QString& name) override { kept.remove(name); }

  QHash<QString, QString> kept;
  bool refuses = false;
};

}  // namespace vorn::test
