// Random edits while pictures are being read: the text stays whole, and undo goes all the way back.
#include "gui/richtext/view_fixture.h"
#include "support/pictures.h"

#include <QClipboard>
#include <QMimeData>

#include <random>

using namespace tockwise;

namespace {

constexpr int kSteps = 60;

void pasteImage(ShownView& shown, int width) {
  QImage image(width, 40, QImage::Format_RGB32);
  image.fill(Qt::blue);
  auto* data = new QMimeData;
  data->setImageData(image);
  QApplication::clipboard()->setMimeData(data);
  shown.key(Qt::Key_V, Qt::ControlModifier);
}

class RandomEditor {
 public:
  RandomEditor(ShownView& shown, unsigned seed) : m_shown(shown), m_random(seed) {}

  void step() {
    switch (upTo(9)) {
    case 0:
    case 1:
      return m_shown.type(QStringLiteral("ab"));
    case 2:
      return pasteImage(m_shown, 20 + upTo(900));
    case 3:
      return m_shown.view.undo();
    case 4:
      return m_shown.view.redo();
    case 5:
      return m_shown.key(Qt::Key_Backspace);
    case 6:
      return m_shown.key(Qt::Key_Return);
    case 7:
      return m_shown.moveTo(upTo(end()));
    case 8:
      return m_shown.select(upTo(end()), upTo(end()));
    default:
      QApplication::processEvents();
    }
  }

 private:
  int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(m_random); }
  int end() const { return m_shown.view.document()->characterCount() - 1; }

  ShownView& m_shown;
  std::mt19937 m_random;
};

/// What must hold of every text; empty when it does.
QString problemWith(const AttributedText& text) {
  qsizetype at = 0;
  for (const TextRun& run : text.runs) {
    const bool isPicture = run.attributes.attachment.has_value();
    for (const QChar character : QStringView(text.text).mid(at, run.length)) {
      if ((character == QChar(AttributedText::kAttachmentCharacter)) != isPicture)
        return QStringLiteral("a run of %1 at %2: %3")
            .arg(isPicture ? u"a picture" : u"text")
            .arg(at)
            .arg(QString::fromLatin1(text.text.toUtf8().toPercentEncoding()));
    }
    if (isPicture && pictureSize(run.attributes.attachment->contents).width() > 300)
      return QStringLiteral("a wide picture at %1").arg(at);
    at += run.length;
  }
  return at == text.text.size() ? QString() : QStringLiteral("runs of another length");
}

} // namespace

class ViewRandomTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void theTextStaysWhole_data() {
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 40; ++seed)
      QTest::addRow("%u", seed) << seed;
  }
  void theTextStaysWhole() {
    QFETCH(unsigned, seed);
    ShownView shown;
    RandomEditor editor(shown, seed);
    for (int step = 0; step < kSteps; ++step) {
      editor.step();
      QCOMPARE(problemWith(shown.view.text()), QString());
    }
    QTRY_VERIFY(!shown.view.isLoading());
    QApplication::processEvents();
    QCOMPARE(problemWith(shown.view.text()), QString());
    for (int step = 0; step < 3 * kSteps && shown.view.document()->isUndoAvailable(); ++step) {
      shown.view.undo();
      QApplication::processEvents();
      QCOMPARE(problemWith(shown.view.text()), QString());
    }
    QVERIFY(!shown.view.document()->isUndoAvailable());
    QCOMPARE(shown.view.text(), AttributedText());
    while (shown.view.document()->isRedoAvailable())
      shown.view.redo();
    QCOMPARE(problemWith(shown.view.text()), QString());
  }
};

QTEST_MAIN(ViewRandomTest)
#include "view_random_test.moc"
