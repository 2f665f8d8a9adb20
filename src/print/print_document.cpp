#include "print/print_document.h"

namespace tockwise {

std::vector<PrintEntry> entriesOfQueue(const ReminderQueue&) {
  return {};
}

QString plainPrintText(const std::vector<PrintEntry>&, const Calendar&) {
  return {};
}

QString richPrintHeading() {
  return {};
}

QString richPrintPiece(Date, const Calendar&) {
  return {};
}

} // namespace tockwise
