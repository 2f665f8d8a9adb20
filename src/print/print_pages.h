// A document to be printed, on pages: built and laid out bit by bit, then painted page by page on
// a screen, a printer or into a PDF file.
//
// Colours are those of paper: text without a colour of its own is black on white, whatever the
// theme of the desktop.
#pragma once

#include "print/paper.h"
#include "print/print_document.h"

#include <QTextBlock>
#include <QTextDocument>

#include <chrono>

class QPainter;

namespace tockwise {

/// Main thread.
class PrintPages {
 public:
  /// Starts a document on pages of that layout. Nothing is done yet.
  PrintPages(PrintContents contents, const QPageLayout& layout);

  /// Goes on for about that long; true when every page is there. A text on more pages than can be
  /// laid out is cut there (isCut).
  bool advance(std::chrono::milliseconds span);
  /// Does all that is left.
  void complete();
  bool isComplete() const { return m_stage == Stage::Complete; }
  /// How much of the work is done, from 0 to 1.
  double progress() const;
  bool isCut() const { return m_isCut; }

  /// Lays the same text out on other paper; the pages have to be completed again. Nothing happens
  /// when it is the same paper.
  void setPageLayout(const QPageLayout& layout);
  const QPageLayout& pageLayout() const { return m_layout; }

  /// The size of a page, in dots (kPaperResolution).
  QSizeF pageSize() const { return m_pageSize; }
  /// 0 until the pages are complete.
  int pageCount() const;
  /// Paints the page's text, counted from 0, in dots from the page's upper left corner; ground and
  /// border are the caller's.
  void paint(QPainter& painter, int page) const;

  /// The whole text, for those who read the preview aloud and for tests.
  const QTextDocument& document() const { return m_document; }

 private:
  enum class Stage { Writing, Measuring, Complete };
  void write(const PrintEntry& entry);
  void writeRichText(const PrintEntry& entry);
  void startMeasuring();
  void measure();
  void cutFrom(const QTextBlock& block);

  PrintContents m_contents;
  PaperDevice m_device; // before the document, which measures with it
  QTextDocument m_document;
  QTextCursor m_cursor;
  QPageLayout m_layout;
  QSizeF m_pageSize;
  Stage m_stage = Stage::Writing;
  size_t m_written = 0; // entries
  QTextBlock m_measured;
  bool m_isCut = false;
};

/// Gives the system what the heap no longer needs: to be called when pages have gone. Of a large
/// document that is a hundred megabytes, which would be ours for good.
void giveMemoryBack();

} // namespace tockwise
