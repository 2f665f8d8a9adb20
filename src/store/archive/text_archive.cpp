#include "store/archive/text_archive.h"

#include "store/archive/attribute_codec.h"
#include "store/archive/keyed_writer.h"
#include "store/archive/run_codec.h"
#include "store/archive/text_decoder.h"

#include <QHash>

#include <algorithm>

namespace tockwise {
namespace {

using Uid = KeyedWriter::Uid;

// The runs with the dictionaries that they use, each dictionary once.
struct EncodedRuns {
  std::vector<RunEntry> runs;
  std::vector<Uid> dictionaries;
  qsizetype covered = 0;
};

class RunsEncoder {
 public:
  RunsEncoder(KeyedWriter& writer, qsizetype textLength)
      : m_attributes(writer), m_textLength(textLength) {}

  EncodedRuns encode(const std::vector<TextRun>& runs) {
    for (const TextRun& run : runs)
      add(run.length, run.attributes);
    if (m_encoded.covered < m_textLength)
      add(m_textLength - m_encoded.covered, {});
    return std::move(m_encoded);
  }

 private:
  void add(qsizetype length, const TextAttributes& attributes) {
    length = std::min(length, m_textLength - m_encoded.covered);
    if (length <= 0)
      return;
    m_encoded.covered += length;
    const quint32 index = indexOf(m_attributes.encode(attributes));
    if (!m_encoded.runs.empty() && m_encoded.runs.back().attributes == index)
      m_encoded.runs.back().length += quint32(length);
    else
      m_encoded.runs.push_back({quint32(length), index});
  }

  quint32 indexOf(Uid dictionary) {
    const auto known = m_indexes.constFind(dictionary);
    if (known != m_indexes.cend())
      return *known;
    m_encoded.dictionaries.push_back(dictionary);
    return *m_indexes.insert(dictionary, quint32(m_encoded.dictionaries.size() - 1));
  }

  AttributeEncoder m_attributes;
  qsizetype m_textLength;
  EncodedRuns m_encoded;
  QHash<Uid, quint32> m_indexes;
};

} // namespace

Result<UnarchivedText> unarchiveText(const QByteArray& archive) {
  const auto opened = KeyedArchive::open(archive);
  if (!opened)
    return opened.error();
  return decodeText(*opened.value());
}

Result<AttributedText> unarchiveTextStorage(const QByteArray& archive) {
  const auto opened = KeyedArchive::open(archive);
  if (!opened)
    return opened.error();
  const KeyedArchive& table = *opened.value();
  if (!table.isKindOf(table.root(), u"NSTextStorage"))
    return Error{Error::Kind::NotFound, QStringLiteral("the archive holds no text storage")};
  auto text = decodeText(table);
  if (!text)
    return text.error();
  return std::move(text->text);
}

QByteArray archiveText(const AttributedText& text) {
  static const QStringList chain{QStringLiteral("NSTextStorage"),
                                 QStringLiteral("NSMutableAttributedString"),
                                 QStringLiteral("NSAttributedString"), QStringLiteral("NSObject")};
  KeyedWriter writer;
  QString valid = text.text;
  replaceInvalidUnits(valid);
  const Uid root = writer.reserve();
  const Uid string = writer.mutableString(valid);
  std::vector<KeyedWriter::Field> fields{
      {QStringLiteral("NSString"), writer.inlineReference(string)},
      {QStringLiteral("NSDelegate"), writer.inlineReference(KeyedWriter::kNil)}};
  const EncodedRuns runs = RunsEncoder(writer, valid.size()).encode(text.runs);
  if (runs.runs.size() == 1) {
    fields.emplace_back(QStringLiteral("NSAttributes"),
                        writer.inlineReference(runs.dictionaries.front()));
  } else if (!runs.runs.empty()) {
    const Uid dictionaries = writer.mutableArray(runs.dictionaries);
    const Uid table = writer.mutableData(encodeRuns(runs.runs));
    fields.emplace_back(QStringLiteral("NSAttributes"), writer.inlineReference(dictionaries));
    fields.emplace_back(QStringLiteral("NSAttributeInfo"), writer.inlineReference(table));
  }
  writer.setRecord(root, std::move(fields), chain);
  return writer.finish(root);
}

} // namespace tockwise
