// A long rich text: put into a document, and read back, as every saved draft does.
#include "richtext/text_document.h"
#include "support/pictures.h"

#include <QGuiApplication>
#include <QTextCursor>

#include <benchmark/benchmark.h>

using namespace tockwise;

namespace {

/// Fonts and pictures need an application; there is no display.
void needApplication() {
  static int count = 1;
  static char name[] = "richtext_bench";
  static char* arguments[] = {name, nullptr};
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static QGuiApplication application(count, arguments);
}

/// A picture of the greatest width that texts have, with something to decode.
QByteArray picture(int number) {
  QImage image(285, 190, QImage::Format_RGB32);
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x)
      image.setPixel(x, y, qRgb(x, y, (x * y + number * 40) & 0xff));
  }
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "jpg", 100);
  return buffer.data();
}

void append(AttributedText& text, const QString& more, const TextAttributes& attributes) {
  text.text += more;
  text.runs.push_back({more.size(), attributes});
}

/// 100,000 characters in paragraphs of 200, each of four runs, and 50 pictures.
AttributedText longText() {
  AttributedText text;
  TextAttributes attributes;
  attributes.paragraph = ParagraphStyle();
  for (int paragraph = 0; paragraph < 500; ++paragraph) {
    attributes.paragraph->headIndent = paragraph % 3 * 18;
    for (int run = 0; run < 4; ++run) {
      attributes.font = TextFont{run % 2 == 0 ? QStringLiteral("Helvetica")
                                              : QStringLiteral("Georgia-BoldItalic"),
                                 12.0 + run,
                                 {}};
      attributes.color = TextColor{0xff000000 + quint32(run) * 0x2080, false, {}};
      append(text,
             QStringLiteral("words and more of these ").repeated(3).left(49) +
                 (run == 3 ? u'\n' : u' '),
             attributes);
    }
    if (paragraph % 10 == 0) {
      attributes.attachment = TextAttachment{QStringLiteral("image.jpg"), picture(paragraph), {}};
      append(text, QString(QChar(AttributedText::kAttachmentCharacter)), attributes);
      attributes.attachment.reset();
    }
  }
  return text;
}

void loadLongText(benchmark::State& state) {
  needApplication();
  const AttributedText text = longText();
  for (auto _ : state) {
    QTextDocument document;
    loadText(text, document);
    benchmark::DoNotOptimize(document.characterCount());
  }
}
BENCHMARK(loadLongText)->Unit(benchmark::kMillisecond);

void textOfLongText(benchmark::State& state) {
  needApplication();
  QTextDocument document;
  loadText(longText(), document);
  for (auto _ : state)
    benchmark::DoNotOptimize(textOf(document));
}
BENCHMARK(textOfLongText)->Unit(benchmark::kMillisecond);

/// After an edit that gives every paragraph another style than it came with.
void textOfChangedText(benchmark::State& state) {
  needApplication();
  QTextDocument document;
  loadText(longText(), document);
  QTextCursor cursor(&document);
  cursor.select(QTextCursor::Document);
  QTextBlockFormat centred;
  centred.setAlignment(Qt::AlignHCenter);
  cursor.mergeBlockFormat(centred);
  for (auto _ : state)
    benchmark::DoNotOptimize(textOf(document));
}
BENCHMARK(textOfChangedText)->Unit(benchmark::kMillisecond);

} // namespace
