// Settings that remember in which order they were written.
#pragma once

#include "store/settings.h"

namespace tockwise {

class RecordingSettings final : public Settings {
 public:
  QStringList calls; // keys that were set, and "synchronize"

  Value value(const QString& key) const override { return m_memory.value(key); }
  bool isSet(const QString& key) const override { return m_memory.isSet(key); }
  bool isUnread(const QString& key) const override { return m_memory.isUnread(key); }
  void setValue(const QString& key, Value value) override {
    calls += key;
    m_memory.setValue(key, std::move(value));
  }
  void synchronize() override { calls += QStringLiteral("synchronize"); }
  /// As if it had stood there before.
  void prepare(const char* key, Value value) {
    m_memory.setValue(QString::fromLatin1(key), std::move(value));
  }

  void setUnread(const char* key) { m_memory.setUnread(QString::fromLatin1(key)); }

 private:
  MemorySettings m_memory;
};

} // namespace tockwise
