#include "app/reminder_options.h"

#include "dates/date_text.h"
#include "prefs/quick_time.h"
#include "richtext/picture_scaling.h"
#include "store/archive/text_archive.h"

#include <QRegularExpression>
#include <QStringList>

#include <cmath>
#include <functional>
#include <map>

namespace tockwise {
namespace {

constexpr qint64 kLargestAmount = 99999;

struct Target {
  Reminder& reminder;
  Date now;
  const Calendar& calendar;
};

using Apply = Result<void> (*)(const QVariant& value, Target& target);

Error usage(const QString& message) {
  return Error{Error::Kind::Usage, message};
}

Date withSecondsCut(Date date, const Calendar& calendar) {
  const double whole = std::floor(date.seconds);
  return Date{whole - calendar.components(date).second};
}

// "1,2,3" as exactly as many amounts as the array has.
template <size_t N>
Result<std::array<qint64, N>> parseAmounts(const QString& text, const QString& option) {
  std::array<qint64, N> amounts{};
  const QStringList words = text.split(u',');
  bool valid = words.size() == qsizetype(N);
  for (size_t i = 0; valid && i < N; ++i) {
    amounts[i] = words[qsizetype(i)].trimmed().toLongLong(&valid);
    valid = valid && amounts[i] >= 0 && amounts[i] <= kLargestAmount;
  }
  if (!valid) {
    return usage(QStringLiteral("--%1 takes %2 whole numbers between commas, not \"%3\"")
                     .arg(option)
                     .arg(N)
                     .arg(text));
  }
  return amounts;
}

Result<void> applyText(const QVariant& value, Target& target) {
  const QString text = value.toString();
  if (text.isEmpty())
    return usage(QStringLiteral("Your reminder is blank. Please type in a reminder."));
  if (text != target.reminder.reminderDescriptions) {
    target.reminder.reminderDescriptions = text;
    target.reminder.reminderRTFs.clear(); // the rich text said something else
  }
  return {};
}

// The text with its pictures scaled; the plain text goes with it.
Result<void> applyRich(const QVariant& value, Target& target) {
  QByteArray archive = value.toByteArray();
  auto text = unarchiveTextStorage(archive);
  if (!text)
    return usage(QStringLiteral("--rich: this is no archived rich text"));
  if (text->isEmpty())
    return usage(QStringLiteral("Your reminder is blank. Please type in a reminder."));
  if (scaleAttachments(*text) > 0)
    archive = archiveText(*text);
  target.reminder.reminderDescriptions = text->text;
  target.reminder.reminderRTFs = archive;
  return {};
}

Result<void> applyAt(const QVariant& value, Target& target) {
  const auto date = parseLocalDateTime(value.toString(), target.calendar);
  if (!date)
    return usage(QStringLiteral("--at: %1").arg(date.error().message));
  target.reminder.reminderQueue = withSecondsCut(*date, target.calendar);
  return {};
}

// Unlike a menu entry, a command may not contain a pair that counts nothing: "1 Day 2 Hour" is a
// slip that would go unnoticed.
bool countsWhole(const QString& text) {
  static const QRegularExpression pair(QStringLiteral("(\\d+) ([A-Za-z]+)"));
  static const QRegularExpression form(QStringLiteral("^\\d+ [A-Za-z]+( \\d+ [A-Za-z]+)* ?$"));
  if (!form.match(text).hasMatch())
    return false;
  for (auto found = pair.globalMatch(text); found.hasNext();) {
    const auto match = found.next();
    if (match.captured(1).toLongLong() != 0 && stringToSeconds(match.captured()) == 0)
      return false;
  }
  return true;
}

Result<void> applyIn(const QVariant& value, Target& target) {
  const qint64 seconds = stringToSeconds(value.toString());
  if (seconds <= 0 || !countsWhole(value.toString())) {
    return usage(QStringLiteral("--in takes pairs like \"1 Day 2 Hours 30 Minutes\" (1 with Day, "
                                "Hour, Minute; other numbers with Days, Hours, Minutes), not "
                                "\"%1\"")
                     .arg(value.toString()));
  }
  const Date date = target.now.plusSeconds(double(seconds));
  if (date >= kDistantFuture)
    return usage(QStringLiteral("--in: that is too far ahead"));
  target.reminder.reminderQueue = withSecondsCut(date, target.calendar);
  return {};
}

Result<void> applyEvery(const QVariant& value, Target& target) {
  static const std::map<QString, Interval> names{
      {QStringLiteral("never"), kBlankInterval}, {QStringLiteral("month"), {1, 0, 0, 0}},
      {QStringLiteral("week"), {0, 7, 0, 0}},    {QStringLiteral("day"), {0, 1, 0, 0}},
      {QStringLiteral("hour"), {0, 0, 1, 0}},    {QStringLiteral("minute"), {0, 0, 0, 1}}};
  const QString text = value.toString();
  if (const auto named = names.find(text); named != names.end()) {
    target.reminder.reminderIntervals = named->second;
    return {};
  }
  if (!text.contains(u',')) {
    return usage(QStringLiteral("--every takes month, week, day, hour, minute, never or "
                                "months,days,hours,minutes, not \"%1\"")
                     .arg(text));
  }
  const auto amounts = parseAmounts<4>(text, QStringLiteral("every"));
  if (!amounts)
    return amounts.error();
  target.reminder.reminderIntervals = *amounts;
  return {};
}

Result<void> applyDays(const QVariant& value, Target& target) {
  static const QStringList names{
      QStringLiteral("Sun"), QStringLiteral("Mon"), QStringLiteral("Tue"), QStringLiteral("Wed"),
      QStringLiteral("Thu"), QStringLiteral("Fri"), QStringLiteral("Sat")};
  std::array<bool, 7> days{};
  for (const QString& word : value.toString().split(u',')) {
    const qsizetype day = names.indexOf(QRegularExpression(
        QRegularExpression::anchoredPattern(QRegularExpression::escape(word.trimmed())),
        QRegularExpression::CaseInsensitiveOption));
    if (day < 0)
      return usage(
          QStringLiteral("--days takes %1, not \"%2\"").arg(names.join(u','), value.toString()));
    days[size_t(day)] = true;
  }
  target.reminder.reminderExtras.days = days;
  return {};
}

Result<void> applyBetween(const QVariant& value, Target& target) {
  static const QRegularExpression form(
      QStringLiteral("^([01]?\\d|2[0-3]):([0-5]\\d)-([01]?\\d|2[0-3]):([0-5]\\d)$"));
  const auto match = form.match(value.toString());
  if (!match.hasMatch())
    return usage(QStringLiteral("--between takes HH:MM-HH:MM, not \"%1\"").arg(value.toString()));
  for (int i = 0; i < 4; ++i)
    target.reminder.reminderExtras.times[size_t(i)] = match.captured(i + 1).toInt();
  return {};
}

Result<void> applyBefore(const QVariant& value, Target& target) {
  const auto amounts = parseAmounts<3>(value.toString(), QStringLiteral("before"));
  if (!amounts)
    return amounts.error();
  target.reminder.reminderOffsets = *amounts;
  return {};
}

Result<void> applyEmail(const QVariant& value, Target& target) {
  target.reminder.reminderSendEmail = value.toBool();
  return {};
}

Result<void> applySms(const QVariant& value, Target& target) {
  target.reminder.reminderSendSMS = value.toBool();
  return {};
}

Result<void> applyTask(const QVariant& value, Target& target) {
  static const QStringList names{QStringLiteral("web"), QStringLiteral("media"),
                                 QStringLiteral("document"), QStringLiteral("application"),
                                 QStringLiteral("script")};
  const QString text = value.toString();
  if (text.isEmpty()) {
    target.reminder.reminderTasks = Task{};
    return {};
  }
  const QString word = text.section(u':', 0, 0);
  const QString path = text.section(u':', 1);
  bool numeric = false;
  qint64 type = word.toLongLong(&numeric);
  if (!numeric)
    type = names.indexOf(word);
  if (type < Task::WebAddress || type > Task::Script || path.isEmpty()) {
    return usage(QStringLiteral("--task takes TYPE:PATH, TYPE one of 0 to 4 or %1, not \"%2\"")
                     .arg(names.join(QStringLiteral(", ")), text));
  }
  target.reminder.reminderTasks = Task{false, type, path};
  return {};
}

struct Option {
  const char16_t* name;
  Apply apply;
  QMetaType::Type type;
};
constexpr Option kOptions[] = {
    {u"text", applyText, QMetaType::QString},       {u"rich", applyRich, QMetaType::QByteArray},
    {u"at", applyAt, QMetaType::QString},           {u"in", applyIn, QMetaType::QString},
    {u"every", applyEvery, QMetaType::QString},     {u"days", applyDays, QMetaType::QString},
    {u"between", applyBetween, QMetaType::QString}, {u"before", applyBefore, QMetaType::QString},
    {u"email", applyEmail, QMetaType::Bool},        {u"sms", applySms, QMetaType::Bool},
    {u"task", applyTask, QMetaType::QString}};

QString nameOf(QMetaType::Type type) {
  if (type == QMetaType::Bool)
    return QStringLiteral("boolean");
  return type == QMetaType::QString ? QStringLiteral("string") : QStringLiteral("byte array");
}

} // namespace

Result<void> applyReminderOptions(const QVariantMap& options, Reminder& reminder, Date now,
                                  const Calendar& calendar) {
  if (options.contains(QStringLiteral("at")) && options.contains(QStringLiteral("in")))
    return usage(QStringLiteral("--at and --in exclude one another"));
  if (options.contains(QStringLiteral("text")) && options.contains(QStringLiteral("rich")))
    return usage(QStringLiteral("the text comes from --rich: leave the other text out"));
  Reminder changed = reminder;
  Target target{changed, now, calendar};
  for (auto given = options.begin(); given != options.end(); ++given) {
    const auto* known =
        std::find_if(std::begin(kOptions), std::end(kOptions),
                     [&](const Option& option) { return given.key() == QStringView(option.name); });
    if (known == std::end(kOptions))
      return usage(QStringLiteral("there is no option \"%1\"").arg(given.key()));
    if (given.value().typeId() != known->type) {
      return usage(
          QStringLiteral("the option \"%1\" takes a %2").arg(given.key(), nameOf(known->type)));
    }
    if (const auto applied = known->apply(given.value(), target); !applied)
      return applied.error();
  }
  reminder = changed;
  return {};
}

} // namespace tockwise
