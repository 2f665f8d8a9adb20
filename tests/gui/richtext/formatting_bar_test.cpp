#include "gui/richtext/view_fixture.h"
#include "richtext/formatting_bar.h"
#include "richtext/link_prompt.h"
#include "support/pictures.h"
#include "support/test_environment.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>

using namespace tockwise;

namespace {

struct BarAndView : ShownView {
  BarAndView() {
    static_cast<QVBoxLayout*>(layout())->insertWidget(0, &bar);
    bar.setView(&view);
    bar.show();
    QApplication::processEvents();
  }
  template <typename T> T* find(const char* name) const {
    return bar.findChild<T*>(QString::fromLatin1(name));
  }
  void click(const char* name) { QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton); }
  bool isChecked(const char* name) const { return find<QAbstractButton>(name)->isChecked(); }
  TextAttributes attributesAt(size_t run) const { return view.text().runs.at(run).attributes; }

  FormattingBar bar;
};

} // namespace

class FormattingBarTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void buttonsFormatTheSelection_data() {
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<int>("key");
    QTest::newRow("bold") << QByteArray("boldButton") << int(Qt::Key_B);
    QTest::newRow("italic") << QByteArray("italicButton") << int(Qt::Key_I);
    QTest::newRow("underline") << QByteArray("underlineButton") << int(Qt::Key_U);
  }
  void buttonsFormatTheSelection() {
    QFETCH(QByteArray, button);
    QFETCH(int, key);
    BarAndView shown;
    shown.type(QStringLiteral("abc"));
    shown.select(1, 2);
    QVERIFY(!shown.isChecked(button));
    shown.click(button);
    QVERIFY(shown.isChecked(button));
    QVERIFY(shown.view.hasFocus());
    const AttributedText text = shown.view.text();
    QCOMPARE(text.runs.size(), size_t(3));
    if (key == Qt::Key_U)
      QCOMPARE(text.runs[1].attributes.underline, qint64(1));
    else
      QVERIFY(text.runs[1].attributes.font->name.contains(
          key == Qt::Key_B ? QStringLiteral("Bold") : QStringLiteral("Oblique")));
    shown.view.undo();
    QCOMPARE(shown.view.text().runs.size(), size_t(1));
    // The same by its key, and back.
    shown.select(1, 2);
    shown.key(Qt::Key(key), Qt::ControlModifier);
    QCOMPARE(shown.view.text(), text);
    shown.key(Qt::Key(key), Qt::ControlModifier);
    QVERIFY(!shown.isChecked(button));
  }

  void theStateFollowsTheCursor() {
    BarAndView shown;
    shown.type(QStringLiteral("ab"));
    shown.click("boldButton");
    shown.type(QStringLiteral("c"));
    QVERIFY(shown.isChecked("boldButton"));
    shown.key(Qt::Key_Left);
    QVERIFY(!shown.isChecked("boldButton"));
    shown.select(2, 3);
    QVERIFY(shown.isChecked("boldButton"));
  }

  void aSizeIsChosenOrWritten() {
    BarAndView shown;
    shown.type(QStringLiteral("abc"));
    shown.view.selectAll();
    auto* box = shown.find<QComboBox>("sizeBox");
    box->setFocus();
    box->lineEdit()->selectAll();
    QTest::keyClicks(box->lineEdit(), QStringLiteral("36"));
    QTest::keyClick(box->lineEdit(), Qt::Key_Return);
    QCOMPARE(shown.attributesAt(0).font->size, 36.0);
    QVERIFY(shown.view.hasFocus());
    QCOMPARE(box->currentText(), QStringLiteral("36"));
    box->setFocus();
    box->lineEdit()->selectAll();
    QTest::keyClicks(box->lineEdit(), QStringLiteral("5000"));
    QTest::keyClick(box->lineEdit(), Qt::Key_Return);
    QCOMPARE(shown.attributesAt(0).font->size, 36.0);
    QCOMPARE(box->currentText(), QStringLiteral("36"));
    shown.view.undo();
    QVERIFY(!shown.attributesAt(0).font);
  }

  void aColourIsChosenAndTakenBack() {
    BarAndView shown;
    shown.type(QStringLiteral("abc"));
    shown.view.selectAll();
    shown.click("colorButton");
    auto* palette = shown.find<QWidget>("colorPalette");
    QVERIFY(palette->isVisible());
    shown.click("color-e5342b");
    QVERIFY(!palette->isVisible());
    QCOMPARE(shown.attributesAt(0).color->argb, 0xffe5342bU);
    shown.click("colorButton");
    QVERIFY(shown.isChecked("color-e5342b"));
    shown.click("themeColorButton");
    QVERIFY(!shown.attributesAt(0).color);
  }

  void thePaletteIsWorkedByKeys() {
    BarAndView shown;
    shown.type(QStringLiteral("abc"));
    shown.view.selectAll();
    shown.click("colorButton");
    auto* palette = shown.find<QWidget>("colorPalette");
    for (const Qt::Key key :
         {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right, Qt::Key_Right, Qt::Key_Left})
      QTest::keyClick(palette->focusWidget(), key);
    QTest::keyClick(palette->focusWidget(), Qt::Key_Return);
    QCOMPARE(shown.attributesAt(0).color->argb, 0xffb3b3b3U);
    shown.click("colorButton");
    QTest::keyClick(palette, Qt::Key_Escape);
    QVERIFY(!palette->isVisible());
  }

  void aLinkIsSetChangedAndRemoved() {
    BarAndView shown;
    shown.type(QStringLiteral("see this page"));
    shown.select(4, 8);
    shown.key(Qt::Key_K, Qt::ControlModifier);
    auto* prompt = shown.find<QWidget>("linkPrompt");
    auto* address = shown.find<QLineEdit>("linkAddress");
    QTRY_VERIFY(prompt->isVisible());
    QTest::keyClicks(address, QStringLiteral("no address"));
    QTest::keyClick(address, Qt::Key_Return);
    QVERIFY(prompt->isVisible());
    QVERIFY(shown.find<QLabel>("linkProblem")->isVisible());
    address->clear();
    QTest::keyClicks(address, QStringLiteral("example.org/a"));
    QTest::keyClick(address, Qt::Key_Return);
    QVERIFY(!prompt->isVisible());
    QCOMPARE(shown.attributesAt(1).link, QStringLiteral("https://example.org/a"));
    QCOMPARE(shown.plain(), QStringLiteral("see this page"));
    // In the middle of it: all of it is meant.
    shown.moveTo(6);
    QVERIFY(shown.isChecked("linkButton"));
    shown.click("linkButton");
    QCOMPARE(address->text(), QStringLiteral("https://example.org/a"));
    QCOMPARE(shown.view.textCursor().selectedText(), QStringLiteral("this"));
    shown.click("removeLinkButton");
    const AttributedText text = shown.view.text();
    for (const TextRun& run : text.runs) {
      QVERIFY(!run.attributes.link);
      QVERIFY(!run.attributes.color);
      QVERIFY(!run.attributes.underline.value_or(0));
    }
  }

  void anAddressIsInsertedWhereNothingIsSelected() {
    BarAndView shown;
    shown.type(QStringLiteral("a "));
    shown.click("linkButton");
    auto* address = shown.find<QLineEdit>("linkAddress");
    QTest::keyClicks(address, QStringLiteral("me@example.org"));
    shown.click("applyLinkButton");
    QCOMPARE(shown.plain(), QStringLiteral("a me@example.org"));
    QCOMPARE(shown.attributesAt(1).link, QStringLiteral("mailto:me@example.org"));
    shown.type(QStringLiteral("!"));
    QVERIFY(!shown.attributesAt(2).link);
    shown.view.undo();
    shown.view.undo();
    QCOMPARE(shown.plain(), QStringLiteral("a "));
  }

  void addressesAreCompletedAndChecked_data() {
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("address");
    const auto row = [](const char* written, const char* address) {
      QTest::newRow(written) << QString::fromUtf8(written) << QString::fromUtf8(address);
    };
    row("example.org", "https://example.org");
    row(" http://example.org/a?b#c ", "http://example.org/a?b#c");
    row("HTTPS://Example.org", "HTTPS://Example.org");
    row("example.org:8080/x", "https://example.org:8080/x");
    row("localhost:80", "https://localhost:80");
    row("someone@example.org", "mailto:someone@example.org");
    row("mailto:someone@example.org", "mailto:someone@example.org");
    row("", "");
    row("word", "");
    row("two words.org", "");
    row("javascript:alert(1)", "");
    row("file:///etc/passwd", "");
    row("https://", "");
    row("mailto:", "");
    row("ssh://example.org", "");
  }
  void addressesAreCompletedAndChecked() {
    QFETCH(QString, written);
    QFETCH(QString, address);
    QCOMPARE(linkAddress(written), address);
  }

  void picturesAreChosenFromTheDisk() {
    TestEnvironment environment;
    QStringList paths;
    for (const int width : {40, 50}) {
      paths.push_back(environment.path(QStringLiteral("%1.png").arg(width)));
      QFile file(paths.back());
      QVERIFY(file.open(QIODevice::WriteOnly));
      file.write(pngOf({width, 20}));
    }
    BarAndView shown;
    shown.click("pictureButton");
    auto* dialog = shown.find<QFileDialog>("pictureDialog");
    QVERIFY(dialog);
    QCOMPARE(dialog->fileMode(), QFileDialog::ExistingFiles);
    Q_EMIT dialog->filesSelected(paths);
    dialog->close();
    QTRY_COMPARE(shown.widths(), (std::vector<int>{40, 50}));
  }

  void listsAreMadeAndEnded() {
    BarAndView shown;
    shown.type(QStringLiteral("a"));
    shown.click("bulletsButton");
    QCOMPARE(shown.plain(), QStringLiteral("\t•\ta"));
    QVERIFY(shown.isChecked("bulletsButton"));
    shown.click("numbersButton");
    QCOMPARE(shown.plain(), QStringLiteral("\t1.\ta"));
    QVERIFY(!shown.isChecked("bulletsButton"));
    shown.click("numbersButton");
    QCOMPARE(shown.plain(), QStringLiteral("a"));
    QVERIFY(!shown.isChecked("numbersButton"));
  }

  void paragraphsAreAligned() {
    BarAndView shown;
    shown.type(QStringLiteral("a"));
    shown.find<QAction>("alignCenter")->trigger();
    QCOMPARE(shown.attributesAt(0).paragraph->alignment, TextAlignment::Center);
    QVERIFY(shown.find<QAction>("alignCenter")->isChecked());
    shown.view.undo();
    QVERIFY(!shown.attributesAt(0).paragraph);
  }

  void crazyTextNeedsASelection() {
    BarAndView shown;
    shown.type(QStringLiteral("abc"));
    QVERIFY(!shown.find<QAbstractButton>("crazyButton")->isEnabled());
    shown.view.selectAll();
    shown.click("crazyButton");
    QVERIFY(shown.attributesAt(0).color);
    QCOMPARE(shown.view.textCursor().selectedText(), QStringLiteral("abc"));
  }

  void everyControlHasANameAndAToolTip() {
    BarAndView shown;
    const QList<QToolButton*> buttons =
        shown.bar.findChildren<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(buttons.size(), 10);
    for (const QToolButton* button : buttons) {
      QVERIFY(!button->objectName().isEmpty());
      QVERIFY(!button->accessibleName().isEmpty());
      QVERIFY(!button->toolTip().isEmpty());
      QCOMPARE(button->focusPolicy(), Qt::TabFocus);
    }
    QVERIFY(shown.find<QToolButton>("boldButton")->toolTip().contains(QStringLiteral("Ctrl+B")));
    QVERIFY(shown.find<QToolButton>("linkButton")->toolTip().contains(QStringLiteral("Ctrl+K")));
  }

  void theBarLetsGoOfAViewThatGoesAway() {
    FormattingBar bar;
    {
      QSTextView view;
      bar.setView(&view);
    }
    QTest::mouseClick(bar.findChild<QToolButton*>(QStringLiteral("boldButton")), Qt::LeftButton);
    bar.setView(nullptr);
  }
};

QTEST_MAIN(FormattingBarTest)
#include "formatting_bar_test.moc"
