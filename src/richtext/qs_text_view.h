// The text view of reminders: rich text in which no picture grows wider than the view allows.
#pragma once

#include "richtext/crazy_text.h"
#include "store/archive/attributed_text.h"

#include <QTextEdit>

#include <memory>
#include <optional>

namespace tockwise {

/// Main thread. Pictures that are pasted, dropped or inserted from a file are decoded on another
/// thread, with limits, and appear in the text when they are ready, where they were put.
///
/// Keys beside those of every text view: Tab leaves the text, Ctrl+Tab writes a tab, Return goes
/// on with a list, Shift+Tab goes back to the widget before.
class QSTextView final : public QTextEdit {
  Q_OBJECT
 public:
  explicit QSTextView(QWidget* parent = nullptr);
  ~QSTextView() override;

  /// Scales every oversized picture of the whole text against 300 by 300; returns how many.
  static int scaleAttachments(AttributedText& text);

  /// Shows text, scaled; the undo history starts afresh.
  void setText(const AttributedText& text);
  void setReminderText(const QString& plainText);
  /// What is written now: U+FFFC for attachments, lines ended with U+000A.
  AttributedText text() const;
  /// Whether pictures are still being read; text() lacks them.
  bool isLoading() const;
  /// Puts the files (pictures, or rich text) where the cursor is.
  void insertFiles(const QStringList& paths);

  /// Restyles the selection playfully: each character a font, size and colour of its own.
  void crazyText();
  /// As crazyText(), with fonts and chance of the caller's.
  void crazyText(const QList<QFont>& fonts, const CrazyChance& chance);

  /// The address of the link at a place of the text; empty when there is none, or none that a text
  /// may open (http, https, mailto).
  QUrl linkAt(const QTextCursor& cursor) const;

 Q_SIGNALS:
  /// A picture or file could not be taken, in words for the user.
  void refused(const QString& why);
  void loadingChanged(bool loading);
  /// Tab was pressed: the keyboard leaves the text. While nothing is connected, the keyboard goes
  /// on to the next widget.
  void tabLeft();
  /// A link was followed with Ctrl+click; only addresses that a text may open.
  void linkChosen(const QUrl& address);

 protected:
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;
  QMimeData* createMimeDataFromSelection() const override;
  bool event(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
