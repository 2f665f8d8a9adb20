#include "app/offline_order.h"

#include "menu/sort/queue_sort.h"
#include "ports/prompter.h"

namespace tockwise {
namespace {

// A command has nobody to ask; an unknown order leaves the queue as it is.
class SilentPrompter final : public Prompter {
 public:
  int ask(const Question& question) override { return question.defaultButton; }
  void tell(const QString&, const QString&) override {}
  void beep() override {}
};

} // namespace

void putInOrder(ReminderStore& store) {
  SilentPrompter prompter;
  QueueSort(store.queue(), store.preferences(), prompter, [&store] {
    store.saveDefaults();
  }).sort();
}

} // namespace tockwise
