// The attribute dictionaries of archived attributed strings.
#pragma once

#include "store/archive/attributed_text.h"
#include "store/archive/keyed_archive.h"
#include "store/archive/keyed_writer.h"

#include <QHash>
#include <QStringList>

#include <optional>

namespace tockwise {

/// Bytes that a copy of the attributes takes, about.
qsizetype sizeOf(const TextAttributes& attributes);

/// Reads the dictionaries of one archive; values that several of them share are read once. Any one
/// thread.
class AttributeDecoder {
 public:
  explicit AttributeDecoder(const KeyedArchive& archive) : m_archive(archive) {}

  /// Nothing when the object is no whole dictionary. A damaged attribute is left out, with a note.
  std::optional<TextAttributes> decode(KeyedArchive::Uid dictionary);
  /// What was left out, each thing once, in words for the log.
  const QStringList& notes() const { return m_notes; }
  void note(const QString& what);

 private:
  /// The text with that uid; empty when it is none.
  const QString& nameAt(KeyedArchive::Uid uid);
  void decodeAttribute(const QString& name, KeyedArchive::Uid value, TextAttributes& attributes);
  /// Whether name is one of the attributes that we know, with a value of its kind.
  bool decodeKnown(const QString& name, KeyedArchive::Uid value, TextAttributes& attributes);

  const KeyedArchive& m_archive;
  QHash<KeyedArchive::Uid, QString> m_names; // of attributes
  QHash<KeyedArchive::Uid, std::optional<TextFont>> m_fonts;
  QHash<KeyedArchive::Uid, std::optional<TextColor>> m_colors;
  QHash<KeyedArchive::Uid, std::optional<ParagraphStyle>> m_styles;
  QStringList m_notes;
};

/// Remembers what the latest values became, since the runs of a text have few different ones.
template <typename Encoded> class LatestEncoded {
 public:
  template <typename Encode> KeyedWriter::Uid find(const Encoded& value, const Encode& encode) {
    for (const auto& [known, uid] : m_latest) {
      if (known == value)
        return uid;
    }
    const KeyedWriter::Uid uid = encode();
    if (m_latest.size() < kMost)
      m_latest.emplace_back(value, uid);
    else
      m_latest[m_next++ % kMost] = {value, uid};
    return uid;
  }

 private:
  static constexpr size_t kMost = 16;
  std::vector<std::pair<Encoded, KeyedWriter::Uid>> m_latest;
  size_t m_next = 0; // to be forgotten
};

/// The attributes as a dictionary of the archive; equal ones are one object. Any one thread.
class AttributeEncoder {
 public:
  explicit AttributeEncoder(KeyedWriter& writer) : m_writer(writer) {}
  KeyedWriter::Uid encode(const TextAttributes& attributes);

 private:
  using Uid = KeyedWriter::Uid;
  void add(const QString& name, Uid value);
  void addNumber(const QString& name, const std::optional<qint64>& value);
  Uid color(const TextColor& color);
  Uid link(const TextAttributes& attributes);

  KeyedWriter& m_writer;
  LatestEncoded<TextFont> m_fonts;
  LatestEncoded<TextColor> m_colors;
  LatestEncoded<ParagraphStyle> m_styles;
  std::vector<Uid> m_keys; // of the dictionary being made
  std::vector<Uid> m_values;
  QHash<QByteArray, Uid> m_dictionaries; // by keys and values
};

} // namespace tockwise
