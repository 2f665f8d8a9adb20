// The print preview: pages made of a queue, and one of them painted.
#include "print/print_job.h"
#include "print/print_pages.h"
#include "store/archive/text_archive.h"
#include "support/pictures.h"

#include <QGuiApplication>
#include <QPainter>

#include <benchmark/benchmark.h>

using namespace tockwise;
using namespace std::chrono_literals;

namespace {

/// Fonts need an application; there is no display.
void needApplication() {
  static int count = 1;
  static char name[] = "print_bench";
  static char* arguments[] = {name, nullptr};
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static QGuiApplication application(count, arguments);
}

/// Reminders of two lines; of the rich ones every tenth has a picture.
PrintContents queueOf(int count, PrintForm form) {
  PrintContents contents{form, WithoutRichText::PlainText, {}};
  for (int i = 0; i < count; ++i) {
    PrintEntry entry;
    entry.date = Date{800000000.0 + 3600 * i};
    entry.description = QStringLiteral("Reminder %1: some words that say what to do, and when it "
                                       "rains, what else there is to be thought of")
                            .arg(i);
    if (form == PrintForm::Rich) {
      TextAttributes bold;
      bold.font = TextFont{QStringLiteral("Helvetica-Bold"), 12, {}};
      TextAttributes coloured;
      coloured.color = TextColor{0xff204080, false, {}};
      AttributedText text;
      text.append(entry.description.left(20), bold);
      text.append(entry.description.mid(20), coloured);
      if (i % 10 == 0) {
        TextAttributes picture;
        picture.attachment = TextAttachment{
            QStringLiteral("image.jpg"), jpegOf({285, 190}, QColor(i % 256, 90, 120)), {}};
        text.append(QString(QChar(AttributedText::kAttachmentCharacter)), picture);
      }
      entry.RTFData = archiveText(text);
    }
    contents.entries.push_back(entry);
  }
  return contents;
}

void preview(benchmark::State& state, PrintForm form) {
  needApplication();
  const PrintContents contents = queueOf(int(state.range(0)), form);
  QImage screen(700, 990, QImage::Format_RGB32);
  for (auto _ : state) {
    PrintPages pages(contents, paperOfSize(QPageSize(QPageSize::A4)));
    pages.complete();
    QPainter painter(&screen);
    painter.scale(screen.width() / pages.pageSize().width(),
                  screen.width() / pages.pageSize().width());
    pages.paint(painter, pages.pageCount() / 2);
    benchmark::DoNotOptimize(screen.constBits());
  }
}

void previewPlain(benchmark::State& state) {
  preview(state, PrintForm::Plain);
}

void previewRich(benchmark::State& state) {
  preview(state, PrintForm::Rich);
}

/// What one turn of the event loop is kept from while pages are made.
void previewLongestSlice(benchmark::State& state) {
  needApplication();
  const PrintContents contents = queueOf(int(state.range(0)), PrintForm::Rich);
  for (auto _ : state) {
    PrintPages pages(contents, paperOfSize(QPageSize(QPageSize::A4)));
    double longest = 0;
    for (bool isDone = false; !isDone;) {
      const auto start = std::chrono::steady_clock::now();
      isDone = pages.advance(15ms);
      const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
      longest = std::max(longest, spent.count());
    }
    state.SetIterationTime(longest);
  }
}

void writePDF(benchmark::State& state) {
  needApplication();
  const PrintContents contents = queueOf(int(state.range(0)), PrintForm::Rich);
  for (auto _ : state) {
    PrintPages pages(contents, paperOfSize(QPageSize(QPageSize::A4)));
    PDFMaking making(pages);
    while (!making.advance(1h)) {
    }
    benchmark::DoNotOptimize(making.takePDF().ok());
  }
}

} // namespace

BENCHMARK(previewPlain)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(previewRich)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(previewLongestSlice)->Arg(10000)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(writePDF)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();
