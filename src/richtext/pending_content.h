// Content that is still being read, and the places that are kept for it in the text.
#pragma once

#include "richtext/content_loading.h"

#include <QObject>
#include <QTextCursor>

#include <vector>

class QTextEdit;

namespace tockwise {

/// Main thread. A small picture keeps the place of each content until it is ready; it is an
/// ordinary character, so that it moves, is deleted and comes back by undo like any other.
class PendingContent final : public QObject {
  Q_OBJECT
 public:
  /// view outlives the object.
  explicit PendingContent(QTextEdit& view);
  ~PendingContent() override;

  /// Begins to read content and keeps a place for it at the cursor of the view, over the selection.
  /// frame is in pixels. step: whether the place is a step of undo of its own, or part of another,
  /// such as a drag that moves text.
  enum class Step { OfItsOwn, PartOfAnother };
  void start(const IncomingContent& content, QSizeF frame, Step step);
  /// How often start() was called.
  qint64 started() const { return m_lastNumber; }
  /// What start() was called in, a drop for instance, has now ended its step of undo.
  void endStep();
  bool isLoading() const { return !m_running.empty(); }
  /// Gives up all that is being read, without a word: the text is about to be replaced.
  void forget();

  /// text, which is that of the document from position to end, with every place taken by its
  /// content: what is not ready is left out.
  AttributedText completed(AttributedText text, int position, int end) const;

  /// Whether the format is that of a place.
  static bool isPlace(const QTextCharFormat& format);
  /// Makes the format one of ordinary text.
  static void clearPlace(QTextCharFormat& format);

 Q_SIGNALS:
  void loadingChanged(bool loading);
  void refused(const QString& why);

 private:
  struct Running;
  struct Ready;
  QTextCharFormat placeFormat(qint64 number);
  void finish(qint64 number);
  void put(Ready ready);
  void putWhatCameBack(qint64 number);
  void lookAgain(int position, int added);
  int positionOf(qint64 number) const;

  QTextEdit& m_view;
  qint64 m_lastNumber = 0;
  quint64 m_edits = 0;
  std::vector<Running> m_running;
  std::vector<Ready> m_ready; // whose place is not in the text, or may come back into it
};

} // namespace tockwise
