// Keys in a long text with pictures, with the bar and the ruler that follow the cursor; and the
// pasting of a large picture, as far as it holds up the keyboard.
#include "richtext/formatting_bar.h"
#include "richtext/qs_text_view.h"
#include "richtext/text_ruler.h"
#include "support/pictures.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMimeData>
#include <QVBoxLayout>

#include <benchmark/benchmark.h>

using namespace tockwise;

namespace {

/// Widgets need an application; there is no display.
void needApplication() {
  static int count = 1;
  static char name[] = "editor_bench";
  static char* arguments[] = {name, nullptr};
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // Left to the end of the process: Qt's own static objects may go before a static one of ours.
  static const auto* application = new QApplication(count, arguments);
  Q_UNUSED(application)
}

/// 100,000 characters in paragraphs of so many, and 50 pictures.
AttributedText longText(int paragraphLength) {
  constexpr int kCharacters = 100'000;
  constexpr int kPictures = 50;
  const TextAttachment picture{QStringLiteral("image.png"), pngOf({240, 120}), {}};
  AttributedText text;
  int pictures = 0;
  while (text.text.size() < kCharacters) {
    TextAttributes attributes;
    attributes.font = TextFont{QStringLiteral("Helvetica"), 13, {}};
    QString words = QStringLiteral("words and more of these ").repeated(paragraphLength / 24 + 1);
    words[paragraphLength - 1] = u'\n';
    text.append(words.left(paragraphLength), attributes);
    for (; pictures < kPictures * text.text.size() / kCharacters; ++pictures) {
      attributes.attachment = picture;
      text.append(QString(QChar(AttributedText::kAttachmentCharacter)), attributes);
      attributes.attachment.reset();
    }
  }
  return text;
}

class Editor {
 public:
  explicit Editor(const AttributedText& text) {
    auto* layout = new QVBoxLayout(&m_window);
    layout->addWidget(&m_bar);
    layout->addWidget(&m_ruler);
    layout->addWidget(&view);
    m_bar.setView(&view);
    m_ruler.setView(&view);
    m_window.resize(600, 500);
    m_window.show();
    view.setText(text);
    view.setFocus();
    QApplication::processEvents();
  }

  /// A key, from the press to the picture on the screen.
  void key(int key, const QString& text = {}) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(&view, &press);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::sendEvent(&view, &release);
    QApplication::processEvents();
  }

  /// part: of the text, 0 its beginning, 1 its end.
  void moveTo(double part) {
    QTextCursor cursor = view.textCursor();
    cursor.setPosition(int(part * (view.document()->characterCount() - 1)));
    view.setTextCursor(cursor);
    QApplication::processEvents();
  }

 private:
  QWidget m_window;
  FormattingBar m_bar;
  TextRuler m_ruler;

 public:
  QSTextView view;
};

/// Arguments: the place in per cent, the length of paragraphs.
void typeKey(benchmark::State& state) {
  needApplication();
  Editor editor(longText(int(state.range(1))));
  editor.moveTo(double(state.range(0)) / 100);
  bool isLetter = true;
  for (auto _ : state) {
    if (isLetter)
      editor.key(Qt::Key_A, QStringLiteral("a"));
    else
      editor.key(Qt::Key_Backspace);
    isLetter = !isLetter;
  }
}
BENCHMARK(typeKey)->ArgsProduct({{0, 50, 100}, {200, 2000}})->Unit(benchmark::kMillisecond);

void returnKey(benchmark::State& state) {
  needApplication();
  Editor editor(longText(200));
  editor.moveTo(0.5);
  bool isReturn = true;
  for (auto _ : state) {
    editor.key(isReturn ? Qt::Key_Return : Qt::Key_Backspace);
    isReturn = !isReturn;
  }
}
BENCHMARK(returnKey)->Unit(benchmark::kMillisecond);

void pasteHugePicture(benchmark::State& state) {
  needApplication();
  Editor editor(longText(200));
  editor.moveTo(0.5);
  QImage huge(10'000, 10'000, QImage::Format_RGB32);
  huge.fill(Qt::darkGreen);
  auto* data = new QMimeData;
  data->setImageData(huge);
  huge = QImage();
  QApplication::clipboard()->setMimeData(data);
  for (auto _ : state) {
    editor.view.paste();
    QApplication::processEvents();
    state.PauseTiming();
    while (editor.view.isLoading())
      QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    editor.view.undo();
    state.ResumeTiming();
  }
  QApplication::clipboard()->clear();
}
BENCHMARK(pasteHugePicture)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace
