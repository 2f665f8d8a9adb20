// Rich texts in alerts.
#include "alerts/alert_look.h"
#include "alerts/alert_text_view.h"
#include "alerts/alert_window_controller.h"
#include "colors/color_contrast.h"
#include "richtext/text_document.h"
#include "support/random_text.h"

#include <QApplication>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>

using namespace tockwise;

namespace {

QString text(const char* latin) {
  return QString::fromLatin1(latin);
}

/// The window of an alert of that text.
class RichAlert {
 public:
  explicit RichAlert(const AttributedText& text)
      : controller(request(text), AlertLevel::ModalPanel,
                   [&](const QByteArray&, QTextDocument& document) {
                     loadText(text, document);
                     return true;
                   }) {
    controller.fit({0, 0, 800, 800});
    controller.present({10, 10});
  }
  AlertTextView* view() const { return controller.findChild<AlertTextView*>(text("reminderView")); }
  /// The format of the character after position.
  QTextCharFormat formatAt(int position) const {
    QTextCursor cursor(view()->document());
    cursor.setPosition(position + 1);
    return cursor.charFormat();
  }

  AlertWindowController controller;

 private:
  static AlertRequest request(const AttributedText& text) {
    AlertRequest request;
    request.reminder = text.text;
    request.RTFData = QByteArrayLiteral("archived");
    return request;
  }
};

TextAttributes withColor(quint32 argb, bool followsTheme = false) {
  TextAttributes attributes;
  attributes.color = TextColor{argb, followsTheme, {}};
  return attributes;
}

TextAttributes withLink(const QString& address) {
  TextAttributes attributes;
  attributes.link = address;
  return attributes;
}

QPalette theme(const QColor& ground, const QColor& ink) {
  QPalette palette;
  for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button})
    palette.setColor(role, ground);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(role, ink);
  palette.setColor(QPalette::Link, ground.lightness() > 128 ? QColor(Qt::blue) : QColor(0x6ab0ff));
  return palette;
}

/// The desktop's colours while it lives.
class DesktopColours {
 public:
  explicit DesktopColours(const QPalette& palette) : m_before(QApplication::palette()) {
    QApplication::setPalette(palette);
  }
  ~DesktopColours() { QApplication::setPalette(m_before); }

 private:
  QPalette m_before;
};

QPalette light() {
  return theme(Qt::white, Qt::black);
}

QPalette dark() {
  return theme(QColor(0x202124), QColor(0xe8e8e8));
}

} // namespace

class AlertRichTextTest : public QObject {
  Q_OBJECT
 private Q_SLOTS:
  void attributesOfTheTextAreShown() {
    AttributedText original = textWith(text("plain "));
    add(original, text("bold"), withFont(text("Georgia-Bold"), 24));
    RichAlert alert(original);
    QCOMPARE(alert.view()->toPlainText(), text("plain bold"));
    QCOMPARE(alert.formatAt(7).fontPointSize(), 24.0);
    QCOMPARE(alert.formatAt(7).fontWeight(), int(QFont::Bold));
  }

  void coloursCanBeRead_data() {
    QTest::addColumn<QPalette>("desktop");
    QTest::newRow("light") << light();
    QTest::newRow("dark") << dark();
  }

  void coloursCanBeRead() {
    QFETCH(QPalette, desktop);
    const DesktopColours colours(desktop);
    AttributedText original = textWith(text("theme "), withColor(0xff000000, true));
    for (const quint32 argb :
         {0xff000000, 0xffffffff, 0xffff0000, 0xff0000ff, 0xffffff00, 0xff808080})
      add(original, text("x"), withColor(argb));
    TextAttributes marked;
    marked.background = TextColor{0xffffff80, false, {}};
    add(original, text("y"), marked);
    add(original, text("z"), withLink(text("https://example.org/")));
    RichAlert alert(original);
    const QColor ground = alertPalette(desktop).color(QPalette::Base);
    QCOMPARE(alert.formatAt(0).foreground().style(), Qt::NoBrush);
    for (int i = 6; i < 12; ++i)
      QVERIFY2(contrast(alert.formatAt(i).foreground().color(), ground) >= 4.5,
               qPrintable(QString::number(i)));
    QVERIFY(contrast(alert.formatAt(12).foreground().color(), QColor(0xffffff80)) >= 4.5);
    QVERIFY(contrast(alert.formatAt(13).foreground().color(), ground) >= 4.5);
  }

