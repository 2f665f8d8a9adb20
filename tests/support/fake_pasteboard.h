// A clipboard that keeps what is put on it.
#pragma once

#include "ports/pasteboard.h"

namespace tockwise {

class FakePasteboard final : public Pasteboard {
 public:
  std::unique_ptr<QMimeData> kept;
  int timesSet = 0;

  void setContents(std::unique_ptr<QMimeData> contents) override {
    kept = std::move(contents);
    ++timesSet;
  }
  const QMimeData* contents() const override { return kept.get(); }
};

} // namespace tockwise
