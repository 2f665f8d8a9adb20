// The preferences window: opened for the first time, opened again, following a change from outside,
// and each of its panes.
#include "gui/prefs/preferences_fixture.h"

#include <QApplication>

#include <benchmark/benchmark.h>

using namespace tockwise;

namespace {

/// Widgets need an application; there is no display.
void needApplication() {
  static int count = 1;
  static char name[] = "preferences_bench";
  static char* arguments[] = {name, nullptr};
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // Left to the end of the process: Qt's own static objects may go before a static one of ours.
  static const auto* application = new QApplication(count, arguments);
  Q_UNUSED(application)
}

void showUp(Preferences& preferences) {
  preferences.window().prefs();
  QApplication::processEvents();
}

void openPreferences(benchmark::State& state) {
  needApplication();
  for (auto _ : state) {
    Preferences preferences;
    showUp(preferences);
    state.PauseTiming();
    preferences.closeForGood();
    state.ResumeTiming();
  }
}
BENCHMARK(openPreferences)->Unit(benchmark::kMillisecond);

void openPreferencesAgain(benchmark::State& state) {
  needApplication();
  Preferences preferences;
  for (auto _ : state) {
    showUp(preferences);
    state.PauseTiming();
    preferences.window().close();
    state.ResumeTiming();
  }
}
BENCHMARK(openPreferencesAgain)->Unit(benchmark::kMillisecond);

void followSettings(benchmark::State& state) {
  needApplication();
  Preferences preferences;
  showUp(preferences);
  qint64 clock = 1;
  for (auto _ : state) {
    clock = clock % 4 + 1;
    preferences.settings.setValue(QStringLiteral("clockoption"), clock);
    preferences.window().settingsChanged();
    QApplication::processEvents();
  }
}
BENCHMARK(followSettings)->Unit(benchmark::kMillisecond);

void showPane(benchmark::State& state) {
  needApplication();
  Preferences preferences;
  showUp(preferences);
  const int panes = int(PreferenceWindowController::Pane::Desktop) + 1;
  int pane = 0;
  for (auto _ : state) {
    pane = (pane + 1) % panes;
    preferences.window().showPane(PreferenceWindowController::Pane(pane));
    QApplication::processEvents();
  }
}
BENCHMARK(showPane)->Unit(benchmark::kMillisecond);

} // namespace