  void coloursFollowAChangeOfTheTheme() {
    const DesktopColours colours(light());
    AttributedText original = textWith(text("black"), withColor(0xff000000));
    add(original, text("blue"), withColor(0xff0000c0));
    RichAlert alert(original);
    QCOMPARE(alert.formatAt(0).foreground().color(), QColor(Qt::black));
    {
      const DesktopColours night(dark());
      QTRY_VERIFY(contrast(alert.formatAt(0).foreground().color(),
                           alertPalette(dark()).color(QPalette::Base)) >= 4.5);
    }
    QTRY_COMPARE(alert.formatAt(0).foreground().color(), QColor(Qt::black));
    QCOMPARE(alert.formatAt(6).foreground().color(), QColor(0xff0000c0));
  }

  void linksStayWhereTheyMayBeOpened_data() {
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("stays");
    QTest::newRow("web") << text("https://example.org/") << true;
    QTest::newRow("old web") << text("http://example.org/") << true;
    QTest::newRow("mail") << text("mailto:a@example.org") << true;
    QTest::newRow("file") << text("file:///etc/passwd") << false;
    QTest::newRow("script") << text("javascript:alert(1)") << false;
    QTest::newRow("other") << text("x-other://run") << false;
    QTest::newRow("relative") << text("../up") << false;
    QTest::newRow("none") << QString() << false;
  }

  void linksStayWhereTheyMayBeOpened() {
    QFETCH(QString, address);
    QFETCH(bool, stays);
    RichAlert alert(textWith(text("words"), withLink(address)));
    const QTextCharFormat format = alert.formatAt(1);
    QCOMPARE(format.isAnchor(), stays);
    QCOMPARE(format.fontUnderline(), stays);
    QCOMPARE(format.anchorHref(), stays ? address : QString());
    QSignalSpy chosen(&alert.controller, &AlertWindowController::linkChosen);
    QTextCursor cursor(alert.view()->document());
    cursor.setPosition(2);
    const QPoint place = alert.view()->cursorRect(cursor).center();
    QTest::mouseMove(alert.view()->viewport(), place);
    QTest::mouseClick(alert.view()->viewport(), Qt::LeftButton, {}, place);
    QCOMPARE(chosen.count(), stays ? 1 : 0);
  }

  void addressesInTheTextBecomeLinks() {
    AttributedText original =
        textWith(text("see https://example.org/a and "), withFont(text("Georgia"), 14));
    add(original, text("https://example.org/b"), withLink(text("https://example.org/other")));
    RichAlert alert(original);
    QCOMPARE(alert.formatAt(6).anchorHref(), text("https://example.org/a"));
    QVERIFY(!alert.formatAt(1).isAnchor());
    QCOMPARE(alert.formatAt(35).anchorHref(), text("https://example.org/other"));
  }

  void largePicturesFit() {
    TextAttributes attributes;
    attributes.attachment = TextAttachment{text("a.png"), pngOf({3000, 1500}), {}};
    RichAlert alert(textWith(QString(QChar(0xfffc)), attributes));
    const QTextImageFormat picture = alert.formatAt(0).toImageFormat();
    QVERIFY(picture.width() <= alert.view()->viewport()->width());
    QCOMPARE(picture.width(), 2 * picture.height());
    QVERIFY(picture.width() > 200);
    QVERIFY(!alert.view()->horizontalScrollBar()->isVisible());
    QVERIFY(alert.controller.height() < 800);
  }
};

QTEST_MAIN(AlertRichTextTest)
#include "alert_rich_text_test.moc"
