// The text view of reminders: rich text in which no picture grows wider than the view allows.
#pragma once

#include "store/archive/attributed_text.h"

#include <QTextEdit>

#include <memory>

namespace tockwise {

/// Main thread. Pictures that are pasted, dropped or inserted from a file are decoded on another
/// thread, with limits, and appear in the text when they are ready, where they were put.
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
  /// What is written now.
  AttributedText text() const;
  /// Whether pictures are still being read; text() lacks them.
  bool isLoading() const;
  /// Puts the files (pictures, or rich text) where the cursor is.
  void insertFiles(const QStringList& paths);

  /// Restyles the selection playfully: each character a font, size and colour of its own.
  void crazyText();

 Q_SIGNALS:
  /// A picture or file could not be taken, in words for the user.
  void refused(const QString& why);
  void loadingChanged(bool loading);
  /// Tab was pressed: the keyboard leaves the text. Ctrl+Tab writes a tab.
  void tabLeft();
  /// A link was followed with Ctrl+click; only addresses that a text may open.
  void linkChosen(const QUrl& address);

 protected:
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;
  QMimeData* createMimeDataFromSelection() const override;

 private:
  class Private;
  std::unique_ptr<Private> d;
};

} // namespace tockwise
