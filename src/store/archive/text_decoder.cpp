#include "store/archive/text_decoder.h"

#include "store/archive/archive_values.h"
#include "store/archive/attribute_codec.h"
#include "store/archive/run_codec.h"

#include <algorithm>
#include <unordered_map>

namespace tockwise {
namespace {

using Uid = KeyedArchive::Uid;

constexpr size_t kUsualRuns = 1000;

class TextDecoder {
 public:
  explicit TextDecoder(const KeyedArchive& archive)
      : m_archive(archive), m_attributes(archive), m_bytesLeft(archive.mostUnfoldedBytes()) {}

  Result<UnarchivedText> decode();

 private:
  void readRuns();
  void readRunTable(const QByteArray& bytes, Uid dictionaries);
  void appendRun(qsizetype length, const TextAttributes& attributes);
  void appendAttachments(qsizetype length, const TextAttributes& attributes);
  const TextAttributes& attributesOf(Uid dictionary);
  void note(const QString& what) { m_attributes.note(what); }

  const KeyedArchive& m_archive;
  AttributeDecoder m_attributes;
  std::unordered_map<Uid, TextAttributes> m_known;
  UnarchivedText m_result;
  qsizetype m_covered = 0; // units that have a run
  qsizetype m_bytesLeft;
};

Result<UnarchivedText> TextDecoder::decode() {
  const Uid root = m_archive.root();
  if (!m_archive.isKindOf(root, u"NSAttributedString"))
    return Error{Error::Kind::Damaged, QStringLiteral("the archive holds no rich text")};
  auto text = stringField(m_archive, root, u"NSString");
  if (!text)
    return Error{Error::Kind::Damaged, QStringLiteral("the archived rich text has no text")};
  m_result.isTextStorage = m_archive.isKindOf(root, u"NSTextStorage");
  m_result.text.text = std::move(*text);
  if (m_archive.version() != KeyedArchive::kVersion)
    note(QStringLiteral("the archive has version %1").arg(m_archive.version()));
  readRuns();
  if (m_covered < m_result.text.text.size())
    appendRun(m_result.text.text.size() - m_covered, {});
  replaceInvalidUnits(m_result.text.text);
  unifyLineEnds(m_result.text);
  m_result.notes = m_attributes.notes();
  return std::move(m_result);
}

void TextDecoder::readRuns() {
  const Uid root = m_archive.root();
  const Uid attributes = m_archive.reference(root, u"NSAttributes");
  // A table of runs tells one dictionary for the whole text from an array of several.
  const auto table = m_archive.field(root, u"NSAttributeInfo");
  if (table && !(m_archive.list().kind(*table) == plist::Kind::Uid &&
                 m_archive.list().uid(*table) == KeyedArchive::kNil)) {
    if (const auto bytes = dataField(m_archive, root, u"NSAttributeInfo"))
      readRunTable(*bytes, attributes);
    else
      note(QStringLiteral("the table of runs is damaged"));
  } else if (attributes != KeyedArchive::kNil) {
    appendRun(m_result.text.text.size(), attributesOf(attributes));
  } else if (m_archive.field(root, u"NSAttributes") && !m_archive.isSound(root)) {
    note(QStringLiteral("the attributes are damaged"));
  }
}

void TextDecoder::readRunTable(const QByteArray& bytes, Uid dictionaries) {
  std::vector<Uid> uids;
  if (auto elements = elementsAt(m_archive, dictionaries))
    uids = std::move(*elements);
  else if (m_archive.isKindOf(dictionaries, u"NSDictionary"))
    uids = {dictionaries};
  const RunTable table = decodeRuns(bytes);
  m_result.text.runs.reserve(std::min(table.runs.size(), kUsualRuns));
  qint64 end = 0; // as the table has it
  for (const RunEntry& entry : table.runs) {
    end += entry.length;
    const qsizetype length =
        qsizetype(std::min<qint64>(end, m_result.text.text.size())) - m_covered;
    if (entry.attributes < uids.size()) {
      appendRun(length, attributesOf(uids[entry.attributes]));
    } else {
      note(QStringLiteral("a run names attributes that are not there"));
      appendRun(length, {});
    }
    if (end > m_result.text.text.size())
      note(QStringLiteral("the runs go beyond the text"));
  }
  if (table.isCut)
    note(QStringLiteral("the table of runs is cut off"));
  else if (end < m_result.text.text.size())
    note(QStringLiteral("the runs do not cover the text"));
}

// Gives the next units of the text those attributes, the second half of a pair always those of the
// first.
void TextDecoder::appendRun(qsizetype length, const TextAttributes& attributes) {
  const QString& text = m_result.text.text;
  qsizetype end = m_covered + length;
  if (end > m_covered && end < text.size() && text[end].isLowSurrogate() &&
      text[end - 1].isHighSurrogate())
    ++end;
  length = end - m_covered;
  if (length <= 0)
    return;
  const qsizetype bytes = sizeOf(attributes) * (attributes.attachment ? length : 1);
  if (bytes > m_bytesLeft) {
    note(QStringLiteral("there are too many runs; the last ones lost their attributes"));
    if (m_result.text.runs.empty() || m_result.text.runs.back().attributes != TextAttributes())
      m_result.text.runs.push_back({length, {}});
    else
      m_result.text.runs.back().length += length;
  } else if (attributes.attachment) {
    m_bytesLeft -= bytes;
    appendAttachments(length, attributes);
  } else {
    m_bytesLeft -= bytes;
    m_result.text.runs.push_back({length, attributes});
  }
  m_covered = end;
}

// An attachment stands at one character of its own; on any other it means nothing.
void TextDecoder::appendAttachments(qsizetype length, const TextAttributes& attributes) {
  TextAttributes plain = attributes;
  plain.attachment.reset();
  std::vector<TextRun>& runs = m_result.text.runs;
  bool goesOn = false; // the last run is one of plain text
  for (qsizetype at = m_covered; at < m_covered + length; ++at) {
    const bool isAttachment = m_result.text.text[at] == AttributedText::kAttachmentCharacter;
    if (isAttachment)
      runs.push_back({1, attributes});
    else if (goesOn)
      ++runs.back().length;
    else
      runs.push_back({1, plain});
    goesOn = !isAttachment;
  }
}

const TextAttributes& TextDecoder::attributesOf(Uid dictionary) {
  auto known = m_known.find(dictionary);
  if (known == m_known.end()) {
    auto attributes = m_attributes.decode(dictionary);
    if (!attributes)
      note(QStringLiteral("the attributes of a run are damaged"));
    known =
        m_known.emplace(dictionary, attributes ? std::move(*attributes) : TextAttributes()).first;
    m_bytesLeft -= std::min(m_bytesLeft, sizeOf(known->second));
  }
  return known->second;
}

} // namespace

Result<UnarchivedText> decodeText(const KeyedArchive& archive) {
  return TextDecoder(archive).decode();
}

void replaceInvalidUnits(QString& text) {
  const auto isInvalid = [&text](qsizetype at) {
    const QChar unit = text.at(at);
    if (unit.isHighSurrogate())
      return at + 1 == text.size() || !text.at(at + 1).isLowSurrogate();
    if (unit.isLowSurrogate())
      return at == 0 || !text.at(at - 1).isHighSurrogate();
    return unit.isNull();
  };
  for (qsizetype at = 0; at < text.size(); ++at) {
    if (isInvalid(at))
      text[at] = QChar::ReplacementCharacter;
  }
}

void unifyLineEnds(AttributedText& text) {
  if (!text.text.contains(u'\r') && !text.text.contains(QChar::ParagraphSeparator))
    return;
  QString unified;
  unified.reserve(text.text.size());
  qsizetype at = 0;
  for (TextRun& run : text.runs) {
    const qsizetype end = at + run.length;
    for (; at < end; ++at) {
      const QChar unit = text.text.at(at);
      const bool isPair = unit == u'\r' && at + 1 < text.text.size() && text.text[at + 1] == u'\n';
      if (isPair)
        --run.length;
      else
        unified += unit == u'\r' || unit == QChar::ParagraphSeparator ? QChar(u'\n') : unit;
    }
  }
  text.text = unified;
  std::erase_if(text.runs, [](const TextRun& run) { return run.length == 0; });
}

} // namespace tockwise
