#include "editor/reminder_summaries.h"

#include "engine/fire_forecast.h"

namespace tockwise {
namespace {

/// What kind of thing a task opens; "" for a type that there is not.
QString typeInWords(qint64 type) {
  switch (type) {
  case Task::WebAddress:
    return QStringLiteral("Web Address");
  case Task::Media:
    return QStringLiteral("Media File");
  case Task::Document:
    return QStringLiteral("Document");
  case Task::Application:
    return QStringLiteral("Application");
  case Task::Script:
    return QStringLiteral("Script");
  default:
    return {};
  }
}

QString lastPart(const QString& path) {
  const QString name = path.section(u'/', -1, -1, QString::SectionSkipEmpty);
  return name.isEmpty() ? path : name;
}

} // namespace

QString repeatSummary(const Interval& interval, const Extra& extra, const Offset& offset) {
  const bool repeats = interval != kBlankInterval;
  QString text = repeats ? QStringLiteral("Repeats ") + intervalText(interval)
                         : QStringLiteral("Does not repeat");
  if (const QString limits = extraText(extra); !limits.isEmpty())
    text += (repeats ? QStringLiteral(" ") : QStringLiteral(", only ")) + limits;
  if (const QString notice = offsetText(offset); !notice.isEmpty())
    text += QStringLiteral(", ") + notice;
  return text;
}

QString taskSummary(const Task& task) {
  if (task.blank)
    return QStringLiteral("No task");
  const QString type = typeInWords(task.type);
  if (type.isEmpty())
    return QStringLiteral("A task that this version does not know");
  const QString what = task.type == Task::WebAddress ? task.path : lastPart(task.path);
  return QStringLiteral("%1: %2").arg(type, what.simplified());
}

} // namespace tockwise
