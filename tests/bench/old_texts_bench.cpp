// The first start with the store of an old release: its rich text is converted and written.
#include "richtext/picture_scaling.h"
#include "store/archive/file_wrapper.h"
#include "store/archive/old_rich_text.h"
#include "store/reminder_store.h"
#include "support/fakes.h"
#include "support/old_archives.h"
#include "support/test_environment.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>

#include <benchmark/benchmark.h>

using namespace tockwise;
namespace old = tockwise::old_archive;

namespace {

// A file of a picture that is wider than texts may have it.
QByteArray widePicture() {
  QImage image(600, 400, QImage::Format_RGB32);
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x)
      image.setPixel(x, y, qRgb(x / 3, y / 2, (x * y) & 0xFF));
  }
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "png");
  return writeFileWrapper(
      {FileWrapper::Type::RegularFile, QStringLiteral("a.png"), buffer.data(), {}});
}

QByteArray fontNamed(const QByteArray& name) {
  QByteArray list("\x05\0\0\0", 4);
  list += QByteArray(1, char(name.size())) + QByteArray(3, '\0') + name;
  list.resize((list.size() + 3) / 4 * 4, '\0');
  return old::object({"NSFont", "NSObject"},
                     old::group("i", old::integer(qint32(list.size()))) +
                         old::group('[' + QByteArray::number(list.size()) + "c]", list) +
                         old::group("f", old::integer(12)));
}

// Every tenth has a picture.
QByteArray oldText(int number) {
  static const QByteArray picture = widePicture();
  const QByteArray font = fontNamed("Helvetica");
  const QByteArray bold = fontNamed("Helvetica-Bold");
  const QByteArray words = "Reminder " + QByteArray::number(number) + ", ";
  QByteArray runs =
      old::run(1, qint32(words.size()), old::dictionary({{"NSFont", font}})) +
      old::run(2, 9,
               old::dictionary({{"NSFont", bold}, {"NSUnderline", old::number("i", "\x01")}}));
  if (number % 10 != 0)
    return old::archive(old::attributed(old::kTextStorage, words + "important", runs));
  runs += old::run(3, 1, old::dictionary({{"NSAttachment", old::attachment(picture)}}));
  return old::archive(old::attributed(old::kTextStorage, words + "important\xef\xbf\xbc", runs));
}

QByteArray oldStore(int reminders) {
  Value::Array dates;
  Value::Array descriptions;
  Value::Array texts;
  for (int i = 0; i < reminders; ++i) {
    dates.push_back(Date{800000000.0 + i});
    descriptions.push_back(QStringLiteral("Reminder %1, important").arg(i));
    texts.push_back(oldText(i));
  }
  plist::Writer writer;
  return writer.finish(
      writer.value(Value::Dictionary{{QStringLiteral("reminderQueue"), dates},
                                     {QStringLiteral("reminderDescriptions"), descriptions},
                                     {QStringLiteral("reminderRTFs"), texts}}));
}

void convertAtStart(benchmark::State& state) {
  const TestEnvironment environment;
  const FakeClock clock(Date::fromUnixSeconds(1741079742));
  const auto paths = PreferencesStore::Paths::ofUser();
  const QByteArray store = oldStore(int(state.range(0)));
  const OldTextConversion convert = [](const Value& texts) {
    return convertOldRichText(texts, [](AttributedText& text) { return scaleAttachments(text); });
  };
  QDir().mkpath(QFileInfo(paths.file).path());
  for (auto _ : state) {
    state.PauseTiming();
    QFile file(paths.file);
    if (!file.open(QIODevice::WriteOnly) || file.write(store) != store.size())
      state.SkipWithError("the old store cannot be written");
    file.close();
    state.ResumeTiming();
    const auto opened = ReminderStore::open(paths, clock, convert);
    state.PauseTiming();
    if (!opened || !(*opened)->queue()->reminderRTFs.values().back().startsWith("bplist00"))
      state.SkipWithError("nothing was converted");
    state.ResumeTiming();
  }
}
BENCHMARK(convertAtStart)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace
