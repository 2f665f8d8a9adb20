#include "richtext/formats/rtf_reader.h"

#include "richtext/formats/paragraphs.h"
#include "richtext/formats/rtf_pictures.h"
#include "richtext/formats/rtf_text.h"
#include "richtext/formats/rtf_tokens.h"
#include "richtext/picture_scaling.h"
#include "store/archive/file_wrapper.h"

#include <QHash>

#include <utility>

namespace tockwise {
namespace {

using Destination = RtfDestination;

constexpr size_t kDeepestGroup = 500;      // groups
constexpr qsizetype kLongestWords = 65536; // of a name, an instruction
constexpr qsizetype kMostAttachments = 1000;
constexpr char kPlaceholder = '\xac'; // stands beside an attached file

// Where the text of a group goes that starts with that word; nothing for other words.
std::optional<Destination> destinationOf(QByteArrayView word) {
  static const QHash<QByteArray, Destination> known = [] {
    QHash<QByteArray, Destination> all{
        {"fonttbl", Destination::FontTable},
        {"falt", Destination::FontAlternate},
        {"colortbl", Destination::ColorTable},
        {"expandedcolortbl", Destination::ColorExtension},
        {"fldinst", Destination::FieldInstruction},
        {"fldrslt", Destination::Text},
        {"pict", Destination::Picture},
        {"picprop", Destination::PictureProperties},
        {"shppict", Destination::Text},
        {"upr", Destination::Alternatives},
        {"ud", Destination::Text},
        {"sn", Destination::PropertyName},
        {"sv", Destination::PropertyValue},
        {"NeXTGraphic", Destination::AttachedFile},
    };
    for (const char* skipped : {"stylesheet",
                                "info",
                                "header",
                                "headerl",
                                "headerr",
                                "headerf",
                                "footer",
                                "footerl",
                                "footerr",
                                "footerf",
                                "footnote",
                                "nonshppict",
                                "objdata",
                                "objclass",
                                "objname",
                                "panose",
                                "fname",
                                "fontemb",
                                "fontfile",
                                "listtable",
                                "listoverridetable",
                                "revtbl",
                                "rsidtbl",
                                "generator",
                                "bkmkstart",
                                "bkmkend",
                                "annotation",
                                "atnid",
                                "atnauthor",
                                "tc",
                                "xe",
                                "themedata",
                                "colorschememapping",
                                "datastore",
                                "latentstyles",
                                "filetbl",
                                "pntxta",
                                "pntxtb",
                                "blipuid",
                                "nesttableprops",
                                "nonesttables",
                                "private1",
                                "template",
                                "xmlnstbl",
                                "mmathPr",
                                "wgrffmtfilter",
                                "shpinst",
                                "title",
                                "author",
                                "operator"})
      all.insert(skipped, Destination::Skipped);
    return all;
  }();
  const auto found = known.constFind(word.toByteArray());
  return found == known.constEnd() ? std::nullopt : std::optional(*found);
}

// Destinations within which a group that names no other one goes on.
bool isWithinPicture(Destination destination) {
  return destination == Destination::Picture || destination == Destination::PictureProperties ||
         destination == Destination::PropertyName || destination == Destination::PropertyValue;
}

class RtfReader {
 public:
  explicit RtfReader(const AttachedFile& attachedFile) : m_attachedFile(attachedFile) {}

  Result<AttributedText> read(QByteArrayView bytes) {
    RtfTokens tokens(bytes);
    for (RtfToken token = tokens.next(); token.kind != RtfToken::Kind::Finished && !m_isFinished;
         token = tokens.next()) {
      if (m_outer.size() > kDeepestGroup)
        return Error{Error::Kind::Damaged, QStringLiteral("this RTF nests too deep")};
      take(token);
    }
    m_text.flush(m_state);
    return m_text.finish();
  }

 private:
  void take(const RtfToken& token) {
    switch (token.kind) {
    case RtfToken::Kind::GroupStart:
      startGroup();
      break;
    case RtfToken::Kind::GroupEnd:
      endGroup();
      break;
    case RtfToken::Kind::Word:
      takeWord(token.bytes, token.parameter);
      break;
    case RtfToken::Kind::Symbol:
      takeSymbol(token.bytes);
      break;
    case RtfToken::Kind::Byte:
      if (!skipsOne() && !token.bytes.isEmpty())
        takeByte(char(token.parameter.value_or(0)));
      break;
    case RtfToken::Kind::Text:
      takeText(token.bytes);
      break;
    case RtfToken::Kind::Binary:
      if (m_state.destination == Destination::Picture)
        m_picture.addBytes(token.bytes);
      break;
    case RtfToken::Kind::Finished:
      break;
    }
    if (token.kind != RtfToken::Kind::Symbol || token.bytes != "*")
      m_mayBeIgnored = false;
  }

  // What follows \u for readers without Unicode.
  bool skipsOne() {
    if (m_skipped <= 0)
      return false;
    --m_skipped;
    return true;
  }

  void startGroup() {
    m_text.flush(m_state);
    m_skipped = 0;
    m_outer.push_back(m_state);
  }

  void endGroup() {
    m_text.flush(m_state);
    m_skipped = 0;
    if (m_outer.empty())
      return;
    const RtfState ended = std::exchange(m_state, m_outer.back());
    m_outer.pop_back();
    m_isFinished = m_outer.empty();
    if (ended.destination != m_state.destination)
      endDestination(ended.destination);
  }

  void endDestination(Destination ended) {
    switch (ended) {
    case Destination::FieldInstruction:
      m_state.link = addressOfInstruction(cleanText(std::exchange(m_words, {})));
      break;
    case Destination::Picture:
      if (const auto picture = std::exchange(m_picture, {}).finish())
        addAttachment(*picture);
      break;
    case Destination::PropertyName:
      m_picture.addPropertyName(std::exchange(m_words, {}));
      break;
    case Destination::PropertyValue:
      m_picture.addPropertyValue(std::exchange(m_words, {}));
      m_picture.endProperty();
      break;
    case Destination::AttachedFile:
      addAttachedFile(cleanText(std::exchange(m_words, {})).trimmed());
      break;
    default:
      break;
    }
  }

  void addAttachment(const TextAttachment& attachment) {
    const bool fits = m_attachments < kMostAttachments &&
                      m_attachedBytes + attachment.contents.size() <= 2 * kMostPictureBytes;
    if (m_state.destination != Destination::Text || !fits)
      return;
    ++m_attachments;
    m_attachedBytes += attachment.contents.size();
    m_text.addAttachment(attachment, m_state);
  }

  void addAttachedFile(const QString& name) {
    const auto contents = m_attachedFile(name);
    if (contents)
      addAttachment({sanitisedFileName(name), *contents, {}});
    m_skipsPlaceholder = contents.has_value();
  }

  void takeWord(QByteArrayView word, std::optional<int> parameter) {
    if (word != "u" && skipsOne())
      return;
    if (const auto destination = destinationOf(word))
      return enter(*destination);
    if (m_mayBeIgnored) { // \* before a word that is not known
      m_state.destination = Destination::Skipped;
      return;
    }
    if (word == "u")
      return takeUnicode(parameter.value_or(0));
    switch (m_state.destination) {
    case Destination::FontTable:
    case Destination::FontAlternate:
      return m_text.fonts.word(word, parameter);
    case Destination::ColorTable:
      return m_text.colors.word(word, parameter);
    case Destination::ColorExtension:
      return m_text.colors.extensionWord(word, parameter);
    case Destination::Text:
      return takeTextWord(word, parameter);
    default:
      return takeDocumentWord(word, parameter);
    }
  }

  // The first word of a group says where its text goes; what is skipped is skipped with all in it.
  void enter(Destination destination) {
    const bool isTextWithinOther = destination == Destination::Text &&
                                   m_state.destination != Destination::Text &&
                                   m_state.destination != Destination::Alternatives;
    if (m_state.destination == Destination::Skipped || isTextWithinOther)
      return;
    m_text.flush(m_state);
    const bool isPart = destination == Destination::FontAlternate ||
                        destination == Destination::PictureProperties ||
                        destination == Destination::PropertyName ||
                        destination == Destination::PropertyValue;
    const bool fits = !isPart || isWithinPicture(m_state.destination) ||
                      (destination == Destination::FontAlternate &&
                       m_state.destination == Destination::FontTable);
    m_state.destination = fits ? destination : Destination::Skipped;
    m_words.clear();
    if (destination == Destination::Picture)
      m_picture = {};
  }

