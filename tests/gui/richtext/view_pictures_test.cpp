#include "gui/richtext/view_fixture.h"
#include "support/pictures.h"
#include "support/test_environment.h"

#include <QClipboard>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QTimer>

#include <algorithm>

using namespace tockwise;

namespace {

QImage imageOf(QSize size) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::darkGreen);
  return image;
}

void copyImage(const QImage& image) {
  auto* data = new QMimeData;
  data->setImageData(image);
  QApplication::clipboard()->setMimeData(data);
}

void paste(ShownView& shown) {
  shown.key(Qt::Key_V, Qt::ControlModifier);
}

const QString kPicture(QChar(AttributedText::kAttachmentCharacter));

} // namespace

class ViewPicturesTest : public QObject {
  Q_OBJECT
 private:
  QString write(const QString& name, const QByteArray& contents) {
    const QString path = m_environment.path(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
      qFatal("cannot write the picture");
    return path;
  }

  TestEnvironment m_environment;

 private Q_SLOTS:
  void picturesOfALoadedTextAreScaledTo285() {
    ShownView shown;
    shown.view.setText(pictureText(pngOf({400, 200})));
    QCOMPARE(shown.widths(), std::vector<int>{285});
    shown.view.setText(pictureText(pngOf({285, 200})));
    QCOMPARE(shown.view.text(), pictureText(pngOf({285, 200})));
    QVERIFY(!shown.view.document()->isUndoAvailable());
  }

  void aPastedPictureAppearsScaledInOneStepOfUndo() {
    ShownView shown;
    shown.type(QStringLiteral("ab"));
    shown.moveTo(1);
    copyImage(imageOf({1000, 500}));
    QSignalSpy loading(&shown.view, &QSTextView::loadingChanged);
    paste(shown);
    QVERIFY(shown.view.isLoading());
    QCOMPARE(shown.plain(), QStringLiteral("ab"));
    QTRY_VERIFY(!shown.view.isLoading());
    QCOMPARE(shown.plain(), u'a' + kPicture + u'b');
    QCOMPARE(shown.widths(), std::vector<int>{300});
    QCOMPARE(shown.view.textCursor().position(), 2);
    QCOMPARE(loading.count(), 2);
    shown.view.undo();
    QCOMPARE(shown.view.toPlainText(), QStringLiteral("ab"));
    shown.view.redo();
    QCOMPARE(shown.plain(), u'a' + kPicture + u'b');
    QCOMPARE(shown.widths(), std::vector<int>{300});
  }

  void aPictureInANarrowViewIsScaledToItsFrame() {
    ShownView shown(202); // two pixels are the frame's
    QCOMPARE(shown.view.viewport()->width(), 200);
    copyImage(imageOf({1000, 500}));
    paste(shown);
    QTRY_COMPARE(shown.widths(), std::vector<int>{190});
  }

  void aNarrowPictureIsKeptAsItIs() {
    ShownView shown;
    copyImage(imageOf({120, 60}));
    paste(shown);
    QTRY_COMPARE(shown.widths(), std::vector<int>{120});
    QCOMPARE(shown.view.text().runs[0].attributes.attachment->name, QStringLiteral("image.png"));
  }

  void aPictureReplacesTheSelection() {
    ShownView shown;
    shown.type(QStringLiteral("abc"));
    shown.select(1, 2);
    copyImage(imageOf({100, 50}));
    paste(shown);
    QTRY_COMPARE(shown.plain(), u'a' + kPicture + u'c');
    shown.view.undo();
    QCOMPARE(shown.plain(), QStringLiteral("abc"));
  }

  void typingGoesOnWhileAPictureIsRead() {
    ShownView shown;
    shown.type(QStringLiteral("a"));
    copyImage(imageOf({4000, 2000}));
    paste(shown);
    shown.type(QStringLiteral("b"));
    shown.moveTo(0);
    shown.type(QStringLiteral("c"));
    QTRY_COMPARE(shown.plain(), QStringLiteral("ca") + kPicture + u'b');
    QCOMPARE(shown.view.textCursor().position(), 1);
    for (const TextRun& run : shown.view.text().runs)
      QCOMPARE(run.attributes.attachment.has_value(),
               run.length == 1 && run.attributes != TextAttributes());
  }

  void typedTextIsNoPicture() {
    ShownView shown;
    copyImage(imageOf({100, 50}));
    paste(shown);
    QTRY_COMPARE(shown.plain(), kPicture);
    shown.type(QStringLiteral("b"));
    const AttributedText text = shown.view.text();
    QCOMPARE(text.runs.size(), size_t(2));
    QCOMPARE(text.runs[1].attributes, TextAttributes());
  }

  void undoneBeforeItIsReadItComesBackByRedo() {
    ShownView shown;
    shown.type(QStringLiteral("a"));
    copyImage(imageOf({2000, 1000}));
    paste(shown);
    shown.view.undo();
    QTRY_VERIFY(!shown.view.isLoading());
    QCOMPARE(shown.plain(), QStringLiteral("a"));
    shown.view.redo();
    QTRY_COMPARE(shown.widths(), std::vector<int>{300});
    QCOMPARE(shown.plain(), u'a' + kPicture);
  }

  void deletedBeforeItIsReadItStaysAway() {
    ShownView shown;
    copyImage(imageOf({2000, 1000}));
    paste(shown);
    shown.key(Qt::Key_Backspace);
    QTRY_VERIFY(!shown.view.isLoading());
    QCOMPARE(shown.view.toPlainText(), QString());
    shown.view.undo();
    QTRY_COMPARE(shown.widths(), std::vector<int>{300});
  }

  void undoOfASwappedPlaceKeepsThePictureInTheText() {
    ShownView shown;
    copyImage(imageOf({2000, 1000}));
    paste(shown);
    shown.type(QStringLiteral("b"));
    QTRY_COMPARE(shown.plain(), kPicture + u'b');
    shown.view.undo();
    QCOMPARE(shown.plain(), kPicture + u'b');
    QCOMPARE(shown.widths(), std::vector<int>{300});
    shown.view.undo();
    QCOMPARE(shown.plain(), kPicture);
    shown.view.undo();
    QCOMPARE(shown.plain(), QString());
  }

  void aViewMayCloseWhileAPictureIsRead() {
    {
      ShownView shown;
      copyImage(imageOf({6000, 6000}));
      paste(shown);
      QVERIFY(shown.view.isLoading());
    }
    QTest::qWait(0);
  }

  void anotherTextTakesTheirPlaceAtOnce() {
    ShownView shown;
    copyImage(imageOf({2000, 1000}));
    paste(shown);
    QSignalSpy loading(&shown.view, &QSTextView::loadingChanged);
    shown.view.setReminderText(QStringLiteral("other"));
    QVERIFY(!shown.view.isLoading());
    QCOMPARE(loading.count(), 1);
    copyImage(imageOf({10, 10}));
    paste(shown);
    QTRY_COMPARE(shown.plain(), kPicture + QStringLiteral("other"));
  }

  void aHugePictureDoesNotHoldUpTheEventLoop() {
    ShownView shown;
    QImage huge(10'000, 10'000, QImage::Format_RGB32);
    huge.fill(Qt::red);
    copyImage(huge);
    huge = QImage();
    paste(shown);
    int beats = 0; // of the event loop, while the picture is made smaller elsewhere
    QTimer beat;
    beat.callOnTimeout([&] { beats += shown.view.isLoading() ? 1 : 0; });
    beat.start(1);
    QVERIFY(shown.view.isLoading());
    QTRY_VERIFY_WITH_TIMEOUT(!shown.view.isLoading(), 30'000);
    QVERIFY(beats > 0);
    QCOMPARE(shown.widths(), std::vector<int>{300});
  }

  void filesAreInsertedInTheirOrder() {
    ShownView shown;
    shown.view.insertFiles({write(QStringLiteral("one.png"), pngOf({60, 30})),
                            write(QStringLiteral("two.jpg"), jpegOf({900, 30})),
                            write(QStringLiteral("three"), pngOf({50, 30}))});
    QTRY_COMPARE(shown.widths(), (std::vector<int>{60, 300, 50}));
    QCOMPARE(shown.view.text().runs[0].attributes.attachment->name, QStringLiteral("one.png"));
    shown.view.undo();
    QCOMPARE(shown.plain(), QString());
  }

  void whatCannotBeReadIsRefusedInWords_data() {
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("word");
    QTest::newRow("cut short") << pngOf({2000, 2000}).left(300) << "read";
    QTest::newRow("too many pixels") << headerOfPng({40'000, 40'000}) << "large";
    QTest::newRow("no picture") << QByteArray("just words") << "picture";
    QTest::newRow("too many bytes")
        << pngOf({20, 20}) + QByteArray(64 * 1024 * 1024, '\0') << "large";
  }
  void whatCannotBeReadIsRefusedInWords() {
    QFETCH(QByteArray, contents);
    QFETCH(QString, word);
    ShownView shown;
    shown.type(QStringLiteral("abc"));
    shown.select(1, 2);
    QSignalSpy refused(&shown.view, &QSTextView::refused);
    shown.view.insertFiles({write(QStringLiteral("bad picture.png"), contents)});
    QTRY_COMPARE(refused.count(), 1);
    const QString why = refused[0][0].toString();
    QVERIFY2(why.contains(QStringLiteral("“bad picture.png”")) && why.contains(word),
             qPrintable(why));
    QVERIFY(!shown.view.isLoading());
    QCOMPARE(shown.view.toPlainText(), QStringLiteral("abc"));
  }

  void aMissingFileAndAFolderAreRefused() {
    ShownView shown;
    QSignalSpy refused(&shown.view, &QSTextView::refused);
    shown.view.insertFiles({m_environment.path(QStringLiteral("missing.png")),
                            m_environment.path(QString()),
                            write(QStringLiteral("good.png"), pngOf({30, 30}))});
    QTRY_COMPARE(refused.count(), 2);
    QCOMPARE(shown.widths(), std::vector<int>{30});
  }

  void encodedPicturesOfTheClipboardAreRead() {
    ShownView shown;
    auto* data = new QMimeData;
    data->setData(QStringLiteral("image/jpeg"), jpegOf({800, 400}));
    QApplication::clipboard()->setMimeData(data);
    paste(shown);
    QTRY_COMPARE(shown.widths(), std::vector<int>{300});
    data = new QMimeData;
    data->setData(QStringLiteral("image/jpeg"), jpegOf({80, 40}));
    QApplication::clipboard()->setMimeData(data);
    shown.view.selectAll();
    paste(shown);
    QTRY_COMPARE(shown.widths(), std::vector<int>{80});
    QCOMPARE(shown.view.text().runs[0].attributes.attachment->name, QStringLiteral("image.jpg"));
  }

  void aBrowsersPictureGoesBeforeItsAddress() {
    ShownView shown;
    auto* data = new QMimeData;
    data->setHtml(QStringLiteral("<meta charset='utf-8'><img src='https://example.org/a.png'>"));
    data->setImageData(imageOf({70, 30}));
    QApplication::clipboard()->setMimeData(data);
    paste(shown);
    QTRY_COMPARE(shown.widths(), std::vector<int>{70});
  }

  void picturesInPastedPagesAreScaled_data() {
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("words");
    QTest::newRow("narrow, read at once") << 100 << 1;
    QTest::newRow("wide") << 700 << 1;
    QTest::newRow("long, read on another thread") << 700 << 20'000;
  }
  void picturesInPastedPagesAreScaled() {
    QFETCH(int, width);
    QFETCH(int, words);
    const QString text = QStringLiteral("word ").repeated(words).trimmed();
    ShownView shown;
    shown.type(QStringLiteral("a"));
    auto* data = new QMimeData;
    data->setHtml(QStringLiteral("<p>%1<img src=\"data:image/png;base64,%2\"><b>end</b></p>")
                      .arg(text, QString::fromLatin1(pngOf({width, 50}).toBase64())));
    QApplication::clipboard()->setMimeData(data);
    paste(shown);
    QTRY_COMPARE(shown.widths(), std::vector<int>{std::min(width, 300)});
    QVERIFY(shown.plain().startsWith(u'a' + text + kPicture + QStringLiteral("end")));
    shown.view.undo();
    QCOMPARE(shown.plain(), QStringLiteral("a"));
  }

  void richTextFilesAreInserted() {
    ShownView shown;
    shown.view.insertFiles({write(QStringLiteral("t.rtf"), "{\\rtf1\\ansi plain {\\b bold}}")});
    QTRY_COMPARE(shown.plain(), QStringLiteral("plain bold"));
    QCOMPARE(shown.view.text().runs.size(), size_t(2));
  }

  void droppedFilesAreTakenWhereTheyAreDropped() {
    ShownView shown;
    shown.type(QStringLiteral("abcd"));
    shown.moveTo(2);
    const QPoint place = shown.view.cursorRect().center();
    shown.moveTo(4);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(write(QStringLiteral("d.png"), pngOf({500, 250})))});
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(shown.view.viewport(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(shown.view.viewport(), &drop);
    QVERIFY(shown.view.isLoading());
    QTRY_COMPARE(shown.plain(), QStringLiteral("ab") + kPicture + QStringLiteral("cd"));
    QCOMPARE(shown.widths(), std::vector<int>{300});
    shown.view.undo();
    QCOMPARE(shown.plain(), QStringLiteral("abcd"));
  }

  void anEditScalesThePicturesOfItsRange() {
    ShownView shown(202);
    shown.view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    AttributedText text = pictureText(pngOf({260, 130}));
    text.append(QStringLiteral(" word"), {});
    shown.view.setText(text);
    QCOMPARE(shown.widths(), std::vector<int>{260}); // narrower than 285
    shown.moveTo(6);
    shown.type(QStringLiteral("s"));
    QApplication::processEvents();
    QCOMPARE(shown.widths(), std::vector<int>{260}); // not in the edited range
    QTextCursor cursor(shown.view.document());
    cursor.movePosition(QTextCursor::End);
    tockwise::insertText(cursor, pictureText(pngOf({250, 130})));
    QTRY_COMPARE(shown.widths(), (std::vector<int>{260, 190}));
    shown.view.undo();
    QCOMPARE(shown.widths(), std::vector<int>{260});
    shown.view.redo();
    QApplication::processEvents();
    QCOMPARE(shown.widths(), (std::vector<int>{260, 190}));
  }

  void attributesBesideThePictureStayWhenItIsScaled() {
    ShownView shown(202);
    AttributedText text = pictureText(pngOf({260, 130}));
    text.runs[0].attributes.link = QStringLiteral("https://example.org");
    QTextCursor cursor(shown.view.document());
    tockwise::insertText(cursor, text);
    QTRY_COMPARE(shown.widths(), std::vector<int>{190});
    QCOMPARE(shown.view.text().runs[0].attributes.link, QStringLiteral("https://example.org"));
  }

  void copiedPicturesArePastedAgain() {
    ShownView shown;
    shown.view.setText(pictureText(pngOf({200, 100})));
    shown.view.selectAll();
    shown.key(Qt::Key_C, Qt::ControlModifier);
    ShownView other;
    paste(other);
    QCOMPARE(other.view.text(), shown.view.text());
  }
};

QTEST_MAIN(ViewPicturesTest)
#include "view_pictures_test.moc"
