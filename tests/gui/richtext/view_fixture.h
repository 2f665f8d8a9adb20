// A text view in a window, for tests.
#pragma once

#include "richtext/picture_reading.h"
#include "richtext/qs_text_view.h"
#include "richtext/text_document.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QUrl>
#include <QVBoxLayout>

#include <vector>

namespace tockwise {

class ShownView : public QWidget {
 public:
  explicit ShownView(int width = 500) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(&view);
    resize(width, 400);
    show();
    activateWindow();
    view.setFocus();
    QApplication::processEvents();
  }
  void select(int from, int to) {
    QTextCursor cursor = view.textCursor();
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    view.setTextCursor(cursor);
  }
  void moveTo(int position) { select(position, position); }
  void type(const QString& text) { QTest::keyClicks(&view, text); }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&view, key, modifiers);
  }
  QString plain() const { return view.text().text; }
  QTextCharFormat formatAt(int position) {
    QTextCursor cursor(view.document());
    cursor.setPosition(position + 1);
    return cursor.charFormat();
  }
  /// The widths of the pictures, in the order of the text.
  std::vector<int> widths() const {
    std::vector<int> widths;
    for (const TextRun& run : view.text().runs) {
      if (run.attributes.attachment)
        widths.push_back(pictureSize(run.attributes.attachment->contents).width());
    }
    return widths;
  }

  QSTextView view;
};

inline AttributedText plainText(const QString& text) {
  AttributedText plain;
  plain.append(text, {});
  return plain;
}

inline AttributedText pictureText(const QByteArray& contents) {
  AttributedText text;
  TextAttributes attributes;
  attributes.attachment = TextAttachment{QStringLiteral("picture.png"), contents, {}};
  text.append(QString(QChar(AttributedText::kAttachmentCharacter)), attributes);
  return text;
}

inline AttributedText linkText(const QString& text, const QString& address) {
  AttributedText link;
  TextAttributes attributes;
  attributes.link = address;
  link.append(text, attributes);
  return link;
}

} // namespace tockwise