  void takeTextWord(QByteArrayView word, std::optional<int> parameter) {
    if (word == "par" || word == "sect" || word == "page" || word == "row" || word == "nestrow") {
      m_text.endParagraph(m_state);
      return;
    }
    if (const char16_t character = rtfCharacter(word)) {
      m_text.addCharacter(character, m_state);
      return;
    }
    m_text.flush(m_state);
    if (!applyRtfProperty(word, parameter, m_state))
      takeDocumentWord(word, parameter);
  }

  void takeDocumentWord(QByteArrayView word, std::optional<int> parameter) {
    if (word == "ansicpg")
      m_text.setCodePage(parameter.value_or(1252));
    else if (word == "mac")
      m_text.setCodePage(10000);
    else if (word == "pc")
      m_text.setCodePage(437);
    else if (word == "pca")
      m_text.setCodePage(850);
    else if (word == "deff")
      m_text.fonts.setDefault(parameter.value_or(0));
  }

  void takeUnicode(int code) {
    m_skipped = m_state.skippedAfterUnicode;
    const auto character = char16_t(code); // numbers above 32767 are written negative
    if (m_state.destination == Destination::Text)
      m_text.addCharacter(character, m_state);
    else
      addWords(QString(QChar(character)));
  }

  void takeSymbol(QByteArrayView symbol) {
    if (symbol == "*") {
      m_mayBeIgnored = true;
      return;
    }
    if (skipsOne())
      return;
    if (m_state.destination == Destination::Text && (symbol == "\n" || symbol == "\r")) {
      m_text.endParagraph(m_state);
      return;
    }
    const char16_t character = rtfCharacter(symbol);
    if (character == 0)
      return;
    if (m_state.destination != Destination::Text)
      addWords(QString(QChar(character)));
    else if (character < 0x80)
      m_text.addBytes(symbol, m_state);
    else
      m_text.addCharacter(character, m_state);
  }

  void takeByte(char byte) {
    const QByteArrayView bytes(&byte, 1);
    if (std::exchange(m_skipsPlaceholder, false) && byte == kPlaceholder)
      return;
    if (m_state.destination == Destination::Text)
      m_text.addBytes(bytes, m_state);
    else
      addWords(m_text.decoded(bytes));
  }

  void takeText(QByteArrayView bytes) {
    const qsizetype skipped = std::min<qsizetype>(m_skipped, bytes.size());
    m_skipped -= int(skipped);
    bytes = bytes.sliced(skipped);
    if (bytes.isEmpty())
      return;
    switch (m_state.destination) {
    case Destination::Text:
      if (std::exchange(m_skipsPlaceholder, false) && bytes.front() == kPlaceholder)
        bytes = bytes.sliced(1);
      m_text.addBytes(bytes, m_state);
      break;
    case Destination::Picture:
      m_picture.addHex(bytes);
      break;
    case Destination::ColorTable:
      m_text.colors.text(bytes);
      break;
    case Destination::ColorExtension:
      m_text.colors.extensionText(bytes);
      break;
    default:
      addWords(m_text.decoded(bytes));
      break;
    }
  }

  // Words that are no text of the document.
  void addWords(const QString& words) {
    if (m_state.destination == Destination::FontTable ||
        m_state.destination == Destination::FontAlternate)
      m_text.fonts.text(words, m_state.destination);
    else if (m_state.destination != Destination::Skipped && m_words.size() < kLongestWords)
      m_words += words;
  }

  const AttachedFile& m_attachedFile;
  RtfText m_text;
  RtfState m_state;
  std::vector<RtfState> m_outer; // of the groups around
  RtfPicture m_picture;
  QString m_words;
  int m_skipped = 0;               // characters that stand for one in Unicode
  bool m_mayBeIgnored = false;     // \* came just before
  bool m_skipsPlaceholder = false; // an attached file came just before
  bool m_isFinished = false;
  qsizetype m_attachments = 0;
  qsizetype m_attachedBytes = 0;
};

} // namespace

Result<AttributedText> readRTF(const QByteArray& bytes, const AttachedFile& attachedFile) {
  const QByteArray trimmed = bytes.startsWith("\xef\xbb\xbf") ? bytes.mid(3) : bytes;
  qsizetype start = 0;
  while (start < trimmed.size() && uchar(trimmed[start]) <= 0x20)
    ++start;
  const QByteArrayView rtf = QByteArrayView(trimmed).sliced(start);
  if (!rtf.startsWith("{\\rtf"))
    return Error{Error::Kind::Damaged, QStringLiteral("this is no RTF")};
  return RtfReader(attachedFile).read(rtf);
}

} // namespace tockwise
