// fromHTML(): a text from any page, however it was made. Nothing in it is run or fetched, and
// whatever it holds costs time and memory in proportion to its length.
#include "richtext/default_font.h"
#include "richtext/formats/format_fonts.h"
#include "richtext/formats/html_elements.h"
#include "richtext/formats/html_text.h"
#include "richtext/formats/html_tokens.h"
#include "richtext/formats/paragraphs.h"
#include "richtext/formats/picture_type.h"
#include "richtext/picture_scaling.h"
#include "richtext/text_formats.h"
#include "store/archive/file_wrapper.h"

#include <QHash>

#include <algorithm>

namespace tockwise {
namespace {

constexpr size_t kDeepestElement =
    256; // open elements; what is deeper has the style of the last of them
constexpr qsizetype kMostPictures = 1000;

struct Element {
  QString name;
  HtmlElementKind kind = HtmlElementKind::Inline;
  HtmlStyle style;
  int nextNumber = 1; // of a list
};

// The bytes of a data URI; empty for any other address.
QByteArray dataOfAddress(QStringView address) {
  constexpr qsizetype kLongestHead = 200;
  address = address.trimmed();
  if (!address.startsWith(u"data:", Qt::CaseInsensitive) ||
      address.size() > kMostPictureBytes / 3 * 4 + kLongestHead)
    return {};
  const qsizetype comma = address.left(kLongestHead).indexOf(u',');
  if (comma < 0)
    return {};
  const QByteArray payload = QByteArray::fromPercentEncoding(address.mid(comma + 1).toLatin1());
  return address.left(comma).endsWith(u";base64", Qt::CaseInsensitive)
             ? QByteArray::fromBase64(payload)
             : payload;
}

class HtmlReader {
 public:
  AttributedText read(QStringView html) {
    HtmlTokens tokens(html);
    for (HtmlToken token = tokens.next(); token.kind != HtmlToken::Kind::Finished && !m_isFinished;
         token = tokens.next()) {
      switch (token.kind) {
      case HtmlToken::Kind::Text:
        m_text.addText(cleanText(resolvedReferences(token.content)), style());
        break;
      case HtmlToken::Kind::Start:
        start(token);
        break;
      case HtmlToken::Kind::End:
        end(token.name);
        break;
      default:
        comment(token.content);
        break;
      }
    }
    return m_text.finish();
  }

 private:
  HtmlStyle style() const { return m_open.empty() ? HtmlStyle() : m_open.back().style; }

  // What a clipboard's HTML is about stands between two comments.
  void comment(QStringView content) {
    content = content.trimmed();
    if (content == u"StartFragment")
      m_text.clear();
    else if (content == u"EndFragment")
      m_isFinished = true;
  }

  void start(const HtmlToken& tag) {
    const HtmlElementKind kind = htmlElementKind(tag.name);
    if (kind == HtmlElementKind::Void)
      return startVoid(tag);
    closeWhatEndsBefore(tag.name);
    if (m_open.size() >= kDeepestElement) {
      ++m_unopened[tag.name];
      if (kind == HtmlElementKind::Block || kind == HtmlElementKind::Row)
        m_text.addBoundary();
      return;
    }
    Element element{tag.name, kind, style(), 1};
    applyHtmlElement(tag, element.style);
    startLine(tag, element);
    if (tag.name == u"ol")
      element.nextNumber = std::clamp(startNumber(tag), 1, 100000);
    m_open.push_back(std::move(element));
  }

  static int startNumber(const HtmlToken& tag) {
    bool valid = false;
    const int number = tag.attribute(u"start").toInt(&valid);
    return valid ? number : 1;
  }

  void startLine(const HtmlToken& tag, const Element& element) {
    if (element.style.isHidden)
      return;
    if (element.kind == HtmlElementKind::Block)
      m_text.addBoundary();
    else if (element.kind == HtmlElementKind::Row)
      m_text.startRow();
    else if (element.kind == HtmlElementKind::Cell)
      m_text.startCell();
    if (tag.name == u"li" && !m_open.empty() && !element.style.lists.isEmpty()) {
      const int number = m_open.back().nextNumber++;
      m_text.setMarker(u'\t' + htmlListMarker(element.style.lists, number) + u'\t');
    }
  }

