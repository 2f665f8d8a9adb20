// Shows the status menu of made-up reminders in the tray of the desktop it runs on, to be looked
// at, photographed and measured: menu_gallery [COUNT] [dark] [window] [hotkeys].
#include "base/clock.h"
#include "menu/ui/clock_icon.h"
#include "menu/ui/tray_controller.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QStyleFactory>
#include <QTimer>

#include <time.h>

using namespace tockwise;

namespace {

Reminder madeUpReminder(int i, Date now) {
  static const char16_t* const kTexts[] = {
      u"Call the dentist & ask for snake_case", u"Tea", u"Water the plants on the balcony",
      u"Submit the tax return before the office closes at noon", u"Rich and colourful"};
  Reminder reminder;
  reminder.reminderQueue = now.plusSeconds(45 + i * 5003.0 - (i % 7 == 3 ? 400000 : 0));
  reminder.reminderDateTimeCreated = now.plusSeconds(-86400.0 * (i + 1));
  reminder.reminderDateTimeFired = i % 3 == 1 ? now.plusSeconds(-3700.0 * i) : kDistantPast;
  reminder.reminderUUID = UUIDString();
  reminder.reminderDescriptions = QString::fromUtf16(kTexts[i % 5]);
  if (i % 5 == 4)
    reminder.reminderRTFs = QByteArrayLiteral("rich");
  if (i % 3 == 1)
    reminder.reminderIntervals = {0, 1, 0, 0};
  return reminder;
}

std::optional<RichText> madeUpRichText(const QByteArray&) {
  RichAttributes bold;
  bold.font = QStringLiteral("DejaVuSans-Bold");
  RichAttributes red;
  red.color = 0xffc02020;
  RichAttributes black;
  black.color = 0xff000000;
  RichAttributes marked;
  marked.background = 0xffffee80;
  marked.color = 0xff203050;
  return RichText{{QStringLiteral("Rich"), bold},
                  {QStringLiteral(" and "), black},
                  {QStringLiteral("colourful "), red},
                  {QStringLiteral(" marked "), marked},
                  {QStringLiteral("<b>text</b>"), {}}};
}

QPalette darkPalette() {
  QPalette palette(QColor(0x2b, 0x2d, 0x31));
  palette.setColor(QPalette::Base, QColor(0x23, 0x25, 0x29));
  palette.setColor(QPalette::Highlight, QColor(0x2b, 0x77, 0xd9));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Disabled, QPalette::Text, QColor(0x8d, 0x93, 0x9c));
  palette.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x8d, 0x93, 0x9c));
  return palette;
}

bool saveIconSheet(const QString& path) {
  // One sheet of every clock at every size, on a light and a dark ground.
  QImage sheet(900, 660, QImage::Format_ARGB32_Premultiplied);
  QPainter painter(&sheet);
  painter.fillRect(0, 0, 900, 330, QColor(0xf0, 0xf0, 0xf0));
  painter.fillRect(0, 330, 900, 330, QColor(0x20, 0x22, 0x26));
  for (const int top : {0, 330}) {
    int y = top + 6;
    for (int design = 1; design <= 5; ++design, y += 65) {
      int x = 10;
      for (const QString& badge :
           {QString(), QStringLiteral("3"), QStringLiteral("42"), QStringLiteral("120")}) {
        for (const int size : {16, 22, 32, 48, 64}) {
          const QIcon icon = design == 5 ? applicationIcon() : clockIcon(design, badge);
          painter.drawPixmap(x, y, icon.pixmap(QSize(size, size), 1.0));
          x += size + 6;
        }
        x += 10;
      }
    }
  }
  painter.end();
  return sheet.save(path);
}

double processSeconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

} // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setApplicationName(QStringLiteral("tockwise"));
  QApplication::setApplicationDisplayName(QStringLiteral("Tockwise"));
  const QStringList words = application.arguments();
  if (words.contains(QStringLiteral("dark"))) {
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(darkPalette());
  }
  if (words.contains(QStringLiteral("icons")))
    return saveIconSheet(words.last()) ? 0 : 1;

  const SystemClock wallClock;
  MemorySettings settings({{QStringLiteral("useAbsolute"), true},
                           {QStringLiteral("useCountdown"), true},
                           {QStringLiteral("truncateReminders"), true},
                           {QStringLiteral("showItemIndex"), false},
                           {QStringLiteral("showRichText"), true},
                           {QStringLiteral("sortType"), 1}});
  settings.setValue(QStringLiteral("useGlobalHotKeys"), words.contains(QStringLiteral("hotkeys")));
  ReminderQueue queue;
  const int count = words.value(1).toInt();
  for (int i = 0; i < count; ++i)
    queue.append(madeUpReminder(i, wallClock.now()));
  RecentReminders recent;
  recent.append(QStringLiteral("Buy bread"));
  recent.append(QStringLiteral("A text that is longer than the forty characters that are shown"));
  RichTitles richTitles(madeUpRichText);
  const QString alertOf = UUIDString();
  const auto source = [&] {
    MenuInput input;
    input.queue = &queue;
    input.recentReminders = recent.entries();
    input.settings = &settings;
    input.openAlerts = {{QStringLiteral("Dentist"), alertOf}};
    input.sortTypeText = QStringLiteral("date");
    input.now = wallClock.now();
    input.richTitles = &richTitles;
    input.availableActions = {QStringLiteral("quit"),
                              QStringLiteral("newReminder"),
                              QStringLiteral("clearQueue"),
                              QStringLiteral("deleteMenuItem"),
                              QStringLiteral("sortByDate"),
                              QStringLiteral("sortByName"),
                              QStringLiteral("showAllCurrentAlerts"),
                              QStringLiteral("setShowItemIndex"),
                              QStringLiteral("clearRecent"),
                              QStringLiteral("recentReminder"),
                              QStringLiteral("about")};
    if (qEnvironmentVariableIsSet("EDITOR_EXISTS"))
      input.availableActions += QStringLiteral("showReminder");
    return input;
  };

  TrayController tray(source);
  QTimer ticker;
  double before = processSeconds();
  int ticks = 0;
  QObject::connect(&ticker, &QTimer::timeout, &tray, [&] {
    tray.refresh();
    if (++ticks % 10 == 0) {
      const double after = processSeconds();
      qInfo("%.2f ms of CPU a second", (after - before) * 100);
      before = after;
    }
  });
  QObject::connect(&tray, &TrayController::visibilityChanged, &ticker, [&](bool open) {
    qInfo("menu %s", open ? "open" : "closed");
    if (open)
      ticker.start(1000);
    else
      ticker.stop();
    before = processSeconds();
    ticks = 0;
  });
  QObject::connect(&tray, &TrayController::activated, &tray, [&](const MenuActivation& activation) {
    qInfo().noquote() << "activated" << activation.action << activation.tag
                      << activation.reminderUUID << activation.title;
    if (activation.action == u"quit")
      QApplication::quit();
    if (activation.action == u"deleteMenuItem")
      if (const auto index = queue.indexOf(activation.reminderUUID))
        (void)queue.remove(*index);
  });
  QObject::connect(&tray, &TrayController::trayAvailableChanged, &tray,
                   [](bool available) { qInfo("tray %s", available ? "there" : "gone"); });
  tray.setStatusTitle(count > 2 ? QStringLiteral("3") : QString());
  tray.setToolTip(QStringLiteral("3 open alerts\nNext: Tea & biscuits <soon>"));
  tray.start();
  if (words.contains(QStringLiteral("window")))
    tray.showMenuWindow();
  return application.exec();
}