  void startVoid(const HtmlToken& tag) {
    if (tag.name == u"br") {
      if (tag.rawAttribute(u"class") == u"line")
        m_text.addLineSeparator(style());
      else
        m_text.addLineBreak(style());
    } else if (tag.name == u"img") {
      addPicture(tag);
    } else if (tag.name == u"hr") {
      m_text.addBoundary();
    } else if (tag.name == u"meta" && tag.attribute(u"name") == u"generator") {
      m_text.setColorsAreMeant(tag.attribute(u"content") == u"Tockwise");
    }
  }

  void addPicture(const HtmlToken& tag) {
    if (m_pictures >= kMostPictures)
      return;
    const QByteArray contents = dataOfAddress(tag.rawAttribute(u"src"));
    const auto type = pictureTypeOf(contents);
    if (!type || m_pictureBytes + contents.size() > kMostPictureBytes)
      return;
    ++m_pictures;
    m_pictureBytes += contents.size();
    QString name = sanitisedFileName(cleanText(tag.attribute(u"alt").left(255)));
    if (!name.endsWith(u'.' + type->suffix, Qt::CaseInsensitive) && !isFileName(name))
      name = QStringLiteral("image.") + type->suffix;
    m_text.addPicture({name, contents, {}}, style());
  }

  // "photo.jpeg", unlike a description of the picture
  static bool isFileName(const QString& name) {
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 && name.size() - dot >= 3 && name.size() - dot <= 5 &&
           std::all_of(name.begin() + dot + 1, name.end(),
                       [](QChar character) { return character.isLetterOrNumber(); });
  }

  void closeWhatEndsBefore(const QString& next) {
    constexpr size_t kLookedThrough = 32;
    const size_t last = m_open.size() > kLookedThrough ? m_open.size() - kLookedThrough : 0;
    for (size_t i = m_open.size(); i > last; --i) {
      const QString& open = m_open[i - 1].name;
      if (htmlElementEnds(open, next))
        return closeFrom(i - 1);
      if (htmlElementEncloses(open))
        return;
    }
  }

  void end(const QString& name) {
    if (name == u"br") // as browsers take it
      return m_text.addLineBreak(style());
    if (const auto unopened = m_unopened.find(name); unopened != m_unopened.end()) {
      if (--*unopened == 0)
        m_unopened.erase(unopened);
      if (htmlElementKind(name) != HtmlElementKind::Inline)
        m_text.addBoundary();
      return;
    }
    const bool isInline = htmlElementKind(name) == HtmlElementKind::Inline;
    for (size_t i = m_open.size(); i > 0; --i) {
      const Element& element = m_open[i - 1];
      if (element.name == name)
        return closeFrom(i - 1);
      if (isInline && element.kind != HtmlElementKind::Inline)
        return;
      if (element.name == u"table")
        return;
    }
  }

  void closeFrom(size_t first) {
    while (m_open.size() > first) {
      const bool isHidden = m_open.back().style.isHidden;
      const HtmlElementKind kind = m_open.back().kind;
      const bool isTable = m_open.back().name == u"table";
      m_open.pop_back();
      if (isHidden)
        continue;
      if (isTable)
        m_text.endTable();
      if (kind == HtmlElementKind::Block || kind == HtmlElementKind::Row)
        m_text.addBoundary();
    }
  }

  HtmlText m_text;
  std::vector<Element> m_open;
  QHash<QString, int> m_unopened; // too deep to be kept
  qsizetype m_pictures = 0;
  qsizetype m_pictureBytes = 0;
  bool m_isFinished = false;
};

} // namespace

AttributedText fromHTML(const QString& html) {
  QString text = html;
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
  AttributedText read = HtmlReader().read(text);
  stateDefaultFont(read, kPlainFontSize);
  return read;
}

} // namespace tockwise
